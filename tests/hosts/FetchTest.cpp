#include "tests/hosts/FetchProgram.h"
#include "tests/support/Setup.h"
#include "tests/support/TestMain.h"
#include "tests/support/TestSandbox.h"
#include "tests/support/TextTable.h"
#include "tests/util/Rows.h"

#include <QDir>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
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

void addSuccesses(const TextTable &row)
{
    const char done[] = "DIR/Clip.mp4\n";
    const char list[] = "   CODE  KIND        CONTAINER  QUALITY  SIZE  DASH/3D\n"
                        "*  137   video only  MP4        720P     -     DASH\n"
                        "   18    video       MP4        360P     -     -\n"
                        "   251   audio       WEBM       160K     -     DASH\n"
                        "*  140   audio       M4A        128K     -     DASH\n";
    row("best and companion", "", "", "0", done, "Clip (1:01:01)|137 (video only, MP4, 720P) with audio 140|joining",
        "dump 137 140 ffmpeg", "Clip.mp4=137+140");
    row("format", "", "-f|18", "0", done, "video", "dump 18", "Clip.mp4=18");
    row("no audio", "", "--no-audio", "0", done, "!joining", "dump 137", "Clip.mp4=137");
    row("other audio", "251: announce webm", "-a|251", "0", done, "audio must be converted|: 2 min.",
        "dump 137 251 ffmpeg", "Clip.mp4=137+251");
    row("audio alone", "", "-f|140", "0", "DIR/Clip.m4a\n", "audio", "dump 140", "Clip.m4a=140");
    row("output", "", "-f|18|-o|my %(id)s.x", "0", "DIR/my %(id)s.x\n", "", "dump 18", "my %(id)s.x=18");
    row("both codes and output", "", "-f|137|-a|140|-o|x.mp4", "0", "DIR/x.mp4\n",
        "137 (video only) with audio 140|!1:01:01", "137 140 ffmpeg", "x.mp4=137+140");
    row("both codes, output and list", "", "-f|137|-a|140|-o|x.mp4|-q|-l", "0", list, "", "dump");
    row("name taken", "", "-f|18", "0", "DIR/Clip(1).mp4\n", "", "dump 18", "Clip(1).mp4=18, Clip.mp4=old");
    row("taken meanwhile", "18: announce mp4|touch ../Clip.mp4", "-f|18", "0", "DIR/Clip(1).mp4\n", "", "dump 18",
        "Clip(1).mp4=18, Clip.mp4=new");
    row("settings that do not count",
        R"(dump: err WARNING: w\nWARNING: /c/noxwebmedia/tool.conf is not used: x\n|)"
        R"(json Clip 18)",
        "-f|18", "0", "DIR/Clip.mp4\n", "\n/c/noxwebmedia/tool.conf is not used: x\n|!WARNING", "dump 18",
        "Clip.mp4=18");
    row("list", "", "-l", "0", list, "", "dump");
    row("two pages", "", "-f|18|http://127.0.0.1/first", "0", "DIR/Clip.mp4\nDIR/Clip(1).mp4\n",
        "1 of 2: http://127.0.0.1/first|2 of 2: http://127.0.0.1/page", "dump 18 dump 18",
        "Clip(1).mp4=18, Clip.mp4=18");
    row("folder", "", "-f|18|-P|../tmp", "0", "ROOT/tmp/Clip.mp4\n", "", "dump 18");
    row("tool's version", "dump: out 2026.01.02\\n", "--tool-version", "0", "2026.01.02\n", "", "dump");
}

void addFailures(const TextTable &row)
{
    row("output taken", "", "-o|Clip.mp4", "2", "", "exists already", "", "Clip.mp4=old");
    row("two pages that fail", "dump: err ERROR: gone\\n|exit 1", "http://127.0.0.1/first", "1", "",
        "nox-fetch: http://127.0.0.1/first: |nox-fetch: http://127.0.0.1/page: |\n  ERROR: gone", "dump dump");
    row("no version", "dump: err ERROR: odd\\n|exit 1", "--tool-version", "1", "", "version|ERROR: odd", "dump");
    row("log in no folder", "", "--log|none/log", "2", "", "log file");
    row("unknown format", "", "-f|999", "2", "", "\"999\"; it has: 137, 18, 251, 140", "dump");
    row("unknown code taken at its word", "999: err ERROR: no such format\\n|exit 1", "-f|137|-a|999|-o|x.mp4", "3", "",
        "tool gave up|code -4|ERROR: no such format", "137 999");
    row("codes that are options", "", "-f|--exec=x|-a|140|-o|x.mp4", "2", "", "--exec=x", "dump");
    row("unknown audio", "", "-a|999", "2", "", "\"999\"; it has: 251, 140", "dump");
    row("audio with a picture", "18: announce mp4", "-a|18", "2", "", "\"18\" holds a picture|has: 251, 140", "dump");
    row("audio that is silent", "", "-f|137|-a|137", "2", "", "\"137\" holds a picture|has: 251, 140", "dump");
    row("audio for a stream with sound", "", "-f|18|-a|140", "2", "", "\"18\"", "dump");

    row("page error", R"(dump: err ERROR: no such video\n|exit 1)", "", "1", "", "could not read|ERROR: no such video",
        "dump");
    row("warning and error in one breath", R"(dump: err WARNING: odd\nERROR: gone\n|exit 1)", "", "1", "",
        "ERROR: gone|!odd", "dump");
    row("option refused", R"(dump: err ERROR: /c/noxwebmedia/tool.conf: the option -x is not allowed here\n|exit 2)",
        "", "1", "", "Correct them in the file tool.conf.|the option -x|!network", "dump");
    row("value refused", R"(137: err ERROR: The tool does not take a setting in tool.conf: bad\n|exit 2)", "", "3", "",
        "Correct them in the file tool.conf.|!network", "dump 137");
    row("error in two pieces", R"(dump: err ERROR: first |err second\n|exit 1)", "", "1", "", "ERROR: first second",
        "dump");
    row("complaint but success", R"(dump: err Deprecated\n|json Late 18)", "-f|18", "0", "DIR/Late.mp4\n",
        "!Deprecated", "dump 18", "Late.mp4=18");
    row("complaint but no page", R"(dump: err some words\n|out {})", "", "1", "", "could not be read|some words",
        "dump");
    row("no stream", "dump: json Clip ", "-l", "1", "", "no stream|protected", "dump");
    row("protected", R"(dump: err ERROR: [x] y: This video is DRM protected\n|exit 1)", "", "1", "",
        "holds no stream|DRM protected|!network", "dump");
    row("not begun", R"(dump: err ERROR: [x] y: This live event will begin in 3 hours\nWARNING: w\n|exit 1)", "", "1",
        "", "holds no stream|in 3 hours|!network", "dump");
    row("pictures only", R"(dump: err ERROR: No stream of this page can be downloaded\n|exit 1)", "", "1", "",
        "holds no stream|!network", "dump");
    row("no code that can be passed on", "dump: json Clip --exec=x", "", "1", "", "cannot be passed", "dump");
    row("no description", "dump: out nonsense", "", "1", "", "could not be read|!newer", "dump");
    row("tool crash", "dump: kill SIGSEGV", "", "1", "", "crashed", "dump");

    row("video fails", R"(137: file mp4.part|touch x.ytdl|err ERROR: HTTP 403\n|exit 1)", "", "3", "",
        "tool gave up|code -4|ERROR: HTTP 403", "dump 137");
    row("video crashes", "137: announce mp4|kill SIGSEGV", "", "3", "", "crashed|code -5", "dump 137");
    row("joining fails", R"(ffmpeg: err Invalid data\n|exit 1)", "", "3", "", "Joining|ffmpeg reported|-4|Invalid data",
        "dump 137 140 ffmpeg");
    row("joining crashes", "ffmpeg: kill SIGSEGV", "", "3", "", "Joining|ffmpeg crashed|code -5",
        "dump 137 140 ffmpeg");
    row("no final name", "18: file mp4", "-f|18", "3", "", "final name|code -8", "dump 18");
    row("folder gone", "18: announce mp4|vanish", "-f|18", "3", "", "final name", "dump 18");
}

} // namespace

/** nox-fetch, from the command line to the files, with stand-ins for the external programs. */
class FetchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void outcomes_data();
    void outcomes();
    void missingPrograms_data();
    void missingPrograms();
    void interrupts_data();
    void interrupts();
    void ignoredHangup();
    void killedRun();
    void lostOutput();
    void closedChannels();
    void quietVerboseLog();
    void bar();

private:
    static QStringList leftInFolder(const TestSandbox &stage);
};

void FetchTest::initTestCase()
{
    QVERIFY(FetchProgram::install());
    // The stand-in for the interpreter does not look into it.
    QVERIFY(QFile(QCoreApplication::applicationDirPath() + "/yt.zip"_s).open(QIODevice::WriteOnly));
}

QStringList FetchTest::leftInFolder(const TestSandbox &stage)
{
    return QDir(stage.folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

void FetchTest::outcomes_data()
{
    // The scenario stands behind the page's, and a "dump" of its own wins. "|" lies between arguments, which the page's
    // address follows, and between texts of the error that must be there, or, with "!" in front, must not. In the
    // output DIR is the working folder. "Clip.mp4" is there before when the row's name ends with "taken".
    const TextTable row{"scenario", "arguments", "exitCode", "output", "error", "runs", "files"};
    addSuccesses(row);
    addFailures(row);
}

void FetchTest::outcomes()
{
    QFETCH(QString, scenario);
    QFETCH(QString, arguments);
    QFETCH(QString, error);
    QFETCH(QString, files);

    TestSandbox stage;
    stage.play(QLatin1String(page) + QLatin1Char('\n') + scenario);
    if (QByteArray(QTest::currentDataTag()).endsWith(" taken"))
        stage.putFile("Clip.mp4"_s);
    FetchProgram fetch(stage.folder());
    QVERIFY(fetch.run(arguments.split(QLatin1Char('|'), Qt::SkipEmptyParts) + QStringList(url())));

    QTEST(stage.plain(fetch.output()), "output");
    const QStringList texts = error.split(QLatin1Char('|'), Qt::SkipEmptyParts);
    for (const QString &text : texts) {
        const bool isForbidden = text.startsWith(QLatin1Char('!'));
        QVERIFY2(fetch.errors().contains(text.mid(isForbidden ? 1 : 0)) != isForbidden,
                 qPrintable(text + " in: "_s + fetch.errors()));
    }
    QTEST(QString::number(fetch.exitCode()), "exitCode");
    QCOMPARE(stage.files(), files);
    QCOMPARE(leftInFolder(stage).size(), files.isEmpty() ? 0 : files.count(QLatin1Char('=')));
    QTEST(stage.keys().join(QLatin1Char(' ')), "runs");
    QVERIFY(stage.isQuiet());
}

void FetchTest::missingPrograms_data()
{
    const TextTable row{"setup", "tool", "exitCode", "named"};
    row("tool", "", "none.zip", "1", "none.zip");
    row("interpreter", "python=missing", "yt.zip", "1", "python3.10/bin/python3.10");
    row("interpreter is no program", "python=plain", "yt.zip", "1", "python3.10/bin/python3.10");
    row("ffmpeg", "ffmpeg=missing", "yt.zip", "3", "/ffmpeg");
}

void FetchTest::missingPrograms()
{
    QFETCH(QString, setup);
    QFETCH(QString, tool);
    QFETCH(QString, named);

    TestSandbox stage;
    const Setup prepared(setup, stage);
    stage.play(QLatin1String(page));
    FetchProgram fetch(stage.folder());
    QVERIFY(fetch.run({url(), "--tool"_s, QFileInfo(stage.tool()).dir().filePath(tool)}));
    QTEST(QString::number(fetch.exitCode()), "exitCode");
    QVERIFY2(fetch.errors().contains(named), qPrintable(fetch.errors()));
    QCOMPARE(leftInFolder(stage), QStringList());
    QCOMPARE(stage.keys().size(), fetch.exitCode() == 3 ? 1 : 0); // extraction does not need ffmpeg
}

void FetchTest::interrupts_data()
{
    const TextTable row{"key", "script", "signal"};
    row("extracting", "dump", R"(err ERROR: so far\n|spawn|hang)", QByteArray::number(SIGINT));
    row("video", "137", "announce mp4|file mp4.part|touch .hidden|progress 10.0 100|spawn|hang",
        QByteArray::number(SIGINT));
    row("audio", "140", "announce m4a|touch x.part-Frag1|spawn|hang", QByteArray::number(SIGTERM));
    row("joining", "ffmpeg", "write half|spawn|hang", QByteArray::number(SIGHUP));
}

void FetchTest::interrupts()
{
    QFETCH(QString, key);
    QFETCH(QString, script);
    QFETCH(QString, signal);

    TestSandbox stage;
    stage.play(QLatin1String(page) + "\n%1: %2"_s.arg(key, script));
    FetchProgram fetch(stage.folder());
    fetch.start({url()});
    QTRY_VERIFY_WITH_TIMEOUT(stage.hangs(key), TestSandbox::Patience);
    QCOMPARE(leftInFolder(stage).size(), key == "dump"_s ? 0 : 1); // all stands in one place
    fetch.interrupt(signal.toInt());
    QVERIFY(fetch.waitForEnd());
    QCOMPARE(fetch.exitCode(), 130);
    QCOMPARE(fetch.output(), QString());
    QCOMPARE(leftInFolder(stage), QStringList());
    QTRY_VERIFY_WITH_TIMEOUT(stage.isQuiet(), TestSandbox::GraceAfterKill);
    QCOMPARE(QDir(stage.path("tmp"_s)).entryList({"nox*"_s}), QStringList());
}

// As nohup starts it: a terminal that goes away does not end it.
void FetchTest::ignoredHangup()
{
    TestSandbox stage;
    stage.play(QLatin1String(page) + "\n18: announce mp4|wait go"_s);
    FetchProgram fetch(stage.folder());
    static_cast<void>(std::signal(SIGHUP, SIG_IGN));
    fetch.start({"-f"_s, "18"_s, url()});
    static_cast<void>(std::signal(SIGHUP, SIG_DFL));
    QTRY_COMPARE_WITH_TIMEOUT(stage.keys().size(), 2, TestSandbox::Patience);
    fetch.interrupt(SIGHUP);
    stage.mark("go"_s);
    QVERIFY(fetch.waitForEnd());
    QCOMPARE(fetch.exitCode(), 0);
}

// What a killed run leaves goes with the next one, which leaves alone what is in use.
void FetchTest::killedRun()
{
    TestSandbox stage;
    stage.play(QLatin1String(page) + "\n137: announce mp4|file mp4.part|hang\n18: announce mp4|mark on|wait go"_s);
    FetchProgram killed(stage.folder());
    FetchProgram waiting(stage.folder());
    killed.start({"-f"_s, "137"_s, url()});
    waiting.start({"-f"_s, "18"_s, url()});
    QTRY_VERIFY_WITH_TIMEOUT(stage.hangs("137"_s) && stage.isMarked("on"_s), TestSandbox::Patience);
    killed.interrupt(SIGKILL);
    QVERIFY(killed.waitForEnd());
    QCOMPARE(leftInFolder(stage).size(), 2);
    FetchProgram next(stage.folder());
    QVERIFY(next.run({"-f"_s, "140"_s, url()}));
    QCOMPARE(leftInFolder(stage).size(), 2); // the finished file, and the folder of the waiting one
    stage.mark("go"_s);
    QVERIFY(waiting.waitForEnd());
    QCOMPARE(stage.plain(waiting.output()), "DIR/Clip.mp4\n"_s);
    QCOMPARE(leftInFolder(stage), QStringList({"Clip.m4a"_s, "Clip.mp4"_s}));
}

void FetchTest::lostOutput()
{
    TestSandbox stage;
    stage.play(QLatin1String(page) + "\n18: announce mp4|wait go"_s);
    const QString pipe = stage.path("pipe"_s);
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), S_IRUSR | S_IWUSR), 0);
    const int reader = open(QFile::encodeName(pipe).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    FetchProgram fetch(stage.folder());
    fetch.process().setStandardOutputFile(pipe);
    fetch.start({"-f"_s, "18"_s, url()});
    QTRY_COMPARE_WITH_TIMEOUT(stage.keys().size(), 2, TestSandbox::Patience);
    close(reader); // a write gives SIGPIPE now
    stage.mark("go"_s);
    QVERIFY(fetch.waitForEnd());
    QCOMPARE(fetch.exitCode(), 3);
    QVERIFY2(stage.plain(fetch.errors()).contains("\"DIR/Clip.mp4\""_s), qPrintable(fetch.errors()));
}

// Files that the program opens must not take the place of a closed channel: what is printed would go into them.
void FetchTest::closedChannels()
{
    TestSandbox stage;
    stage.play(QLatin1String(page));
    FetchProgram fetch(stage.folder());
    QVERIFY(fetch.runWithClosedChannels({"-f"_s, "18"_s, "--log"_s, "log"_s, url()}));
    QCOMPARE(fetch.exitCode(), 3);
    QCOMPARE(leftInFolder(stage), QStringList({"Clip.mp4"_s, "log"_s}));
}

void FetchTest::quietVerboseLog()
{
    TestSandbox stage;
    stage.play(QLatin1String(page));
    FetchProgram quiet(stage.folder());
    QVERIFY(quiet.run({"-q"_s, url()}));
    QCOMPARE(quiet.errors(), QString());
    QCOMPARE(stage.plain(quiet.output()), "DIR/Clip.mp4\n"_s);

    FetchProgram verbose(stage.folder());
    QVERIFY(verbose.run({"-v"_s, "--log"_s, stage.path("log"_s), url()}));
    QVERIFY(verbose.errors().contains("entering yd..."_s));
    QCOMPARE(stage.plain(verbose.output()), "DIR/Clip(1).mp4\n"_s);
    QFile log(stage.path("log"_s));
    QVERIFY(log.open(QIODevice::ReadOnly));
    QVERIFY(log.readAll().contains("--dump-json"));
}

// Standard error is a terminal: the bar is drawn over and over in one line, and wiped in the end.
void FetchTest::bar()
{
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
    QVERIFY(terminal >= 0 && grantpt(terminal) == 0 && unlockpt(terminal) == 0);
    const int held = open(ptsname(terminal), O_RDWR | O_NOCTTY); // what is written must not get lost at the end
    TestSandbox stage;
    stage.play(QLatin1String(page)
               + "\n137: announce mp4|progress 50.0 1000|wait go\nffmpeg: write begun|wait join|merge"_s);
    FetchProgram fetch(stage.folder());
    fetch.process().setStandardErrorFile(QString::fromLocal8Bit(ptsname(terminal)));
    fetch.start({url()});
    QByteArray text;
    const auto shows = [&](const char *words) {
        char bytes[4096];
        for (ssize_t count = read(terminal, bytes, sizeof bytes); count > 0;
             count = read(terminal, bytes, sizeof bytes))
            text.append(bytes, static_cast<int>(count));
        return text.contains(words);
    };
    QTRY_VERIFY_WITH_TIMEOUT(shows("extracting |"), TestSandbox::Patience);
    QTRY_VERIFY_WITH_TIMEOUT(shows("video      41% [##"), TestSandbox::Patience);
    stage.mark("go"_s);
    QTRY_VERIFY_WITH_TIMEOUT(shows("joining  5 bytes"), TestSandbox::Patience);
    stage.mark("join"_s);
    QVERIFY(fetch.waitForEnd());
    QVERIFY(shows("500 bytes / 1.2 kB  10 bytes/s  0:01:10"));
    QVERIFY2(text.endsWith("\r\x1b[K"), text.right(60).constData());
    QCOMPARE(fetch.exitCode(), 0);
    close(held);
    close(terminal);
}

NOX_TEST_MAIN(FetchTest)
#include "FetchTest.moc"
