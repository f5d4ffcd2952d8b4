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
    row("best and audio", "", "", "0", done, "Clip (1:01:01)|137 (video only, MP4, 720P) with audio 140|joining",
        "dump 137 140 ffmpeg", "Clip.mp4=137+140");
    row("format", "", "-f|18", "0", done, "video", "dump 18", "Clip.mp4=18");
    row("no audio", "", "--no-audio", "0", done, "!joining", "dump 137", "Clip.mp4=137");
    row("other audio", "251: announce webm", "-A|251", "0", done, "audio must be converted|: 2 min.",
        "dump 137 251 ffmpeg", "Clip.mp4=137+251");
    row("audio alone", "", "-f|140", "0", "DIR/Clip.m4a\n", "audio", "dump 140", "Clip.m4a=140");
    row("output", "", "-f|18|-o|my %(id)s.x", "0", "DIR/my %(id)s.x\n", "", "dump 18", "my %(id)s.x=18");
    row("both codes and output", "", "-f|137|-A|140|-o|x.mp4", "0", "DIR/x.mp4\n",
        "137 (video only) with audio 140|!1:01:01", "137 140 ffmpeg", "x.mp4=137+140");
    row("both codes, output and list", "", "-f|137|-A|140|-o|x.mp4|-q|-l", "0", list, "", "dump");
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
    const char two[] = R"(list: out {"nox_index":1,"nox_url":"http://x/1","title":"One","duration":61,"nox_count":2}\n)"
                       R"({"nox_index":2,"nox_url":"http://x/2#nox-item=2"}\n)";
    row("limit of the picture", "", "-l|--max-height|400", "0",
        "   CODE  KIND        CONTAINER  QUALITY  SIZE  DASH/3D\n"
        "   137   video only  MP4        720P     -     DASH\n"
        "*  18    video       MP4        360P     -     -\n"
        "   251   audio       WEBM       160K     -     DASH\n"
        "   140   audio       M4A        128K     -     DASH\n",
        "", "dump");
    row("sound as MP3", "", "--mp3|-f|140", "0", "DIR/Clip.mp3\n", "audio|converting", "dump 140 ffmpeg",
        "Clip.mp3=140");
    row("best sound as MP3", "251: announce webm", "--mp3", "0", "DIR/Clip.mp3\n", "audio", "dump 251 ffmpeg",
        "Clip.mp3=251");
    row("first of several", R"(dump: err WARNING: [nox:videos] 12\n|json Clip 18)", "-f|18", "0", "DIR/Clip.mp4\n",
        "1 of 12 videos|--items|![nox:", "dump 18", "Clip.mp4=18");
    row("list of several parts", R"(dump: err WARNING: [nox:parts] many\n|json Clip 18)", "-l|-f|18", "0",
        "   CODE  KIND        CONTAINER  QUALITY  SIZE  DASH/3D\n*  18    video only  MP4        -        -     DASH\n",
        "1 of several parts of a video", "dump");
    row("list of the videos", two, "-l|--items|all", "0",
        "01   0:01:01  http://x/1  One\n02            http://x/2#nox-item=2\n", "!downloaded", "list");
    row("all videos", two, "--items|all|-f|18", "0", "DIR/01 Clip.mp4\nDIR/02 Clip.mp4\n",
        "Video 1 of 2: One|Video 2 of 2: http://x/2#nox-item=2|2 downloaded, 0 failed", "list dump 18 dump 18",
        "01 Clip.mp4=18, 02 Clip.mp4=18");
    row("some videos", two, "--items|2|-f|18", "0", "DIR/02 Clip.mp4\n", "!Video 1|!downloaded", "list dump 18",
        "02 Clip.mp4=18");
    row("tool's version", "dump: out 2026.01.02\\n", "--tool-version", "0", "2026.01.02\n", "", "dump");
}

void addFailures(const TextTable &row)
{
    row("output taken", "", "-o|Clip.mp4", "2", "", "exists already", "", "Clip.mp4=old");
    row("two pages that fail", "dump: err ERROR: gone\\n|exit 1", "http://127.0.0.1/first", "1", "",
        "nox-fetch: http://127.0.0.1/first: |nox-fetch: http://127.0.0.1/page: |\n  ERROR: gone", "dump dump");
    row("no such video",
        R"(list: out {"nox_index":1,"nox_url":"http://x/1","nox_count":2}\n{"nox_index":2,"nox_url":"http://x/2"}\n)",
        "--items|2,5|-f|18", "2", "DIR/02 Clip.mp4\n", "has no video 5; the last one has the number 2", "list dump 18",
        "02 Clip.mp4=18");
    row("no list", R"(list: err ERROR: [nox:login] Members only\n|exit 1)", "--items|all", "1", "",
        "tool.conf|ERROR: Members only", "list");
    row("MP3 of a video", "", "--mp3|-f|18", "2", "", "--mp3 does not apply", "dump");
    row("MP3 fails", "ffmpeg: err Unknown encoder\\n|exit 1", "--mp3|-f|140", "3", "", "ffmpeg failed|Unknown encoder",
        "dump 140 ffmpeg");
    row("no version", "dump: err ERROR: odd\\n|exit 1", "--tool-version", "1", "", "version|ERROR: odd", "dump");
    row("log in no folder", "", "--log|none/log", "2", "", "log file");
    row("unknown format", "", "-f|999", "2", "", "\"999\"; it has: 137, 18, 251, 140", "dump");
    row("unknown code taken at its word", "999: err ERROR: no such format\\n|exit 1", "-f|137|-A|999|-o|x.mp4", "3", "",
        "tool gave up|ERROR: no such format", "137 999");
    row("codes that are options", "", "-f|--exec=x|-A|140|-o|x.mp4", "2", "", "--exec=x", "dump");
    row("unknown audio", "", "-A|999", "2", "", "\"999\"; it has: 251, 140", "dump");
    row("audio with a picture", "18: announce mp4", "-A|18", "2", "", "\"18\" holds a picture|has: 251, 140", "dump");
    row("audio that is silent", "", "-f|137|-A|137", "2", "", "\"137\" holds a picture|has: 251, 140", "dump");
    row("audio for a stream with sound", "", "-f|18|-A|140", "2", "", "\"18\"", "dump");

    row("page error", R"(dump: err ERROR: no such video\n|exit 1)", "", "1", "", "could not read|ERROR: no such video",
        "dump");
    row("warning and error in one breath", R"(dump: err WARNING: odd\nERROR: gone\n|exit 1)", "", "1", "",
        "ERROR: gone|!odd", "dump");
    row("option refused", R"(dump: err ERROR: [nox:settings] the option -x is not allowed here\n|exit 2)", "", "1", "",
        "Correct them in the file tool.conf.|ERROR: the option -x|!network|![nox:", "dump");
    row("value refused", R"(137: err ERROR: [nox:settings] bad\n|exit 2)", "", "3", "",
        "Correct them in the file tool.conf.|!network", "dump 137");
    row("error in two pieces", R"(dump: err ERROR: first |err second\n|exit 1)", "", "1", "", "ERROR: first second",
        "dump");
    row("warning but success", R"(dump: err WARNING: some formats may be missing\n|json Late 18)", "-f|18", "0",
        "DIR/Late.mp4\n", "\nsome formats may be missing\n", "dump 18", "Late.mp4=18");
    row("complaint but success", R"(dump: err Deprecated\n|json Late 18)", "-f|18", "0", "DIR/Late.mp4\n",
        "!Deprecated", "dump 18", "Late.mp4=18");
    row("complaint but no page", R"(dump: err some words\n|out {})", "", "1", "", "could not be read|some words",
        "dump");
    row("no stream", "dump: json Clip ", "-l", "1", "", "has no video", "dump");
    row("no code that can be passed on", "dump: json Clip --exec=x", "", "1", "", "cannot be passed", "dump");
    row("no description", "dump: out nonsense", "", "1", "", "could not be read|!newer", "dump");
    row("tool crash", "dump: kill SIGSEGV", "", "1", "", "crashed", "dump");

    row("video fails", R"(137: file mp4.part|touch x.ytdl|err ERROR: HTTP 403\n|exit 1)", "", "3", "",
        "tool gave up|ERROR: HTTP 403", "dump 137");
    row("video crashes", "137: announce mp4|kill SIGSEGV", "", "3", "", "crashed", "dump 137");
    row("joining fails", R"(ffmpeg: err Invalid data\n|exit 1)", "", "3", "", "Joining|ffmpeg reported|Invalid data",
        "dump 137 140 ffmpeg");
    row("joining crashes", "ffmpeg: kill SIGSEGV", "", "3", "", "Joining|ffmpeg crashed", "dump 137 140 ffmpeg");
    row("no final name", "18: file mp4", "-f|18", "3", "", "final name", "dump 18");
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
    void goesOn_data();
    void goesOn();
    void batch_data();
    void batch();
    void thousands();
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
    QTRY_VERIFY_WITH_TIMEOUT(stage.hangs(key), TestSandbox::Timeout);
    QCOMPARE(leftInFolder(stage).size(), key == "dump"_s ? 0 : 1); // all stands in one place
    fetch.interrupt(signal.toInt());
    QVERIFY(fetch.waitForEnd());
    QCOMPARE(fetch.exitCode(), 130);
    QCOMPARE(fetch.output(), QString());
    QCOMPARE(leftInFolder(stage), QStringList());
    QTRY_VERIFY_WITH_TIMEOUT(stage.isQuiet(), TestSandbox::GraceAfterKill);
    QCOMPARE(QDir(stage.path("tmp"_s)).entryList({"nox*"_s}), QStringList());
}

void FetchTest::goesOn_data()
{
    const TextTable row{"script", "signal", "exitCode", "continued"};
    const char some[] = "touch parts/a.part|announce mp4|spawn|hang";
    row("killed", "touch parts/a.part|announce mp4|hang", QByteArray::number(SIGKILL), "-1", "yes");
    row("interrupted", some, QByteArray::number(SIGINT), "130", "yes");
    row("failed", "touch parts/a.part|err ERROR: [nox:network] x\\n|exit 1", "", "3", "yes");
    row("interrupted with nothing fetched", "announce mp4|hang", QByteArray::number(SIGTERM), "130", "no");
}

// The same command finds what the last one has fetched, and leaves nothing but the file.
void FetchTest::goesOn()
{
    QFETCH(QString, script);
    QFETCH(QString, signal);
    QFETCH(QString, continued);
    TestSandbox stage;
    const QString scenario = QLatin1String(page) + "\n137: %1"_s;
    stage.play(scenario.arg(script));
    FetchProgram first(stage.folder());
    first.start({"-c"_s, url()});
    if (!signal.isEmpty()) {
        QTRY_VERIFY_WITH_TIMEOUT(stage.hangs("137"_s), TestSandbox::Timeout);
        first.interrupt(signal.toInt());
    }
    QVERIFY(first.waitForEnd());
    QTEST(QString::number(first.exitCode()), "exitCode");
    const bool goesOn = continued == "yes"_s;
    QCOMPARE(leftInFolder(stage).size(), goesOn ? 1 : 0);
    QCOMPARE(first.errors().contains("the same command goes on"_s), goesOn && first.exitCode() > 0);
    QTRY_VERIFY_WITH_TIMEOUT(stage.isQuiet(), TestSandbox::GraceAfterKill);

    stage.play(scenario.arg("touch parts/b.part|announce mp4"_s));
    FetchProgram second(stage.folder());
    QVERIFY(second.run({"-c"_s, url()}));
    QCOMPARE(stage.plain(second.output()), "DIR/Clip.mp4\n"_s);
    QCOMPARE(leftInFolder(stage), QStringList("Clip.mp4"_s));
    QStringList folders;
    const QList<TestSandbox::Run> runs = stage.runs();
    for (const TestSandbox::Run &run : runs)
        if (run.key == "137"_s)
            folders += QFileInfo(run.arguments.value(run.arguments.indexOf("-o"_s) + 1)).path();
    QCOMPARE(folders.size(), 2);
    QCOMPARE(folders.first() == folders.last(), goesOn);
}

void FetchTest::batch_data()
{
    const TextTable row{"arguments", "lines", "exitCode", "files", "error"};
    row("file", "-a|list", "# two\n\nhttp://x/1\r\nwww.x\n", "0", "2",
        "1 of 2: http://x/1|2 of 2: https://www.x|2 downloaded, 0 failed");
    row("standard input", "-a|-", "http://x/1\nhttp://x/2", "0", "2", "2 downloaded, 0 failed");
    row("a bad line", "-a|list", "http://x/1\nftp://x\nhttp://x/3\n", "2", "2",
        "ftp://x: An address must start|2 downloaded, 1 failed\n  ftp://x: An address must start");
    row("addresses on the command line first", "-a|list|http://x/0", "http://x/1\n", "0", "2", "1 of 2: http://x/0");
}

void FetchTest::batch()
{
    QFETCH(QString, arguments);
    QFETCH(QString, lines);
    QFETCH(QString, error);
    TestSandbox stage;
    stage.play(QLatin1String(page));
    QFile list(stage.path("list"_s));
    QVERIFY(list.open(QIODevice::WriteOnly) && list.write(lines.toUtf8()) > 0);
    list.close();
    FetchProgram fetch(stage.folder());
    fetch.process().setStandardInputFile(list.fileName());
    const QStringList given = arguments.replace("list"_s, list.fileName()).split(QLatin1Char('|'));
    QVERIFY(fetch.run(QStringList{"-f"_s, "18"_s} + given));
    QTEST(QString::number(fetch.exitCode()), "exitCode");
    QTEST(QString::number(leftInFolder(stage).size()), "files");
    for (const QString &text : error.split(QLatin1Char('|')))
        QVERIFY2(fetch.errors().contains(text), qPrintable(text + " in: "_s + fetch.errors()));
}

// A page with more videos than one list holds: each list is asked for when its turn comes.
void FetchTest::thousands()
{
    TestSandbox stage;
    stage.play(R"(list: lines 1000 {"nox_url":"http://x/a","nox_count":5000})"_s);
    FetchProgram fetch(stage.folder());
    QVERIFY(fetch.run({"-l"_s, "--items"_s, "199-201,4100,6000"_s, url()}));
    QCOMPARE(fetch.output(),
             "0199            http://x/a\n0200            http://x/a\n0201            http://x/a\n"
             "4100            http://x/a\n"_s);
    QVERIFY2(fetch.errors().contains("has no video 6000; the last one has the number 5000"_s),
             qPrintable(fetch.errors()));
    QCOMPARE(fetch.exitCode(), 2);
    QStringList ranges;
    const QList<TestSandbox::Run> runs = stage.runs();
    for (const TestSandbox::Run &run : runs)
        ranges += run.arguments.value(run.arguments.indexOf("--playlist-items"_s) + 1);
    QCOMPARE(ranges, (QStringList{"199:398"_s, "4100:4299"_s}));
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
    QTRY_COMPARE_WITH_TIMEOUT(stage.keys().size(), 2, TestSandbox::Timeout);
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
    QTRY_VERIFY_WITH_TIMEOUT(stage.hangs("137"_s) && stage.isMarked("on"_s), TestSandbox::Timeout);
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
    QTRY_COMPARE_WITH_TIMEOUT(stage.keys().size(), 2, TestSandbox::Timeout);
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
    QTRY_VERIFY_WITH_TIMEOUT(shows("extracting |"), TestSandbox::Timeout);
    QTRY_VERIFY_WITH_TIMEOUT(shows("video      41% [##"), TestSandbox::Timeout);
    stage.mark("go"_s);
    QTRY_VERIFY_WITH_TIMEOUT(shows("joining  5 bytes"), TestSandbox::Timeout);
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
