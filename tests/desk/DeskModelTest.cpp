#include "hosts/desk/model/AddressList.h"
#include "hosts/desk/model/DownloadPlan.h"
#include "hosts/desk/model/ProgramLog.h"
#include "hosts/desk/model/StreamTableModel.h"
#include "hosts/desk/network/ThumbnailLoader.h"
#include "hosts/desk/network/WebRequest.h"
#include "hosts/desk/view/AddressOffer.h"
#include "hosts/desk/view/ShownText.h"
#include "tests/jobs/SampleStreams.h"
#include "tests/support/TextTable.h"
#include "tests/util/Rows.h"

#include <QAbstractItemModelTester>
#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QUrl>
#include <QtTest>

using namespace NoxDesk;

namespace {

/** 18 with sound; 137, 136 and its like 298 without; 140 and 251 sound alone. */
Nox::WebMediaInfo page()
{
    return SampleStreams::page("18 MP4 640x360,136 MP4 1280x720 dash,298 MP4 1280x720 dash,137 MP4 1920x1080 dash,"
                               "248 WEBM 1920x1080 dash,251 WEBM 160K,140 M4A 128K"_s,
                               "A B"_s);
}

QString names(const StreamTableModel &model)
{
    QStringList result;
    for (int row = 0; row < model.rowCount(); ++row)
        result += model.stream(row).getName();
    return result.join(QLatin1Char(' '));
}

QString rowText(const StreamTableModel &model, int row)
{
    QStringList cells;
    for (int column = 0; column < model.columnCount(); ++column)
        cells += model.index(row, column).data().toString();
    return cells.join(QLatin1Char('|'));
}

} // namespace

/** Models and choices, without a window and without processes. */
class DeskModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void streamTable();
    void streamTexts();
    void tooltipIsNoMarkup();
    void conversion();
    void preferences_data();
    void preferences();
    void missingFolder();
    void choices_data();
    void choices();
    void destination_data();
    void destination();
    void ownDestination();
    void ownNameComesBack();
    void shownTexts_data();
    void shownTexts();
    void logs();
    void sizes_data();
    void sizes();
    void addresses_data();
    void addresses();
    void offer();
    void possibleRequests();
    void thumbnails_data();
    void thumbnails();

private:
    QString path(const QString &name) const { return m_root->filePath(name); }
    void choose(const QString &code) { m_plan->setStream(Nox::StreamChoice(page()).find(code)); }

    std::unique_ptr<QTemporaryDir> m_root;
    std::unique_ptr<DownloadPlan> m_plan;
};

void DeskModelTest::init()
{
    m_root = std::make_unique<QTemporaryDir>();
    m_plan = std::make_unique<DownloadPlan>();
    m_plan->setFolder(m_root->path());
    m_plan->setPage("http://x/"_s, page(), Nox::StreamChoice(page()));
}

void DeskModelTest::streamTable()
{
    StreamTableModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(model.startRow(), -1);
    model.setStreams(Nox::StreamChoice(page()), 60);
    QCOMPARE(names(model), "137 248 136 18 251 140"_s); // one of 136 and 298
    QVERIFY(model.hidesAny());
    QCOMPARE(model.stream(model.startRow()).getName(), "137"_s);
    QCOMPARE(model.stream(model.startRow("18"_s)).getName(), "18"_s);

    model.setShowsAll(true);
    QCOMPARE(model.rowCount(), 7);
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    model.setSize("137"_s, 2500000);
    model.setSize("nowhere"_s, 1);
    QCOMPARE(changes.size(), 1);
    QCOMPARE(changes.first().first().toModelIndex().siblingAtColumn(StreamTableModel::Size).data().toString(),
             "2.5 MB"_s);
    model.setStreams({}, -1);
    QCOMPARE(model.rowCount(), 0);
    QVERIFY(!model.stream(0).isValid());
}

void DeskModelTest::streamTexts()
{
    Nox::WebMediaInfo page = SampleStreams::page("a MP4 1280x720 3d,b WEBM 1000x500 dash,c FLV,d MP4 0x0"_s);
    Nox::MediaProfile ranked = SampleStreams::stream("e OGG"_s);
    ranked.setOriResStr("1"_s); // a rank, not a quality
    page.addMediaProfile(ranked);
    StreamTableModel model;
    model.setStreams(Nox::StreamChoice(page), 60);
    model.setSize("a"_s, 1000);
    QCOMPARE(rowText(model, 0), "720p, with sound|720P|MP4|3D video|1.0 kB"_s);
    QCOMPARE(rowText(model, 1), "500p, without sound|1000x500|WEBM|video only (DASH)|"_s);
    QCOMPARE(rowText(model, 2), "unknown quality, with sound|unknown|FLV|video|"_s);
    QCOMPARE(rowText(model, 3), "unknown quality, with sound|unknown|MP4|video|"_s);
    QCOMPARE(rowText(model, 4), "unknown quality, with sound|unknown|OGG|video|"_s);
}

/** A page has a say in the words of its streams: what looks like markup, which may name files, is shown as it is. */
void DeskModelTest::tooltipIsNoMarkup()
{
    StreamTableModel model;
    model.setStreams(Nox::StreamChoice(SampleStreams::page("a <b>x 640x360"_s)), 60);
    const QModelIndex cell = model.index(0, StreamTableModel::Container);
    QCOMPARE(cell.data().toString(), "<b>x"_s);
    QCOMPARE(cell.data(Qt::ToolTipRole).toString(), "<p>&lt;b&gt;x</p>"_s);
}

/** Streams that must be encoded anew are marked in the table, and the form warns of them. */
void DeskModelTest::conversion()
{
    StreamTableModel model;
    model.setStreams(Nox::StreamChoice(page()), 600);
    for (int row = 0; row < model.rowCount(); ++row) {
        const bool isConverted = model.stream(row).getName() == "248"_s;
        const QModelIndex cell = model.index(row, StreamTableModel::Description);
        QCOMPARE(cell.data().toString().contains("must be converted"_s), isConverted);
        QCOMPARE(cell.data(Qt::ToolTipRole).toString().contains("Rough estimate"_s), isConverted);
        m_plan->setStream(model.stream(row));
        QCOMPARE(m_plan->warning().isEmpty(), !isConverted);
    }
    choose("248"_s);
    m_plan->setAudio(QString());
    QCOMPARE(m_plan->warning(), QString());
}

void DeskModelTest::preferences_data()
{
    QTest::addColumn<int>("lines");
    QTest::addColumn<bool>("withoutConversion");
    QTest::addColumn<bool>("soundOnly");
    QTest::addColumn<QString>("code");
    QTest::newRow("as it comes") << 0 << true << false << "137";
    QTest::newRow("ceiling") << 720 << true << false << "136";
    QTest::newRow("ceiling between sizes") << 1000 << true << false << "136";
    QTest::newRow("ceiling below all") << 100 << true << false << "137";
    QTest::newRow("also what is converted") << 1440 << false << false << "137"; // of equals the one with less work
    QTest::newRow("sound") << 720 << true << true << "251";
}

void DeskModelTest::preferences()
{
    QFETCH(int, lines);
    QFETCH(bool, withoutConversion);
    QFETCH(bool, soundOnly);
    StreamTableModel model;
    model.setPreference({lines, withoutConversion, soundOnly});
    model.setStreams(Nox::StreamChoice(page()), 60);
    QTEST(model.stream(model.startRow()).getName(), "code");
}

void DeskModelTest::missingFolder()
{
    choose("18"_s);
    QCOMPARE(m_plan->missingFolder(), QString());
    m_plan->setDestination(path("new/deep/a.mp4"_s));
    QCOMPARE(m_plan->missingFolder(), path("new/deep"_s));
    QVERIFY(!m_plan->isComplete());
    m_plan->makeFolder();
    QVERIFY(m_plan->isComplete() && m_plan->missingFolder().isEmpty());
    QVERIFY(QFile(path("file"_s)).open(QIODevice::WriteOnly));
    m_plan->setDestination(path("file/new/a.mp4"_s)); // no folder can be made in a file
    QCOMPARE(m_plan->missingFolder(), QString());
}

void DeskModelTest::choices_data()
{
    const TextTable row{"code", "sound", "audio", "file"}; // the sound that the user chooses, where not "default"
    row("sound of its own", "18", "default", "", "A B.mp4");
    row("MP4 goes with M4A", "137", "default", "140", "A B.mp4");
    row("WEBM goes with the best", "248", "default", "251", "A B.mp4");
    row("other sound", "137", "251", "251", "A B.mp4");
    row("no sound", "248", "", "", "A B.webm");
    row("sound alone", "140", "default", "", "A B.m4a");
}

void DeskModelTest::choices()
{
    QFETCH(QString, code);
    QFETCH(QString, sound);
    choose(code);
    if (sound != "default"_s)
        m_plan->setAudio(sound);
    QTEST(m_plan->audio(), "audio");
    QTEST(QFileInfo(m_plan->destination()).fileName(), "file");
    QCOMPARE(m_plan->takesAudio(), code == "137"_s || code == "248"_s);
    QCOMPARE(m_plan->audioChoices().size(), m_plan->takesAudio() ? 2 : 0);
    // There is no ffmpeg beside this program.
    QCOMPARE(m_plan->soundError().isEmpty(), m_plan->audio().isEmpty());
    QCOMPARE(m_plan->isComplete(), m_plan->audio().isEmpty());
}

void DeskModelTest::destination_data()
{
    const TextTable row{"text", "path", "error"}; // the path in the folder; "" for none
    row("relative", "b.mp4", "b.mp4");
    row("blanks around it", " b.mp4 ", "b.mp4");
    row("nothing", "  ", "", "needs a name");
    row("without a suffix", "b", "b.mp4");
    row("dot in a title", "Mr. B", "Mr. B.mp4");
    row("foreign suffix", "b.avi", "b.avi");
    row("taken on disk", "old.mp4", "old.mp4", "exists already");
    row("taken by another", "sub/../busy.mp4", "busy.mp4", "Another download");
    row("bad name", "what?.mp4", "what?.mp4", "must not contain");
    row("no such folder", "nowhere/b.mp4", "nowhere/b.mp4", "does not exist");
    row("a folder", "sub/", "sub", "is a folder");
}

void DeskModelTest::destination()
{
    QFETCH(QString, text);
    QFETCH(QString, path);
    QFETCH(QString, error);
    QVERIFY(QFile(this->path("old.mp4"_s)).open(QIODevice::WriteOnly));
    QVERIFY(QDir(m_root->path()).mkdir("sub"_s));
    m_plan->setTaken({this->path("busy.mp4"_s)});
    choose("18"_s);
    QVERIFY(m_plan->isComplete());
    m_plan->setDestination(text);
    QCOMPARE(m_plan->path(), path.isEmpty() ? path : this->path(path));
    QCOMPARE(m_plan->isComplete(), error.isEmpty());
    QVERIFY2(m_plan->destinationError().contains(error), qPrintable(m_plan->destinationError()));
    QCOMPARE(m_plan->destinationError().isEmpty(), error.isEmpty());
    QCOMPARE(m_plan->destinationWarning().contains("\".avi\""_s), path.endsWith(".avi"_s));
    m_plan->setSize("18"_s, 1LL << 60);
    QCOMPARE(m_plan->destinationWarning().contains("room for"_s),
             !path.isEmpty() && QFileInfo(m_plan->path()).dir().exists());
}

/** What the user has written stays; only a suffix that was ours follows the stream. */
void DeskModelTest::ownDestination()
{
    choose("18"_s);
    m_plan->setDestination(path("mine.mp4"_s));
    choose("140"_s);
    QCOMPARE(m_plan->destination(), path("mine.m4a"_s));
    m_plan->setTaken({path("mine.m4a"_s)});
    QVERIFY(!m_plan->isComplete());
    m_plan->renumber();
    QCOMPARE(m_plan->destination(), path("mine(1).m4a"_s));
    m_plan->setDestination(path("mine.sound"_s));
    choose("18"_s);
    QCOMPARE(m_plan->destination(), path("mine.sound"_s));
    m_plan->setPage("http://y/"_s, page(), Nox::StreamChoice(page()));
    choose("18"_s);
    QCOMPARE(m_plan->destination(), path("A B.mp4"_s));
}

/** A name that the user gave is numbered only as long as another download makes that file. */
void DeskModelTest::ownNameComesBack()
{
    choose("18"_s);
    QVERIFY(QDir(m_root->path()).mkdir("sub"_s));
    m_plan->setDestination("sub/mine.mp4"_s);
    m_plan->setFolder(path("sub"_s));
    m_plan->setTaken({path("sub/mine.mp4"_s)});
    m_plan->renumber();
    QCOMPARE(m_plan->destination(), path("sub/mine(1).mp4"_s));
    m_plan->setTaken({});
    QCOMPARE(m_plan->destination(), path("sub/mine.mp4"_s));
    m_plan->setDestination(path("other"_s));
    m_plan->completeDestination();
    QCOMPARE(m_plan->destination(), path("other.mp4"_s));
    m_plan->setDestination(path("other.MP4"_s));
    m_plan->completeDestination();
    QCOMPARE(m_plan->destination(), path("other.MP4"_s));
    // A name that ends in a number is not numbered a second time.
    m_plan->setFolder(m_root->path());
    m_plan->setTaken({path("clip (1).mp4"_s), path("clip (2).mp4"_s)});
    m_plan->setDestination(path("clip (1).mp4"_s));
    m_plan->renumber();
    QCOMPARE(m_plan->destination(), path("clip (3).mp4"_s));
    m_plan->setPage("http://y/"_s, SampleStreams::page("18 MP4 640x360"_s, "clip (2)"_s), {});
    choose("18"_s);
    QCOMPARE(m_plan->destination(), path("clip (3).mp4"_s));
}

void DeskModelTest::shownTexts_data()
{
    const TextTable row{"text", "cut", "rich"}; // cut after three characters
    row("short", "abc", "abc", "<qt>abc</qt>");
    row("emoji of two units", "ab😀d", "ab😀…", "<qt>ab😀d</qt>");
    row("accent of its own", "abe\u0301d", "abe\u0301…", "<qt>abe\u0301d</qt>");
    row("markup", "<b>\n&", "<b>…", "<qt>&lt;b&gt;<br>&amp;</qt>");
    row("without blanks", QByteArray(50, 'x'), "xxx…",
        "<qt>" + QByteArray(40, 'x') + "\u200b" + QByteArray(10, 'x') + "</qt>");
}

void DeskModelTest::shownTexts()
{
    QFETCH(QString, text);
    QTEST(ShownText::cut(text, 3), "cut");
    QTEST(ShownText::breakable(text), "rich");
}

/** All windows append to one log, which does not grow without bound while the external programs run. */
void DeskModelTest::logs()
{
    ProgramLog first(path("cache/desk"_s));
    ProgramLog second(path("cache/desk"_s));
    const QString file = first.fileName();
    QCOMPARE(file, path("cache/desk/nox-desk.log"_s));
    QCOMPARE(second.fileName(), file);

    first.setWatched(true);
    second.setWatched(true);
    QFile log(file);
    QVERIFY(log.open(QIODevice::Append) && log.write(QByteArray(ProgramLog::largestSize + 1, 'x')) > 0);
    log.close();
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(file).size() <= ProgramLog::largestSize, 30000);
    QVERIFY(QFile::exists(file + ".old"_s));
    QCOMPARE(ProgramLog(QString()).fileName().isEmpty(), false);
}

void DeskModelTest::sizes_data()
{
    const TextTable row{"audio", "sound", "size"};
    row("both", "140", "10", "110");
    row("sound unknown", "140", "", "0");
    row("alone", "", "", "100");
}

void DeskModelTest::sizes()
{
    QFETCH(QString, audio);
    QFETCH(QString, sound);
    choose("137"_s);
    m_plan->setAudio(audio);
    m_plan->setSize("137"_s, 100);
    if (!sound.isEmpty())
        m_plan->setSize("140"_s, sound.toLongLong());
    const DownloadRequest request = m_plan->request();
    QTEST(QString::number(request.stream.getSize()), "size");
    QCOMPARE(request.stream.getPreferredDashAudioYdCode(), audio);
    QCOMPARE(request.url, "http://x/"_s);
    QCOMPARE(request.destination, path("A B.mp4"_s));
}

void DeskModelTest::addresses_data()
{
    const TextTable row{"url", "text", "address"}; // as a link, or as a text
    row("link", "http://x/a b", "", "http://x/a%20b");
    row("text", "", " https://x/y \n", "https://x/y");
    row("corrected", "", "www.x/y", "https://www.x/y");
    row("local file", "file:///etc/passwd");
    row("prose", "", "see (https://x/y), and <https://x/a_(b)>.", "https://x/y https://x/a_(b)");
    row("lines", "", "https://x/y\n# example.org/watch?v=1\nhttps://x/y\n",
        "https://x/y https://example.org/watch?v=1");
    row("no addresses", "", "setup.py, e.g. 1.5/2 a@b.org/c");
    row("prose that begins so", "", "http://" + QByteArray(5000, 'x'));
    row("nothing", "");
}

void DeskModelTest::addresses()
{
    QFETCH(QString, url);
    QFETCH(QString, text);
    QMimeData data;
    if (!url.isEmpty()) {
        data.setUrls({QUrl(url)});
    } else if (!text.isEmpty()) {
        data.setText(text);
    }
    QTEST(AddressList::in(&data).join(QLatin1Char(' ')), "address");
}

void DeskModelTest::offer()
{
    QClipboard &clipboard = *QGuiApplication::clipboard();
    clipboard.setText("no address"_s);
    AddressOffer offer(clipboard);
    QSignalSpy changes(&offer, &AddressOffer::changed);
    clipboard.setText("http://x/1"_s);
    QTRY_COMPARE(changes.size(), 1);
    QCOMPARE(offer.addresses(), QStringList("http://x/1"_s));
    offer.setKnown(" http://x/1"_s);
    QCOMPARE(offer.addresses(), QStringList());
    offer.setKnown(QString());
    QCOMPARE(offer.addresses(), QStringList("http://x/1"_s));
    offer.dismiss();
    QCOMPARE(offer.addresses(), QStringList());
    offer.check();
    QCOMPARE(offer.addresses(), QStringList());
}

void DeskModelTest::possibleRequests()
{
    QVERIFY(WebRequest::isPossible("https://x/a.jpg"_s));
    for (const char *url : {"", "file:///etc/passwd", "a.jpg", "ftp://x/a.jpg", "http:///a.jpg", "data:,a"})
        QVERIFY2(!WebRequest::isPossible(QString::fromLatin1(url)), url);
}

void DeskModelTest::thumbnails_data()
{
    const TextTable row{"path", "asked"}; // the server has p.jpg only, and answers "?" to what ends in ".webp"
    row("readable", "/p.jpg?1", "/p.jpg?1");
    row("as JPEG", "/vi_webp/p.webp?1", "/vi_webp/p.webp?1 /vi/p.jpg?1");
    row("not there", "/q.webp", "/q.webp /q.jpg");
}

/** A picture of a kind that cannot be read is asked for as JPEG; one that cannot be had is told as such. */
void DeskModelTest::thumbnails()
{
    QFETCH(QString, path);
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    QVERIFY(QImage(8, 8, QImage::Format_RGB32).save(&buffer, "JPEG"));
    QStringList asked;
    QTcpServer server;
    connect(&server, &QTcpServer::newConnection, this, [&] {
        QTcpSocket *socket = server.nextPendingConnection();
        connect(socket, &QTcpSocket::readyRead, this, [&jpeg, &asked, socket] {
            const QByteArray target = socket->readAll().split(' ').value(1);
            asked += QString::fromLatin1(target);
            const bool isThere = target.contains("p.jpg") || target.contains(".webp");
            const QByteArray body = target.contains("p.jpg") ? jpeg : isThere ? "?" : "";
            socket->write((isThere ? "HTTP/1.1 200 OK" : "HTTP/1.1 404 Not found")
                          + QByteArray("\r\nConnection: close\r\nContent-Length: ") + QByteArray::number(body.size())
                          + "\r\n\r\n" + body);
            socket->disconnectFromHost();
        });
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    });
    QVERIFY(server.listen(QHostAddress::LocalHost));
    QNetworkAccessManager network;
    ThumbnailLoader loader(network);
    loader.load("http://127.0.0.1:%1%2"_s.arg(server.serverPort()).arg(path));
    QVERIFY(loader.isLoading());
    QTRY_VERIFY_WITH_TIMEOUT(!loader.isLoading(), 30000);
    QTEST(asked.join(QLatin1Char(' ')), "asked");
    QCOMPARE(loader.picture().isNull(), path == "/q.webp"_s);
}

QTEST_MAIN(DeskModelTest)
#include "DeskModelTest.moc"
