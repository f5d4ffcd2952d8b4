#include "tests/hosts/FetchProgram.h"
#include "tests/support/TestMain.h"
#include "tests/support/TestSandbox.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>

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
    return QStringLiteral("http://127.0.0.1/page");
}

void addRow(const char *name, const char *scenario, const char *arguments, int exitCode, const char *output,
            const char *error, const char *files, const char *runs)
{
    const auto text = [](const char *utf8) { return QString::fromUtf8(utf8); };
    QTest::newRow(name) << text(scenario) << text(arguments) << exitCode << text(output) << text(error) << text(files)
                        << text(runs);
}

void addSuccesses()
{
    const char done[] = "DIR/Clip.mp4\n";
    const char list[] = "   CODE  KIND        CONTAINER  QUALITY  SIZE  DASH/3D\n"
                        "*  137   video only  MP4        720P     -     DASH\n"
                        "   18    video       MP4        360P     -     -\n"
                        "   251   audio       WEBM       160K     -     DASH\n"
                        "*  140   audio       M4A        128K     -     DASH\n";
    addRow("best and companion", "", "", 0, done, "Clip (1:01:01)|137 (video only, MP4, 720P) with audio 140|joining",
           "Clip.mp4=137+140", "dump 137 140 ffmpeg");
    addRow("format", "", "-f|18", 0, done, "video", "Clip.mp4=18", "dump 18");
    addRow("no audio", "", "--no-audio", 0, done, "!joining", "Clip.mp4=137", "dump 137");
    addRow("other audio", "251: announce webm", "-a|251", 0, done, "", "Clip.mp4=137+251", "dump 137 251 ffmpeg");
    addRow("other stream's sound", "18: announce mp4", "-a|18", 0, done, "audio must be converted|: 2 min.",
           "Clip.mp4=137+18", "dump 137 18 ffmpeg");
    addRow("audio alone", "", "-f|140", 0, "DIR/Clip.m4a\n", "audio", "Clip.m4a=140", "dump 140");
    addRow("output", "", "-f|18|-o|my %(id)s.x", 0, "DIR/my %(id)s.x\n", "", "my %(id)s.x=18", "dump 18");
    addRow("both codes and output", "", "-f|137|-a|140|-o|x.mp4", 0, "DIR/x.mp4\n",
           "137 (video only) with audio 140|!1:01:01", "x.mp4=137+140", "137 140 ffmpeg");
    addRow("both codes, output and list", "", "-f|137|-a|140|-o|x.mp4|-q|-l", 0, list, "", "", "dump");
    addRow("name taken", "", "-f|18", 0, "DIR/Clip(1).mp4\n", "", "Clip(1).mp4=18, Clip.mp4=old", "dump 18");
    addRow("taken meanwhile", "18: announce mp4|touch ../Clip.mp4", "-f|18", 0, "DIR/Clip(1).mp4\n", "",
           "Clip(1).mp4=18, Clip.mp4=new", "dump 18");
    addRow("settings that do not count",
           R"(dump: err WARNING: w\nWARNING: /c/noxwebmedia/tool.conf is not used: x\n|)"
           R"(json Clip 18)",
           "-f|18", 0, "DIR/Clip.mp4\n", "\n/c/noxwebmedia/tool.conf is not used: x\n|!WARNING", "Clip.mp4=18",
           "dump 18");
    addRow("list", "", "-l", 0, list, "", "", "dump");
    addRow("two pages", "", "-f|18|http://127.0.0.1/first", 0, "DIR/Clip.mp4\nDIR/Clip(1).mp4\n",
           "1 of 2: http://127.0.0.1/first|2 of 2: http://127.0.0.1/page", "Clip(1).mp4=18, Clip.mp4=18",
           "dump 18 dump 18");
    addRow("folder", "", "-f|18|-P|../tmp", 0, "ROOT/tmp/Clip.mp4\n", "", "", "dump 18");
    addRow("tool's version", "dump: out 2026.01.02\\n", "--tool-version", 0, "2026.01.02\n", "", "", "dump");
}

void addFailures()
{
    addRow("output taken", "", "-o|Clip.mp4", 2, "", "exists already", "Clip.mp4=old", "");
    addRow("output in no folder", "", "-o|none/x.mp4", 2, "", "does not exist", "", "");
    addRow("output is a folder", "", "-o|.", 2, "", "is a folder", "", "");
    addRow("two pages that fail", "dump: err ERROR: gone\\n|exit 1", "http://127.0.0.1/first", 1, "",
           "nox-fetch: http://127.0.0.1/first: |nox-fetch: http://127.0.0.1/page: |\n  ERROR: gone", "", "dump dump");
    addRow("no version", "dump: err ERROR: odd\\n|exit 1", "--tool-version", 1, "", "version|ERROR: odd", "", "dump");
    addRow("unknown option", "", "--colour=18", 2, "", "colour", "", "");
    addRow("log in no folder", "", "--log|none/log", 2, "", "log file", "", "");
    addRow("unknown format", "", "-f|999", 2, "", "\"999\"; it has: 137, 18, 251, 140", "", "dump");
    addRow("unknown code taken at its word", "999: err ERROR: no such format\\n|exit 1", "-f|137|-a|999|-o|x.mp4", 3,
           "", "tool gave up|code -4|ERROR: no such format", "", "137 999");
    addRow("codes that are options", "", "-f|--exec=x|-a|140|-o|x.mp4", 2, "", "--exec=x", "", "dump");
    addRow("audio that is silent", "", "-a|137", 2, "", "it has: 18, 251, 140", "", "dump");
    addRow("audio for a stream with sound", "", "-f|18|-a|140", 2, "", "\"18\"", "", "dump");

    addRow("page error", R"(dump: err ERROR: no such video\n|exit 1)", "", 1, "", "could not read|ERROR: no such video",
           "", "dump");
    addRow("warning and error in one breath", R"(dump: err WARNING: odd\nERROR: gone\n|exit 1)", "", 1, "",
           "ERROR: gone|!odd", "", "dump");
    addRow("option refused", R"(dump: err ERROR: /c/noxwebmedia/tool.conf: the option -x is not allowed here\n|exit 2)",
           "", 1, "", "Correct them in the file tool.conf.|the option -x|!network", "", "dump");
    addRow("value refused", R"(137: err ERROR: The tool does not take a setting in tool.conf: bad\n|exit 2)", "", 3, "",
           "Correct them in the file tool.conf.|!network", "", "dump 137");
    addRow("error in two pieces", R"(dump: err ERROR: first |err second\n|exit 1)", "", 1, "", "ERROR: first second",
           "", "dump");
    addRow("complaint but success", R"(dump: err Deprecated\n|json Late 18)", "-f|18", 0, "DIR/Late.mp4\n",
           "!Deprecated", "Late.mp4=18", "dump 18");
    addRow("complaint but no page", R"(dump: err some words\n|out {})", "", 1, "", "could not be read|some words", "",
           "dump");
    addRow("no stream", "dump: json Clip ", "-l", 1, "", "no stream|protected", "", "dump");
    addRow("protected", R"(dump: err ERROR: [x] y: This video is DRM protected\n|exit 1)", "", 1, "",
           "holds no stream|DRM protected|!network", "", "dump");
    addRow("not begun", R"(dump: err ERROR: [x] y: This live event will begin in 3 hours\nWARNING: w\n|exit 1)", "", 1,
           "", "holds no stream|in 3 hours|!network", "", "dump");
    addRow("pictures only", R"(dump: err ERROR: No stream of this page can be downloaded\n|exit 1)", "", 1, "",
           "holds no stream|!network", "", "dump");
    addRow("no code that can be passed on", "dump: json Clip --exec=x", "", 1, "", "cannot be passed", "", "dump");
    addRow("no description", "dump: out nonsense", "", 1, "", "could not be read|!newer", "", "dump");
    addRow("tool crash", "dump: kill SIGSEGV", "", 1, "", "crashed", "", "dump");

    addRow("video fails", R"(137: file mp4.part|touch x.ytdl|err ERROR: HTTP 403\n|exit 1)", "", 3, "",
           "tool gave up|code -4|ERROR: HTTP 403", "", "dump 137");
    addRow("video crashes", "137: announce mp4|kill SIGSEGV", "", 3, "", "crashed|code -5", "", "dump 137");
    addRow("audio fails", "140: announce m4a|exit 2", "", 3, "", "tool gave up|code -4", "", "dump 137 140");
    addRow("joining fails", R"(ffmpeg: err Invalid data\n|exit 1)", "", 3, "",
           "Joining|ffmpeg reported|-4|Invalid data", "", "dump 137 140 ffmpeg");
    addRow("joining crashes", "ffmpeg: kill SIGSEGV", "", 3, "", "Joining|ffmpeg crashed|code -5", "",
           "dump 137 140 ffmpeg");
    addRow("no final name", "18: file mp4", "-f|18", 3, "", "final name|code -8", "", "dump 18");
    addRow("folder gone", "18: announce mp4|vanish", "-f|18", 3, "", "final name", "", "dump 18");
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
    void json();
    void quietVerboseLog();
    void bar();

private:
    static QStringList leftInFolder(const TestSandbox &stage);
};

void FetchTest::initTestCase()
{
    QVERIFY(FetchProgram::install());
    // The stand-in for the interpreter does not look into it.
    QVERIFY(QFile(QCoreApplication::applicationDirPath() + QStringLiteral("/yt.zip")).open(QIODevice::WriteOnly));
}

QStringList FetchTest::leftInFolder(const TestSandbox &stage)
{
    return QDir(stage.folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

void FetchTest::outcomes_data()
{
    QTest::addColumn<QString>("scenario");  // behind the page; a "dump" of its own wins
    QTest::addColumn<QString>("arguments"); // "|" between them; the page's address follows
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("output"); // DIR is the working folder
    QTest::addColumn<QString>("error");  // "|" between texts that must be there; "!" in front: must not
    QTest::addColumn<QString>("files");  // "Clip.mp4" is put there before when the row's name says so
    QTest::addColumn<QString>("runs");

    addSuccesses();
    addFailures();
}

void FetchTest::outcomes()
{
    QFETCH(QString, scenario);
    QFETCH(QString, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, output);
    QFETCH(QString, error);
    QFETCH(QString, files);
    QFETCH(QString, runs);

    TestSandbox stage;
    stage.play(QLatin1String(page) + QLatin1Char('\n') + scenario);
    if (QByteArray(QTest::currentDataTag()).endsWith(" taken"))
        stage.putFile(QStringLiteral("Clip.mp4"));
    FetchProgram fetch(stage.folder());
    QVERIFY(fetch.run(arguments.split(QLatin1Char('|'), Qt::SkipEmptyParts) + QStringList(url())));

    QCOMPARE(stage.plain(fetch.output()), output);
    const QStringList texts = error.split(QLatin1Char('|'), Qt::SkipEmptyParts);
    for (const QString &text : texts) {
        const bool isForbidden = text.startsWith(QLatin1Char('!'));
        QVERIFY2(fetch.errors().contains(text.mid(isForbidden ? 1 : 0)) != isForbidden,
                 qPrintable(text + QStringLiteral(" in: ") + fetch.errors()));
    }
    QCOMPARE(fetch.exitCode(), exitCode);
    QCOMPARE(stage.files(), files);
    QCOMPARE(leftInFolder(stage).size(), files.isEmpty() ? 0 : files.count(QLatin1Char('=')));
    QCOMPARE(stage.keys().join(QLatin1Char(' ')), runs);
    QVERIFY(stage.isQuiet());
}

void FetchTest::missingPrograms_data()
{
    QTest::addColumn<int>("program");
    QTest::addColumn<int>("condition");
    QTest::addColumn<QString>("tool");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("named");

    QTest::newRow("tool") << int(TestSandbox::Ffmpeg) << int(TestSandbox::StandIn) << QStringLiteral("none.zip") << 1
                          << QStringLiteral("none.zip");
    QTest::newRow("interpreter") << int(TestSandbox::Interpreter) << int(TestSandbox::Missing) << QString() << 1
                                 << QStringLiteral("python3.10/bin/python3.10");
    QTest::newRow("interpreter is no program") << int(TestSandbox::Interpreter) << int(TestSandbox::NotExecutable)
                                               << QString() << 1 << QStringLiteral("python3.10/bin/python3.10");
    QTest::newRow("ffmpeg") << int(TestSandbox::Ffmpeg) << int(TestSandbox::Missing) << QString() << 3
                            << QStringLiteral("/ffmpeg");
}

void FetchTest::missingPrograms()
{
    QFETCH(int, program);
    QFETCH(int, condition);
    QFETCH(QString, tool);
    QFETCH(int, exitCode);
    QFETCH(QString, named);

    TestSandbox stage;
    stage.provide(static_cast<TestSandbox::Program>(program), static_cast<TestSandbox::Condition>(condition));
    stage.play(QLatin1String(page));
    FetchProgram fetch(stage.folder());
    QVERIFY(fetch.run({url(), QStringLiteral("--tool"), tool.isEmpty() ? stage.tool() : tool}));
    QCOMPARE(fetch.exitCode(), exitCode);
    QVERIFY2(fetch.errors().contains(named), qPrintable(fetch.errors()));
    QCOMPARE(leftInFolder(stage), QStringList());
    QCOMPARE(stage.keys().size(), exitCode == 3 ? 1 : 0); // extraction does not need ffmpeg
}

void FetchTest::interrupts_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("script");
    QTest::addColumn<int>("signalNumber");

    const auto row = [](const char *name, const char *key, const char *script, int signalNumber) {
        QTest::newRow(name) << QString::fromLatin1(key) << QString::fromLatin1(script) << signalNumber;
    };
    row("extracting", "dump", R"(err ERROR: so far\n|spawn|hang)", SIGINT);
    row("video", "137", "announce mp4|file mp4.part|touch .hidden|progress 10.0 100|spawn|hang", SIGINT);
    row("audio", "140", "announce m4a|touch x.part-Frag1|spawn|hang", SIGTERM);
    row("joining", "ffmpeg", "write half|spawn|hang", SIGHUP);
}

void FetchTest::interrupts()
{
    QFETCH(QString, key);
    QFETCH(QString, script);
    QFETCH(int, signalNumber);

    TestSandbox stage;
    stage.play(QLatin1String(page) + QStringLiteral("\n%1: %2").arg(key, script));
    FetchProgram fetch(stage.folder());
    fetch.start({url()});
    QTRY_VERIFY_WITH_TIMEOUT(stage.hangs(key), TestSandbox::Patience);
    QCOMPARE(leftInFolder(stage).size(), key == QLatin1String("dump") ? 0 : 1); // all stands in one place
    fetch.interrupt(signalNumber);
    QVERIFY(fetch.waitForEnd());
    QCOMPARE(fetch.exitCode(), 130);
    QCOMPARE(fetch.output(), QString());
    QCOMPARE(leftInFolder(stage), QStringList());
    QTRY_VERIFY_WITH_TIMEOUT(stage.isQuiet(), TestSandbox::GraceAfterKill);
    QCOMPARE(QDir(stage.path(QStringLiteral("tmp"))).entryList({QStringLiteral("nox*")}), QStringList());
}

// As nohup starts it: a terminal that goes away does not end it.
void FetchTest::ignoredHangup()
{
    TestSandbox stage;
    stage.play(QLatin1String(page) + QStringLiteral("\n18: announce mp4|wait go"));
    FetchProgram fetch(stage.folder());
    static_cast<void>(std::signal(SIGHUP, SIG_IGN));
    fetch.start({QStringLiteral("-f"), QStringLiteral("18"), url()});
    static_cast<void>(std::signal(SIGHUP, SIG_DFL));
    QTRY_COMPARE_WITH_TIMEOUT(stage.keys().size(), 2, TestSandbox::Patience);
    fetch.interrupt(SIGHUP);
    stage.mark(QStringLiteral("go"));
    QVERIFY(fetch.waitForEnd());
    QCOMPARE(fetch.exitCode(), 0);
}

// What a killed run leaves goes with the next one, which leaves alone what is in use.
void FetchTest::killedRun()
{
    TestSandbox stage;
    stage.play(QLatin1String(page)
               + QStringLiteral("\n137: announce mp4|file mp4.part|hang\n18: announce mp4|mark on|wait go"));
    FetchProgram killed(stage.folder());
    FetchProgram waiting(stage.folder());
    killed.start({QStringLiteral("-f"), QStringLiteral("137"), url()});
    waiting.start({QStringLiteral("-f"), QStringLiteral("18"), url()});
    QTRY_VERIFY_WITH_TIMEOUT(stage.hangs(QStringLiteral("137")) && stage.isMarked(QStringLiteral("on")),
                             TestSandbox::Patience);
    killed.interrupt(SIGKILL);
    QVERIFY(killed.waitForEnd());
    QCOMPARE(leftInFolder(stage).size(), 2);
    FetchProgram next(stage.folder());
    QVERIFY(next.run({QStringLiteral("-f"), QStringLiteral("140"), url()}));
    QCOMPARE(leftInFolder(stage).size(), 2); // the finished file, and the folder of the waiting one
    stage.mark(QStringLiteral("go"));
    QVERIFY(waiting.waitForEnd());
    QCOMPARE(stage.plain(waiting.output()), QStringLiteral("DIR/Clip.mp4\n"));
    QCOMPARE(leftInFolder(stage), QStringList({QStringLiteral("Clip.m4a"), QStringLiteral("Clip.mp4")}));
}

void FetchTest::lostOutput()
{
    TestSandbox stage;
    stage.play(QLatin1String(page) + QStringLiteral("\n18: announce mp4|wait go"));
    const QString pipe = stage.path(QStringLiteral("pipe"));
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), S_IRUSR | S_IWUSR), 0);
    const int reader = open(QFile::encodeName(pipe).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    FetchProgram fetch(stage.folder());
    fetch.process().setStandardOutputFile(pipe);
    fetch.start({QStringLiteral("-f"), QStringLiteral("18"), url()});
    QTRY_COMPARE_WITH_TIMEOUT(stage.keys().size(), 2, TestSandbox::Patience);
    close(reader); // a write gives SIGPIPE now
    stage.mark(QStringLiteral("go"));
    QVERIFY(fetch.waitForEnd());
    QCOMPARE(fetch.exitCode(), 3);
    QVERIFY2(stage.plain(fetch.errors()).contains(QLatin1String("\"DIR/Clip.mp4\"")), qPrintable(fetch.errors()));
}

// Files that the program opens must not take the place of a closed channel: what is printed would go into them.
void FetchTest::closedChannels()
{
    TestSandbox stage;
    stage.play(QLatin1String(page));
    FetchProgram fetch(stage.folder());
    QVERIFY(fetch.runWithClosedChannels(
        {QStringLiteral("-f"), QStringLiteral("18"), QStringLiteral("--log"), QStringLiteral("log"), url()}));
    QCOMPARE(fetch.exitCode(), 3);
    QCOMPARE(leftInFolder(stage), QStringList({QStringLiteral("Clip.mp4"), QStringLiteral("log")}));
}

void FetchTest::json()
{
    TestSandbox stage;
    stage.play(QLatin1String(page));
    FetchProgram fetch(stage.folder());
    QVERIFY(fetch.run({QStringLiteral("--json"), url()}));
    const QJsonObject record = QJsonDocument::fromJson(fetch.output().toUtf8()).object();
    QCOMPARE(record.value(QLatin1String("title")).toString(), QStringLiteral("Clip"));
    QCOMPARE(record.value(QLatin1String("choice")).toObject().value(QLatin1String("audio")).toString(),
             QStringLiteral("140"));
    QCOMPARE(fetch.exitCode(), 0);
}

void FetchTest::quietVerboseLog()
{
    TestSandbox stage;
    stage.play(QLatin1String(page));
    FetchProgram quiet(stage.folder());
    QVERIFY(quiet.run({QStringLiteral("-q"), url()}));
    QCOMPARE(quiet.errors(), QString());
    QCOMPARE(stage.plain(quiet.output()), QStringLiteral("DIR/Clip.mp4\n"));

    FetchProgram verbose(stage.folder());
    QVERIFY(verbose.run({QStringLiteral("-v"), QStringLiteral("--log"), stage.path(QStringLiteral("log")), url()}));
    QVERIFY(verbose.errors().contains(QLatin1String("entering yd...")));
    QCOMPARE(stage.plain(verbose.output()), QStringLiteral("DIR/Clip(1).mp4\n"));
    QFile log(stage.path(QStringLiteral("log")));
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
               + QLatin1String("\n137: announce mp4|progress 50.0 1000|wait go\nffmpeg: write begun|wait join|merge"));
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
    stage.mark(QStringLiteral("go"));
    QTRY_VERIFY_WITH_TIMEOUT(shows("joining  5 bytes"), TestSandbox::Patience);
    stage.mark(QStringLiteral("join"));
    QVERIFY(fetch.waitForEnd());
    QVERIFY(shows("500 bytes / 1.2 kB  10 bytes/s  0:01:10"));
    QVERIFY2(text.endsWith("\r\x1b[K"), text.right(60).constData());
    QCOMPARE(fetch.exitCode(), 0);
    close(held);
    close(terminal);
}

NOX_TEST_MAIN(FetchTest)
#include "FetchTest.moc"
