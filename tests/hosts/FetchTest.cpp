#include "tests/support/Setup.h"
#include "tests/support/TestMain.h"
#include "tests/support/TestSandbox.h"
#include "tests/util/Files.h"
#include "tests/util/Rows.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// 18 has sound of its own, 137 needs 140 or 251.
const char page[] = R"(dump: out {"title":"Clip","duration":3661,"formats":[)"
                    R"({"format_id":"140","ext":"m4a","vcodec":"none","acodec":"mp4a","abr":128},)"
                    R"({"format_id":"251","ext":"webm","vcodec":"none","acodec":"opus","abr":160},)"
                    R"({"format_id":"18","ext":"mp4","width":640,"height":360,"vcodec":"avc1","acodec":"mp4a"},)"
                    R"({"format_id":"137","ext":"mp4","width":1280,"height":720,"vcodec":"avc1","acodec":"none"}]})";

QString url()
{
    return "http://127.0.0.1/page"_s;
}

void addStreams(const TextTable &row)
{
    const char done[] = "DIR/Clip.mp4\n";
    row("best and audio", "", "", "0", done,
        "Clip (1:01:01)|137 (video only, MP4, 720P) with audio 140|joining|!downloaded", "dump 137 140 ffmpeg",
        "Clip.mp4=137+140");
    row("no audio", "", "--no-audio", "0", done, "!joining", "dump 137", "Clip.mp4=137");
    row("other audio", "251: announce webm", "-a251", "0", done, "audio must be converted|: 2 min.",
        "dump 137 251 ffmpeg", "Clip.mp4=137+251");
    row("audio alone", "", "-f|140", "0", "DIR/Clip.m4a\n", "audio", "dump 140", "Clip.m4a=140");
    row("output", "", "-f|18|-P|../tmp|-o|my %(id)s.x", "0", "ROOT/tmp/my %(id)s.x\n", "", "dump 18");
    row("both codes and output", "", "-f|137|-A|140|-o|x.mp4", "0", "DIR/x.mp4\n",
        "137 (video only) with audio 140|!1:01:01", "137 140 ffmpeg", "x.mp4=137+140");
    row("both codes, output and list", "", "-f|137|-A|140|-o|/none/x|-q|-l", "0",
        "   CODE  KIND        CONTAINER  QUALITY  SIZE  DASH/3D\n"
        "*  137   video only  MP4        720P     -     DASH\n"
        "   18    video       MP4        360P     -     -\n"
        "   251   audio       WEBM       160K     -     DASH\n"
        "*  140   audio       M4A        128K     -     DASH\n",
        "", "dump");
    row("limit of the picture", "", "-l|--max-height|400", "0",
        "   CODE  KIND        CONTAINER  QUALITY  SIZE  DASH/3D\n"
        "   137   video only  MP4        720P     -     DASH\n"
        "*  18    video       MP4        360P     -     -\n"
        "   251   audio       WEBM       160K     -     DASH\n"
        "   140   audio       M4A        128K     -     DASH\n",
        "", "dump");
    row("sound as MP3", "251: announce webm", "--mp3", "0", "DIR/Clip.mp3\n", "audio|converting", "dump 251 ffmpeg",
        "Clip.mp3=251");
}

void addPages(const TextTable &row)
{
    const char done[] = "DIR/Clip.mp4\n";
    row("two pages, verbose", "", "-f|18|-v|HTTP://127.0.0.1/first", "0", "DIR/Clip.mp4\nDIR/Clip(1).mp4\n",
        "1 of 2: http://127.0.0.1/first|2 of 2: http://127.0.0.1/page|entering yd...|\n2 downloaded, 0 failed\n",
        "dump 18 dump 18", "Clip(1).mp4=18, Clip.mp4=18");
    row("folder, quiet", "", "-f|18|-q|-P|../tmp", "0", "ROOT/tmp/Clip.mp4\n", "!\n", "dump 18");
    row("warning", R"(dump: err WARNING: some formats may be missing\n|json Late 18)", "-f|18", "0", "DIR/Late.mp4\n",
        "\nsome formats may be missing\n", "dump 18", "Late.mp4=18");
    row("first of several", R"(dump: err WARNING: [nox:videos] 12\n|json Clip 18)", "-f|18", "0", done,
        "1 of 12 videos|--items|![nox:", "dump 18", "Clip.mp4=18");
    row("first of several parts", R"(dump: err WARNING: [nox:parts] many\n|json Clip 18)", "-f|18", "0", done,
        "1 of several parts of a video", "dump 18", "Clip.mp4=18");
    const char two[] = R"(list: out {"nox_index":1,"nox_url":"http://x/1","title":"One","duration":61,"nox_count":2}\n)"
                       R"({"nox_index":2,"nox_url":"http://x/2#nox-item=2"}\n)";
    row("list of the videos", two, "-l|--items|all", "0",
        "01   0:01:01  http://x/1  One\n02            http://x/2#nox-item=2\n", "!downloaded", "list");
    row("all videos", two, "--items|all|-f|18", "0", "DIR/01 Clip.mp4\nDIR/02 Clip.mp4\n",
        "Video 1 of 2: One|Video 2 of 2: http://x/2#nox-item=2|2 downloaded, 0 failed", "list dump 18 dump 18",
        "01 Clip.mp4=18, 02 Clip.mp4=18");
    row("no such video", two, "--items|2, 1-5|-f|18", "2", "DIR/01 Clip.mp4\nDIR/02 Clip.mp4\n",
        "has no video 3; the last one has the number 2", "list dump 18 dump 18", "01 Clip.mp4=18, 02 Clip.mp4=18");
    row("page with more videos than one list holds", R"(list: lines 1000 {"nox_url":"http://x/a","nox_count":5000})",
        "-l|--items|199-201,4100,6000", "2",
        "0199            http://x/a\n0200            http://x/a\n0201            http://x/a\n"
        "4100            http://x/a\n",
        "has no video 6000; the last one has the number 5000", "list list");
    row("addresses of a file", "", "-f|18|-a|../addresses", "2", "DIR/Clip.mp4\nDIR/Clip(1).mp4\n",
        "1 of 3: http://127.0.0.1/page|2 of 3: http://x/#1|ftp://x: An address must start|2 downloaded, 1 failed\n"
        "  ftp://x: An address must start",
        "dump 18 dump 18", "Clip(1).mp4=18, Clip.mp4=18");
    row("addresses from standard input", "dump: fail ERROR: gone", "-a|-", "1", "", "2 of 3: http://x/#1|3 of 3",
        "dump dump");
    row("tool's version", "dump: out 2026.01.02\\n", "--tool-version", "0", "2026.01.02\n", "", "dump");
}

void addRefusals(const TextTable &row)
{
    const auto refused = [&row](const QByteArray &arguments, const char *error) {
        row(arguments.constData(), "", QByteArray(arguments).replace(' ', '|'), "2", "", error);
    };
    refused("ftp://b/", "\"ftp://b/\"");
    refused("--nonsense", "nonsense");
    refused("-f=", "--format needs");
    for (const char *pair : {"-l --json", "-A 1 --no-audio", "-f 1 --max-height 9", "--mp3 -A 1", "--items all -o x",
                             "-v -q", "-a - -o x"})
        refused(pair, "exclude");
    for (const char *lines : {"-5", "720p"})
        refused(QByteArray("--max-height ") + lines, "such as 720");
    for (const char *items : {"0", "5-2", "1,,2", "99999999"})
        refused(QByteArray("--items ") + items, "2,5-7");
    refused("-a .", "\".\" cannot be read");
    refused("-o -", "name a file");
    refused("-o /", "--folder");
    refused("-o x http://a/", "--folder");
    refused("-P /none", "does not exist");
}

void addFailures(const TextTable &row)
{
    row("output taken", "", "-o|Clip.mp4", "2", "", "exists already", "", "Clip.mp4=old", "has=Clip.mp4");
    row("log in no folder", "", "--log|none/log", "2", "", "log file");
    row("unknown format", "", "-f|999", "2", "", "\"999\"; it has: 137, 18, 251, 140", "dump");
    row("codes that are options", "", "-f|--exec=x|-A|140|-o|x.mp4", "2", "", "--exec=x", "dump");
    row("unknown audio", "", "-a|999", "2", "", "\"999\"; it has: 251, 140", "dump");
    row("audio with a picture", "", "-A|18", "2", "", "\"18\" holds a picture|has: 251, 140", "dump");
    row("audio for a stream with sound", "", "-f|18|-A|140", "2", "", "\"18\"", "dump");
    row("MP3 of a video", "", "--mp3|-f|18", "2", "", "--mp3 does not apply", "dump");

    row("two pages that fail", "dump: fail ERROR: gone", "http://127.0.0.1/first", "1", "",
        "nox-fetch: http://127.0.0.1/first: |nox-fetch: http://127.0.0.1/page: |\n  ERROR: gone", "dump dump");
    row("no list", "list: fail ERROR: [nox:login] Members only", "--items|all", "1", "",
        "tool.conf|ERROR: Members only", "list");
    row("no version", "dump: fail ERROR: odd", "--tool-version", "1", "", "version|ERROR: odd", "dump");
    row("video fails", "137: file mp4.part|touch x.ytdl|fail ERROR: HTTP 403", "", "3", "",
        "tool gave up|ERROR: HTTP 403", "dump 137");

    row("no tool", "", "--tool|none.zip", "1", "", "none.zip");
    row("interpreter that is no program", "", "", "1", "", "python3.10/bin/python3.10", "", "", "python=plain");
    row("no ffmpeg", "", "", "3", "", "/ffmpeg", "dump", "", "ffmpeg=missing"); // which extraction does not need
}

} // namespace

/** nox-fetch, from the command line to the files, with stand-ins for the external programs. */
class FetchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void outcomes_data();
    void outcomes();
    void json();
    void interrupts_data();
    void interrupts();
    void lostTerminal();
    void closedChannels();
    void bar();

private:
    void play(const QString &scenario) { m_stage->play(QLatin1String(page) + QLatin1Char('\n') + scenario); }
    void start(const QStringList &arguments) { m_fetch->start(m_program, arguments); }
    int exitCode() const;
    QStringList filesLeft() const { return Files::names(m_stage->folder()); } ///< in the folder of the downloads

    const QString m_program = QCoreApplication::applicationDirPath() + "/nox-fetch"_s;
    std::unique_ptr<TestSandbox> m_stage;
    std::unique_ptr<QProcess> m_fetch;
};

// Beside this program, so that both find the same external programs.
void FetchTest::initTestCase()
{
    QFile::remove(m_program);
    QVERIFY(QFile::copy(QStringLiteral(NOX_FETCH_PROGRAM), m_program));
    // The stand-in for the interpreter does not look into it.
    Files::write(QCoreApplication::applicationDirPath() + "/yt.zip"_s);
}

void FetchTest::init()
{
    m_stage = std::make_unique<TestSandbox>();
    m_fetch = std::make_unique<QProcess>();
    for (const char *name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME"}) // neither a tool nor settings of the developer's own
        qputenv(name, QFile::encodeName(m_stage->path("none"_s)));
}

void FetchTest::cleanup()
{
    m_fetch.reset();
    QTRY_VERIFY_WITH_TIMEOUT(m_stage->isQuiet(), TestSandbox::GraceAfterKill);
    m_stage.reset();
}

/** Of nox-fetch when it has ended; -1 if it does not end, or crashes. */
int FetchTest::exitCode() const
{
    constexpr int timeoutMs = 60000; // only a failing test waits so long
    const bool hasEnded = m_fetch->state() == QProcess::NotRunning || m_fetch->waitForFinished(timeoutMs);
    return hasEnded && m_fetch->exitStatus() == QProcess::NormalExit ? m_fetch->exitCode() : -1;
}

void FetchTest::outcomes_data()
{
    // The scenario stands behind the page's, and a "dump" of its own wins. "|" lies between arguments, which the page's
    // address follows, and between texts of the error that must be there, or, with "!" in front, must not.
    const TextTable row{"scenario", "arguments", "exitCode", "output", "error", "runs", "files", "setup"};
    addStreams(row);
    addPages(row);
    addRefusals(row);
    addFailures(row);
}

void FetchTest::outcomes()
{
    QFETCH(QString, arguments);
    QFETCH(QString, error);
    QFETCH(QString, files);
    const auto [scenario, setup] = fetchTexts("scenario", "setup");
    const Setup prepared(setup, *m_stage);
    play(scenario);
    Files::write(m_stage->path("addresses"_s), "\xef\xbb\xbf# ours\r\nHTTP://x/#1\r\n\n  ftp://x");
    m_fetch->setStandardInputFile(m_stage->path("addresses"_s));
    start(arguments.split(QLatin1Char('|'), Qt::SkipEmptyParts) + QStringList(url()));

    QTEST(QString::number(exitCode()), "exitCode");
    QTEST(m_stage->plain(QString::fromUtf8(m_fetch->readAllStandardOutput())), "output");
    const QString errors = QString::fromUtf8(m_fetch->readAllStandardError());
    const QStringList texts = error.split(QLatin1Char('|'), Qt::SkipEmptyParts);
    for (const QString &text : texts) {
        const bool isForbidden = text.startsWith(QLatin1Char('!'));
        QVERIFY2(errors.contains(text.mid(isForbidden ? 1 : 0)) != isForbidden, qPrintable(text + " in: "_s + errors));
    }
    QCOMPARE(m_stage->files(), files);
    QCOMPARE(filesLeft().size(), files.isEmpty() ? 0 : files.count(QLatin1Char('=')));
    QTEST(m_stage->keys().join(QLatin1Char(' ')), "runs");
    QVERIFY(m_stage->isQuiet());
}

// Programs that use nox-fetch rely on these names.
void FetchTest::json()
{
    play({});
    start({"--json"_s, "--pycache"_s, "cache"_s, url()});
    QCOMPARE(exitCode(), 0);
    QVERIFY(m_stage->arguments("dump"_s).contains("pycache_prefix="_s + m_stage->folder() + "/cache"_s));
    const QJsonObject record = QJsonDocument::fromJson(m_fetch->readAllStandardOutput()).object();
    QCOMPARE(record.keys().join(QLatin1Char(' ')), "choice duration fileName streams thumbnail title url"_s);
    QCOMPARE(record.value("title"_s).toString(), "Clip"_s);
    QCOMPARE(record.value("choice"_s).toObject(), (QJsonObject{{"format"_s, "137"_s}, {"audio"_s, "140"_s}}));
    const QJsonArray streams = record.value("streams"_s).toArray();
    QCOMPARE(streams.size(), 4);
    const auto names = [&streams](int index) { return streams.at(index).toObject().keys().join(QLatin1Char(' ')); };
    QCOMPARE(names(0), "3d code container dash height kind mustBeConverted quality url width"_s);
    QCOMPARE(names(3), "3d audioBitRate code container dash kind mustBeConverted quality url"_s);
    QCOMPARE(streams.at(0).toObject().value("kind"_s).toString(), "video"_s);
}

void FetchTest::interrupts_data()
{
    // What is left then: "parts" are what the next run uses, "rest" is what it removes.
    const TextTable row{"options", "key", "script", "signal", "exitCode", "left"};
    const QByteArray kill = QByteArray::number(SIGKILL);
    const char some[] = "touch parts/a.part|announce mp4|hang";
    row("extracting", "", "dump", R"(err ERROR: so far\n|spawn|hang)", QByteArray::number(SIGTERM), "130");
    row("video", "", "137", "announce mp4|file mp4.part|touch .hidden|spawn|hang", QByteArray::number(SIGHUP), "130");
    row("killed", "", "137", "announce mp4|file mp4.part|hang", kill, "-1", "rest");
    row("kept", "-c", "137", some, QByteArray::number(SIGINT), "130", "parts");
    row("kept, killed", "-c", "137", some, kill, "-1", "parts");
    row("kept, failed", "-c", "137", "touch parts/a.part|fail ERROR: [nox:network] x", "", "3", "parts");
}

// With -c, the next run goes on with what the first has fetched. In the end, only the file is there.
void FetchTest::interrupts()
{
    QFETCH(QString, key);
    QFETCH(QString, left);
    const auto [options, script, signal] = fetchTexts("options", "script", "signal");
    const QStringList arguments = options.split(QLatin1Char(' '), Qt::SkipEmptyParts) + QStringList(url());
    play("%1: %2"_s.arg(key, script));
    start(arguments);
    if (!signal.isEmpty()) {
        QTRY_VERIFY_WITH_TIMEOUT(m_stage->hangs(key), TestSandbox::Timeout);
        QCOMPARE(filesLeft().size(), key == "dump"_s ? 0 : 1); // all stands in one place
        ::kill(static_cast<pid_t>(m_fetch->processId()), signal.toInt());
    }
    const int code = exitCode();
    QTEST(QString::number(code), "exitCode");
    QCOMPARE(m_fetch->readAllStandardOutput(), QByteArray());
    QCOMPARE(m_fetch->readAllStandardError().contains("the same command goes on"), left == "parts"_s && code > 0);
    QCOMPARE(filesLeft().size(), left.isEmpty() ? 0 : 1);
    QTRY_VERIFY_WITH_TIMEOUT(m_stage->isQuiet(), TestSandbox::GraceAfterKill);
    QCOMPARE(QDir(m_stage->path("tmp"_s)).entryList({"nox*"_s}).isEmpty(), code > 0);

    play({});
    start(arguments);
    QCOMPARE(exitCode(), 0);
    QCOMPARE(filesLeft(), QStringList("Clip.mp4"_s));
    QStringList folders;
    const QList<TestSandbox::Run> runs = m_stage->runs();
    for (const TestSandbox::Run &run : runs)
        if (run.key == "137"_s)
            folders += QFileInfo(run.arguments.value(run.arguments.indexOf("-o"_s) + 1)).path();
    QCOMPARE(folders.size() == 2 && folders.first() == folders.last(), left == "parts"_s);
}

// As nohup starts it, and with a reader that ends: neither the signal of a lost terminal nor that of a lost pipe ends
// it.
void FetchTest::lostTerminal()
{
    play("18: announce mp4|wait go"_s);
    const QString pipe = m_stage->path("pipe"_s);
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), S_IRUSR | S_IWUSR), 0);
    const int reader = open(QFile::encodeName(pipe).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    m_fetch->setStandardOutputFile(pipe);
    static_cast<void>(std::signal(SIGHUP, SIG_IGN));
    start({"-f"_s, "18"_s, url()});
    static_cast<void>(std::signal(SIGHUP, SIG_DFL));
    QTRY_COMPARE_WITH_TIMEOUT(m_stage->keys().size(), 2, TestSandbox::Timeout);
    ::kill(static_cast<pid_t>(m_fetch->processId()), SIGHUP);
    close(reader); // a write gives SIGPIPE now
    m_stage->mark("go"_s);
    QCOMPARE(exitCode(), 3);
    const QByteArray errors = m_fetch->readAllStandardError();
    QVERIFY2(errors.contains("/Clip.mp4\""), errors.constData());
}

// Files that the program opens must not take the place of a closed channel: what is printed would go into them.
void FetchTest::closedChannels()
{
    play({});
    const QString command = R"(exec "$0" -v -f 18 --log log "$1" <&- >&- 2>&-)"_s;
    m_fetch->start("/bin/sh"_s, {"-c"_s, command, m_program, url()});
    QCOMPARE(exitCode(), 3);
    QCOMPARE(filesLeft(), QStringList({"Clip.mp4"_s, "log"_s}));
    QVERIFY(Files::content("log"_s).contains("--dump-json")); // with -v, all is logged
}

// Standard error is a terminal: the bar is drawn over and over in one line, and wiped in the end.
void FetchTest::bar()
{
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
    QVERIFY(terminal >= 0 && grantpt(terminal) == 0 && unlockpt(terminal) == 0);
    const int held = open(ptsname(terminal), O_RDWR | O_NOCTTY); // what is written must not get lost at the end
    play("137: announce mp4|progress 50.0 1000|wait go"_s);
    m_fetch->setStandardErrorFile(QString::fromLocal8Bit(ptsname(terminal)));
    start({url()});
    QByteArray text;
    const auto shows = [&](const char *line) {
        char bytes[4096];
        for (ssize_t count = read(terminal, bytes, sizeof bytes); count > 0;
             count = read(terminal, bytes, sizeof bytes))
            text.append(bytes, static_cast<int>(count));
        return text.contains(line);
    };
    QTRY_VERIFY_WITH_TIMEOUT(shows("extracting |"), TestSandbox::Timeout);
    QTRY_VERIFY_WITH_TIMEOUT(shows("video      41% [##"), TestSandbox::Timeout);
    m_stage->mark("go"_s);
    QCOMPARE(exitCode(), 0);
    QVERIFY(shows("500 bytes / 1.2 kB  10 bytes/s  0:01:10"));
    QVERIFY2(text.endsWith("\r\x1b[K"), text.right(60).constData());
    close(held);
    close(terminal);
}

NOX_TEST_MAIN(FetchTest)
#include "FetchTest.moc"
