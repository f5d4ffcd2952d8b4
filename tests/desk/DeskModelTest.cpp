#include "hosts/desk/model/DownloadPlan.h"
#include "hosts/desk/model/ProgramLog.h"
#include "hosts/desk/model/StreamTableModel.h"
#include "hosts/desk/network/ThumbnailLoader.h"
#include "hosts/desk/network/WebRequest.h"
#include "hosts/desk/view/ShownText.h"
#include "tests/jobs/SampleStreams.h"
#include "tests/support/TextTable.h"
#include "tests/util/Rows.h"
#include <nox/jobs/AddressList.h>

#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest>

using namespace NoxDesk;

namespace {

/** 18 with sound; 137, 136 and its like 298 without; 313 to be converted; 140 and 251 sound alone. */
Nox::WebMediaInfo page()
{
    return SampleStreams::page("18 MP4 640x360,136 MP4 1280x720 dash,298 MP4 1280x720 dash,137 MP4 1920x1080 dash,"
                               "313 WEBM 3840x2160 dash,251 WEBM 160K,140 M4A 128K"_s,
                               "A B"_s);
}

/** The rows of the table, "cell|cell". */
QStringList texts(const StreamTableModel &model)
{
    QStringList result;
    for (int row = 0; row < model.rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < model.columnCount(); ++column)
            cells += model.index(row, column).data().toString();
        result += cells.join(QLatin1Char('|'));
    }
    return result;
}

} // namespace

/** Models and choices, without a window and without processes. */
class DeskModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void streamTable();
    void startRow();
    void streamTexts();
    void sounds_data();
    void sounds();
    void sizes();
    void names_data();
    void names();
    void shownTexts_data();
    void shownTexts();
    void logs();
    void addresses_data();
    void addresses();
    void possibleRequests();
    void thumbnails_data();
    void thumbnails();

private:
    QString path(const QString &name) const { return m_root->filePath(name); }
    void take(const QString &step);
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
    model.setStreams(Nox::StreamChoice(page()), 600);
    QVERIFY(model.rowCount() == 6 && model.hidesAny()); // one of 136 and 298
    model.setShowsAll(true);
    QCOMPARE(model.rowCount(), 7);
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    model.setSize("137"_s, 2500000);
    model.setSize("nowhere"_s, 1);
    QCOMPARE(changes.size(), 1);
    QCOMPARE(texts(model).at(1), "1080p, with sound|1080P|MP4|video (DASH)|2.5 MB"_s);
    const QModelIndex converted = model.index(0, StreamTableModel::Description);
    QVERIFY(converted.data().toString().contains("must be converted"_s));
    QVERIFY(converted.data(Qt::ToolTipRole).toString().contains("Rough estimate"_s));
}

/** The one that was chosen before, or else the best by the preferences. */
void DeskModelTest::startRow()
{
    const auto code = [](const Nox::StreamPreference &preference, const QString &preferred = {}) {
        StreamTableModel model;
        model.setPreference(preference);
        model.setStreams(Nox::StreamChoice(page()), 60);
        return model.stream(model.startRow(preferred)).getName();
    };
    QCOMPARE(code({}), "137"_s);
    QCOMPARE(code({}, "18"_s), "18"_s);
    QCOMPARE(code({1000, true, false}), "136"_s);
    QCOMPARE(code({0, false, false}), "313"_s);
    QCOMPARE(code({720, true, true}, "298"_s), "251"_s);
}

/** Streams of which little is known; and a page has a say in their texts, of which none is read as markup. */
void DeskModelTest::streamTexts()
{
    Nox::WebMediaInfo page = SampleStreams::page("a MP4 1280x720 3d,b <b>x 1000x500 dash,c FLV,d MP4 0x0"_s);
    Nox::MediaProfile ranked = SampleStreams::stream("e OGG"_s);
    ranked.setOriResStr("1"_s); // a rank, not a quality
    page.addMediaProfile(ranked);
    StreamTableModel model;
    model.setStreams(Nox::StreamChoice(page), 60);
    QCOMPARE(
        texts(model),
        QStringList({"720p, with sound|720P|MP4|3D video|"_s, "500p, without sound|1000x500|<b>x|video only (DASH)|"_s,
                     "unknown quality, with sound|unknown|FLV|video|"_s,
                     "unknown quality, with sound|unknown|MP4|video|"_s,
                     "unknown quality, with sound|unknown|OGG|video|"_s}));
    QCOMPARE(model.index(1, StreamTableModel::Container).data(Qt::ToolTipRole).toString(), "<p>&lt;b&gt;x</p>"_s);
}

void DeskModelTest::sounds_data()
{
    const TextTable row{"code", "sound", "audio", "file", "warning"}; // the sound that the user chooses, or "default"
    row("MP4 goes with M4A", "137", "default", "140", "A B.mp4");
    row("WEBM goes with the best", "313", "default", "251", "A B.mp4", "takes long");
    row("other sound", "137", "251", "251", "A B.mp4", "must be converted");
    row("no sound", "313", "", "", "A B.webm");
    row("sound alone", "140", "default", "", "A B.m4a");
}

void DeskModelTest::sounds()
{
    const auto [code, sound, audio, file, warning] = fetchTexts("code", "sound", "audio", "file", "warning");
    choose(code);
    if (sound != "default"_s)
        m_plan->setAudio(sound);
    QCOMPARE(m_plan->audio(), audio);
    QCOMPARE(QFileInfo(m_plan->destination()).fileName(), file);
    QCOMPARE(m_plan->audioChoices().size(), code == "140"_s ? 0 : 2);
    QCOMPARE(m_plan->warning().isEmpty(), warning.isEmpty());
    QVERIFY2(m_plan->warning().contains(warning), qPrintable(m_plan->warning()));
    // There is no ffmpeg beside this program.
    QCOMPARE(m_plan->soundError().isEmpty(), audio.isEmpty());
    QCOMPARE(m_plan->isComplete(), audio.isEmpty());
}

/** Two streams have the size of both, or none. */
void DeskModelTest::sizes()
{
    choose("137"_s);
    m_plan->setSize("137"_s, 100);
    QCOMPARE(m_plan->request().stream.getSize(), qint64{0});
    m_plan->setSize("140"_s, 10);
    QCOMPARE(m_plan->request().stream.getSize(), qint64{110});
    m_plan->setAudio(QString());
    QCOMPARE(m_plan->request().stream.getSize(), qint64{100});
}

void DeskModelTest::names_data()
{
    const TextTable row{"steps", "path", "error", "warning"}; // for the steps see take(); the path is in the folder
    row("blanks around it", "name  b.mp4 ", "b.mp4");
    row("nothing", "name   ", "", "needs a name");
    row("without a suffix", "name b", "b.mp4");
    row("dot in a title", "name Mr. B", "Mr. B.mp4");
    row("suffix in capitals", "name b.MP4", "b.MP4");
    row("foreign suffix", "name b.avi", "b.avi", "", "\".avi\"");
    row("no room", "name b.mp4|size 18", "b.mp4", "", "room for");
    row("taken on disk", "name old.mp4", "old.mp4", "exists already");
    row("taken by another", "taken busy.mp4|name sub/../busy.mp4", "busy.mp4", "Another download");
    row("a folder", "name sub/", "sub", "is a folder");
    row("missing folder", "name new/deep/b.mp4", "new/deep/b.mp4", "does not exist");
    row("folder that is made", "name new/deep/b.mp4|make", "new/deep/b.mp4");
    row("folder in a file", "name old.mp4/new/b.mp4|make", "old.mp4/new/b.mp4", "does not exist");
    row("other stream", "name mine.mp4|stream 140", "mine.m4a");
    row("other stream, own suffix", "name mine.sound|stream 140", "mine.sound", "", "\".sound\"");
    row("other folder", "name sub/mine.mp4|folder sub", "sub/mine.mp4");
    row("other page", "name mine.mp4|page Other|stream 18", "Other.mp4");
    row("while another makes it", "name mine.mp4|taken mine.mp4|renumber", "mine(1).mp4");
    row("no longer", "name mine.mp4|taken mine.mp4|renumber|taken", "mine.mp4");
    // A name that ends in a number is not numbered a second time.
    row("own number", "taken clip (1).mp4,clip (2).mp4|name clip (1).mp4|renumber", "clip (3).mp4");
    row("number of the title", "taken clip (2).mp4|page clip (2)|stream 18", "clip (3).mp4");
}

/** Does to the plan what the word in front says, with the text behind it. */
void DeskModelTest::take(const QString &step)
{
    const QString text = step.section(QLatin1Char(' '), 1);
    QStringList paths;
    for (const QString &name : text.split(QLatin1Char(','), Qt::SkipEmptyParts))
        paths += path(name);
    if (step.startsWith("name"_s))
        m_plan->setDestination(text);
    else if (step.startsWith("stream"_s))
        choose(text);
    else if (step.startsWith("size"_s))
        m_plan->setSize(text, 1LL << 60);
    else if (step.startsWith("page"_s))
        m_plan->setPage("http://y/"_s, SampleStreams::page("18 MP4 640x360"_s, text), {});
    else if (step.startsWith("folder"_s))
        m_plan->setFolder(path(text));
    else if (step.startsWith("taken"_s))
        m_plan->setTaken(paths);
    else if (step == "make"_s)
        m_plan->makeFolder();
    else
        m_plan->renumber();
}

/** What the user has written stays, but for a suffix that was ours, and for a number while the name is taken. */
void DeskModelTest::names()
{
    const auto [steps, path, error, warning] = fetchTexts("steps", "path", "error", "warning");
    QVERIFY(QFile(this->path("old.mp4"_s)).open(QIODevice::WriteOnly));
    QVERIFY(QDir(m_root->path()).mkdir("sub"_s));
    choose("18"_s);
    for (const QString &step : steps.split(QLatin1Char('|')))
        take(step);
    QCOMPARE(m_plan->path(), path.isEmpty() ? path : this->path(path));
    QCOMPARE(m_plan->isComplete(), error.isEmpty());
    QCOMPARE(m_plan->destinationError().isEmpty(), error.isEmpty());
    QVERIFY2(m_plan->destinationError().contains(error), qPrintable(m_plan->destinationError()));
    QCOMPARE(m_plan->missingFolder(),
             path.startsWith("new"_s) && !error.isEmpty() ? this->path("new/deep"_s) : QString());
    QCOMPARE(m_plan->destinationWarning().isEmpty(), warning.isEmpty());
    QVERIFY2(m_plan->destinationWarning().contains(warning), qPrintable(m_plan->destinationWarning()));
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
    QVERIFY(!ProgramLog(QString()).fileName().isEmpty());
}

void DeskModelTest::addresses_data()
{
    const TextTable row{"url", "text", "address"}; // as a link, or as a text
    row("link", "http://x/a b", "", "http://x/a%20b");
    row("local file", "file:///etc/passwd");
    row("prose", "", "see (https://x/y), and <https://x/a_(b)>.", "https://x/y https://x/a_(b)");
    row("lines", "", "https://x/y\n# example.org/watch?v=1\nhttps://x/y\nwww.x\n",
        "https://x/y https://example.org/watch?v=1 https://www.x");
    row("no addresses", "", "setup.py, e.g. 1.5/2 a@b.org/c");
    row("only begins so", "", "http://" + QByteArray(5000, 'x'));
}

void DeskModelTest::addresses()
{
    const auto [url, text, address] = fetchTexts("url", "text", "address");
    QMimeData data;
    if (url.isEmpty())
        data.setText(text);
    else
        data.setUrls({QUrl(url)});
    QCOMPARE(Nox::AddressList::in(&data).join(QLatin1Char(' ')), address);
}

void DeskModelTest::possibleRequests()
{
    QVERIFY(WebRequest::isPossible("https://x/a.jpg"_s));
    for (const char *url : {"", "file:///etc/passwd", "a.jpg", "ftp://x/a.jpg", "http:///a.jpg", "data:,a"})
        QVERIFY2(!WebRequest::isPossible(QString::fromLatin1(url)), url);
}

void DeskModelTest::thumbnails_data()
{
    const TextTable row{"path", "asked", "width"}; // of the picture; the server answers "?" to what ends in ".webp"
    row("readable", "/8.jpg?1", "/8.jpg?1", "8");
    row("as JPEG", "/vi_webp/8.webp?1", "/vi_webp/8.webp?1 /vi/8.jpg?1", "8");
    row("too large", "/9000.jpg", "/9000.jpg", "0");
    row("not there", "/q.webp", "/q.webp /q.jpg", "0");
}

/** A picture of a kind that cannot be read is asked for as JPEG; one that cannot be had is told as such. */
void DeskModelTest::thumbnails()
{
    const auto [path, asked, width] = fetchTexts("path", "asked", "width");
    QStringList requests;
    QTcpServer server;
    connect(&server, &QTcpServer::newConnection, this, [&requests, &server] {
        QTcpSocket *socket = server.nextPendingConnection();
        connect(socket, &QTcpSocket::readyRead, socket, [&requests, socket] {
            requests += QString::fromLatin1(socket->readAll().split(' ').value(1));
            socket->write("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n");
            const int size = requests.last().section(QLatin1Char('/'), -1).section(QLatin1Char('.'), 0, 0).toInt();
            if (requests.last().contains(".webp"_s))
                socket->write("?");
            else if (size > 0)
                QImage(size, 8, QImage::Format_RGB32).save(socket, "JPEG");
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
    QCOMPARE(requests.join(QLatin1Char(' ')), asked);
    QCOMPARE(QString::number(loader.picture().width()), width);
}

QTEST_MAIN(DeskModelTest)
#include "DeskModelTest.moc"
