#include "hosts/desk/model/DownloadPlan.h"
#include "hosts/desk/model/ProgramLog.h"
#include "hosts/desk/model/StreamTableModel.h"
#include "hosts/desk/network/ThumbnailLoader.h"
#include "hosts/desk/network/WebRequest.h"
#include "hosts/desk/view/ShownText.h"
#include "tests/jobs/SampleStreams.h"
#include "tests/util/Files.h"
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
    void streamTexts();
    void plans_data();
    void plans();
    void shownTexts_data();
    void shownTexts();
    void logs();
    void addresses_data();
    void addresses();
    void proxies();
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
    const auto start = [&model](const QString &preferred = {}) {
        return model.stream(model.startRow(preferred)).getName();
    };
    QCOMPARE(model.startRow(), -1);
    model.setStreams(Nox::StreamChoice(page()), 600);
    QVERIFY(model.rowCount() == 6 && model.hidesAny()); // one of 136 and 298
    QCOMPARE(start(), "137"_s);
    QCOMPARE(start("18"_s), "18"_s); // was chosen before
    model.setPreference({720, true, true});
    QCOMPARE(start("298"_s), "251"_s); // is hidden
    model.setShowsAll(true);
    QCOMPARE(start("298"_s), "298"_s);
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    model.setSize("137"_s, 2500000);
    model.setSize("nowhere"_s, 1);
    QCOMPARE(changes.size(), 1);
    QCOMPARE(texts(model).at(1), "1080p, with sound|1080P|MP4|video (DASH)|2.5 MB"_s);
    const QModelIndex converted = model.index(0, StreamTableModel::Description);
    QVERIFY(converted.data().toString().contains("must be converted"_s));
    QVERIFY(converted.data(Qt::ToolTipRole).toString().contains("Rough estimate"_s));
}

/** Streams of which little is known; and a page has a say in their texts, of which none is read as markup. */
void DeskModelTest::streamTexts()
{
    Nox::WebMediaInfo page = SampleStreams::page("a MP4 1280x720 3d,b <b>x 1000x500 dash,c MP4 0x0"_s);
    Nox::MediaProfile ranked = SampleStreams::stream("e OGG"_s);
    ranked.setOriResStr("1"_s); // a rank, not a quality
    page.addMediaProfile(ranked);
    StreamTableModel model;
    model.setStreams(Nox::StreamChoice(page), 60);
    QCOMPARE(
        texts(model),
        QStringList({"720p, with sound|720P|MP4|3D video|"_s, "500p, without sound|1000x500|<b>x|video only (DASH)|"_s,
                     "unknown quality, with sound|unknown|MP4|video|"_s,
                     "unknown quality, with sound|unknown|OGG|video|"_s}));
    QCOMPARE(model.index(1, StreamTableModel::Container).data(Qt::ToolTipRole).toString(), "<p>&lt;b&gt;x</p>"_s);
}

void DeskModelTest::plans_data()
{
    // For the steps see take(); the path is in the folder. There is no ffmpeg beside this program.
    const TextTable row{"steps", "path", "error", "warning", "audio", "bytes"};
    const char noFfmpeg[] = "cannot be joined";
    row("MP4 goes with M4A", "stream 137", "A B.mp4", noFfmpeg, "", "140");
    row("WEBM goes with the best", "stream 313", "A B.mp4", noFfmpeg, "takes long", "251");
    row("other sound", "stream 137|audio 251", "A B.mp4", noFfmpeg, "must be converted", "251");
    row("no sound", "stream 313|audio", "A B.webm");
    row("sound alone", "stream 140", "A B.m4a");
    row("size of the picture only", "stream 137|size 137 100", "A B.mp4", noFfmpeg, "", "140");
    row("size of both", "stream 137|size 137 100|size 140 10", "A B.mp4", noFfmpeg, "", "140", "110");
    row("size without sound", "stream 313|size 313 100|audio", "A B.webm", "", "", "", "100");
    row("no room", "size 18 1152921504606846976", "A B.mp4", "", "room for", "", "1152921504606846976");
    row("blanks around it", "name  b.mp4 ", "b.mp4");
    row("nothing", "name   ", "", "needs a name");
    row("without a suffix", "name b", "b.mp4");
    row("dot in a title", "name Mr. B", "Mr. B.mp4");
    row("suffix in capitals", "name b.MP4", "b.MP4");
    row("foreign suffix", "name b.avi", "b.avi", "", "\".avi\"");
    row("taken by another", "taken busy.mp4|name sub/../busy.mp4", "busy.mp4", "Another download");
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
    else if (step.startsWith("audio"_s))
        m_plan->setAudio(text);
    else if (step.startsWith("size"_s))
        m_plan->setSize(text.section(QLatin1Char(' '), 0, 0), text.section(QLatin1Char(' '), 1).toLongLong());
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
void DeskModelTest::plans()
{
    const auto [steps, path, error, warning, audio, bytes] =
        fetchTexts("steps", "path", "error", "warning", "audio", "bytes");
    Files::write(this->path("old.mp4"_s));
    QVERIFY(QDir(m_root->path()).mkdir("sub"_s));
    choose("18"_s);
    for (const QString &step : steps.split(QLatin1Char('|')))
        take(step);
    QCOMPARE(m_plan->path(), path.isEmpty() ? path : this->path(path));
    QCOMPARE(m_plan->audio(), audio);
    QCOMPARE(m_plan->request().stream.getSize(), bytes.toLongLong());
    QCOMPARE(m_plan->isComplete(), error.isEmpty());
    const QString errors = m_plan->soundError() + m_plan->destinationError();
    const QString warnings = m_plan->warning() + m_plan->destinationWarning();
    QVERIFY2(errors.contains(error) && errors.isEmpty() == error.isEmpty(), qPrintable(errors));
    QVERIFY2(warnings.contains(warning) && warnings.isEmpty() == warning.isEmpty(), qPrintable(warnings));
    QCOMPARE(m_plan->missingFolder(),
             path.startsWith("new"_s) && !error.isEmpty() ? this->path("new/deep"_s) : QString());
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
    QCOMPARE(first.fileName(), path("cache/desk/nox-desk.log"_s));
    QCOMPARE(second.fileName(), first.fileName());
    first.setWatched(true);
    second.setWatched(true);
    Files::write(first.fileName(), QByteArray(ProgramLog::largestSize + 1, 'x'));
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(first.fileName()).size() <= ProgramLog::largestSize, 30000);
    QVERIFY(QFile::exists(first.fileName() + ".old"_s));
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
    row("brackets, far too many to count them again for each", "", "http://a.b/" + QByteArray(1000000, ')'),
        "http://a.b/");
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

/** The window's requests must not bypass the tool's proxy. */
void DeskModelTest::proxies()
{
    const auto text = [](const char *address) {
        const std::optional<QNetworkProxy> proxy = WebRequest::proxy(QLatin1String(address));
        return proxy ? "%1 %2:%3 %4/%5"_s.arg(proxy->type())
                           .arg(proxy->hostName())
                           .arg(proxy->port())
                           .arg(proxy->user(), proxy->password())
                     : QString();
    };
    QCOMPARE(text(""), "0 :0 /"_s); // that of the system
    QCOMPARE(text("http://u%40:p%3A@x:8"), "3 x:8 u@/p:"_s);
    QCOMPARE(text("x"), "3 x:80 /"_s);
    QCOMPARE(text("socks5://127.0.0.1:9050"), "1 127.0.0.1:9050 /"_s);
    QCOMPARE(text("socks5h://[::1]"), "1 ::1:1080 /"_s);
    for (const char *address : {"socks4://x", "https://x", "http://", "socks5://x:70000", " "})
        QCOMPARE(text(address), QString());
}

void DeskModelTest::thumbnails_data()
{
    // The server answers "?" to what ends in ".webp". The width is that of the picture.
    const TextTable row{"url", "asked", "width"};
    row("readable", "http://SERVER/8.jpg?1", "/8.jpg?1", "8");
    row("as JPEG", "http://SERVER/vi_webp/8.webp?1", "/vi_webp/8.webp?1 /vi/8.jpg?1", "8");
    row("too large", "http://SERVER/9000.jpg", "/9000.jpg", "0");
    row("not there", "http://SERVER/q.webp", "/q.webp /q.jpg", "0");
    for (const char *url : {"", "file:///etc/passwd", "a.jpg", "ftp://x/a.jpg", "http:///a.jpg", "data:,a"})
        row(qPrintable("not of the web: "_s + QLatin1String(url)), url, "", "0");
}

/** A picture of a kind that cannot be read is asked for as JPEG; one that cannot be had is told as such. */
void DeskModelTest::thumbnails()
{
    const auto [url, asked, width] = fetchTexts("url", "asked", "width");
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
    });
    QVERIFY(server.listen(QHostAddress::LocalHost));
    QNetworkAccessManager network;
    ThumbnailLoader loader(network);
    loader.load(QString(url).replace("SERVER"_s, "127.0.0.1:%1"_s.arg(server.serverPort())));
    QCOMPARE(loader.isLoading(), !asked.isEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(!loader.isLoading(), 30000);
    QCOMPARE(requests.join(QLatin1Char(' ')), asked);
    QCOMPARE(QString::number(loader.picture().width()), width);
}

QTEST_MAIN(DeskModelTest)
#include "DeskModelTest.moc"
