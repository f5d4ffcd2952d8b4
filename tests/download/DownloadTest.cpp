#include "tests/support/HostProgram.h"
#include "tests/support/Processes.h"
#include "tests/support/TestMain.h"
#include "tests/support/WorkerRun.h"
#include "tests/support/WorkerTable.h"
#include "tests/util/Rows.h"

#include <nox/log/ModuleLog.h>

#include <QDir>
#include <QRegularExpression>
#include <QtTest>

using namespace Nox;

/** Downloads and merges, cancel, clear and destruction, with stand-ins for the tool and ffmpeg. */
class DownloadTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void progress_data();
    void progress() { DownloadTable::run(); }
    void fileNames_data();
    void fileNames() { DownloadTable::run(); }
    void filesElsewhere_data();
    void filesElsewhere() { DownloadTable::run(); }
    void failures_data();
    void failures() { DownloadTable::run(); }
    void cancelClearDelete_data();
    void cancelClearDelete() { DownloadTable::run(); }
    void idle();
    void slotsByName();
    void mergeArguments_data();
    void mergeArguments();
    void addresses_data();
    void addresses();
    void trace();
    void secondDownloadWhileOneRuns_data();
    void secondDownloadWhileOneRuns();
    void secondDownloadAfterTheFirst_data();
    void secondDownloadAfterTheFirst();
    void deletedWhenTheToolEnds_data();
    void deletedWhenTheToolEnds();
    void sideBySide();
    void errorDetail_data();
    void errorDetail();
    void hostKilled_data();
    void hostKilled();
};

void DownloadTest::progress_data()
{
    const TextTable table = DownloadTable::begin();
    const auto row = [&table](const char *name, const char *setup, const char *scenario, const char *notifications) {
        const char *files = strncmp(setup, "two", 3) == 0 ? "clip.mp4=137+140" : "clip.mp4=137";
        table(name, setup, scenario, "", notifications, files);
    };
    row("one item", "", "137: announce mp4|progress 0 1000|progress 50 1000|progress 100 1000",
        "started progress(1000,0,10) progress(1000,500,10) progress(1000,1000,10) finished");
    row("one item, total and order change", "size=7",
        "137: announce mp4|progress 50 1000|progress 40 2000|progress 50 1000",
        "started progress(1000,500,10) progress(2000,800,10) progress(1000,500,10) finished");
    row("two items", "two",
        "137: announce mp4|progress 0 1000|progress 50 1000|progress 100 1000\n"
        "140: announce m4a|progress 50 300|progress 100 300",
        "started progress(1200,500,10) progress(1200,1000,10) started progress(1300,1150,10) progress(1301,1300,10) "
        "progress(1301,1301,0) finished");
    row("expected total cut to whole bytes", "two", "137: announce mp4|progress 50 1001",
        "started progress(1201,500,10) started progress(1201,1201,0) finished");
    row("profile's size above the figures, until they pass it", "two size=5000",
        "137: announce mp4|progress 100 1000\n140: announce m4a|progress 25 4800|progress 100 4800",
        "started progress(5000,1000,10) started progress(5800,2200,10) progress(5801,5800,10) progress(5801,5801,0) "
        "finished");
    row("profile's size equal to the video's", "two size=1000", "137: announce mp4|progress 50 1000|progress 100 1000",
        "started progress(1000,500,10) progress(1001,1000,10) started progress(1001,1001,0) finished");
    row("ratio that does not rise", "two",
        "137: announce mp4|progress 50 1000|progress 50 1000|progress 40 1000|progress 60 1000",
        "started progress(1200,500,10) progress(1200,600,10) started progress(1200,1200,0) finished");
    row("figures of the audio only", "two", "140: announce m4a|progress 50 300",
        "started started progress(300,150,10) progress(300,300,0) finished");
    row("no figures at all", "two", "", "started started progress(0,0,0) finished");
    row("destination and progress in one read", "",
        "137: file mp4|out [download] Destination: @mp4@\\n[download] 50% of 1000B at 10B/s ETA 1\\n",
        "started finished");
    row("two progress lines in one read", "",
        "137: announce mp4|out [download] 50% of 1000B at 10B/s ETA 1\\n[download] 60% of 1000B at 10B/s ETA 1\\n",
        "started progress(1000,500,10) finished");
    row("progress line over two reads", "", "137: announce mp4|out [download] 50% of 100|out 0B at 10B/s ETA 1\\n",
        "started finished");
    row("lines without usable figures", "",
        "137: announce mp4|out [download]  45.3% of 12.34 at 1.23MiB/s ETA 00:05\\n|"
        "out [download]  45.3% of ~12.34MiB at 1.23MiB/s ETA 00:05\\n|"
        "out [download] 0.0% of 12.34MiB at Unknown speed ETA Unknown\\n|"
        "out [download] 100% of 12.34MiB in 00:05\\n|out [download]  45.3% of 12.34MiB at 1.5KiB/s ETA 00:05\\n",
        "started progress(12939428,5861560,1536) finished");
}

void DownloadTest::fileNames_data()
{
    const TextTable row = DownloadTable::begin();
    const char *unnamed = "ydFinished: Rename failed from  to DIR/clip.mp4!";
    row("already there", "", "137: file mp4|out [download] @mp4@ has already been downloaded\\n", "",
        "started finished", "clip.mp4=137");
    row("already there, both items", "two",
        "137: file mp4|out [download] @mp4@ has already been downloaded\\n\n"
        "140: file m4a|out [download] @m4a@ has already been downloaded\\n",
        "", "started started progress(0,0,0) finished", "clip.mp4=137+140");
    row("both lines in one read", "",
        "137: file mp4|out [download] /x.mp4 has already been downloaded\\n[download] Destination: @mp4@\\n", "",
        "started finished", "clip.mp4=137");
    row("already there behind another line", "",
        "137: file mp4|out [download] other\\n[download] @mp4@ has already been downloaded\\n", "", "started error(-8)",
        "{1}YDTMP_.mp4=137", "ydFinished: Rename failed from other\n[download] DIR/{1}YDTMP_.mp4 to DIR/clip.mp4!");
    row("line ends of another system", "", R"(137: file mp4|out x\r\n[download] Destination: @mp4@\r\n[y]\r\n)", "",
        "started finished", "clip.mp4=137");
    row("the newer name counts", "",
        "137: file mp4|out [download] Destination: /a.b\\n|out [download] Destination: @mp4@\\n", "",
        "started finished", "clip.mp4=137");
    row("destination line over two reads", "", "137: file mp4|out [download] Desti|out nation: @mp4@\\n", "",
        "started error(-8)", "{1}YDTMP_.mp4=137", unnamed);
    row("never named, .part in the working folder", "has=.part", "137: exit 0", "", "started error(-8)", ".part=old",
        unnamed);
    row("relative destination", "dest=clip.mp4", "", "", "started finished", "clip.mp4=137");
    row("name that the log cannot hold", "dest=/nowhere/é€/clip.mp4", "137: out x", "", "started error(-8)", "",
        "ydFinished: Rename failed from  to /nowhere/é?/clip.mp4!");
}

/** A page makes the tool name a file of the user's, as a part of a title for example. */
void DownloadTest::filesElsewhere_data()
{
    const TextTable row = DownloadTable::begin();
    const char *refused = "takeItemFile: Yd file was there before, not taken: ROOT/thesis.odt";
    const char *killed =
        "takeItemFile: Yd file was there before, not taken: ROOT/thesis.odt|ydProcessError: Yd process error: 1 ";
    const char *unnamed = "takeItemFile: Yd file was there before, not taken: ROOT/thesis.odt|"
                          "ydFinished: Rename failed from ROOT/thesis.odt to DIR/clip.mp4!";
    const std::string planted = "out [download] Destination: ROOT/thesis.odt\\n|";
    const std::string hang = "137: " + planted + "announce mp4|" + planted + "hang";
    const char *thesis = "elsewhere=thesis.odt";
    const char *two = "two elsewhere=thesis.odt";
    row("success", thesis, ("137: " + planted + "announce mp4|" + planted).append("out x").c_str(), "",
        "started finished", "clip.mp4=137", refused);
    row("cancel", thesis, hang.c_str(), "cancel@137", "started error(-1)", "", killed);
    row("clear", thesis, hang.c_str(), "clear@137", "started", "{1}YDTMP_.mp4=137", refused);
    row("cancel at the end", thesis, ("137: announce mp4|" + planted + "out x").c_str(), "cancel@end",
        "started finished", "", refused);
    row("nothing else named", thesis, ("137: " + planted + "out x").c_str(), "", "started error(-8)", "", unnamed);
    row("already there", thesis, "137: out [download] ROOT/thesis.odt has already been downloaded\\n", "",
        "started error(-8)", "", unnamed);
    row("both lines, each for another file", thesis,
        "137: file mp4|out [download] @mp4@ has already been downloaded\\n"
        "[download] Destination: ROOT/thesis.odt\\n",
        "", "started finished", "clip.mp4=137", refused);
    row("second stream", two, ("140: " + planted + "announce m4a").c_str(), "",
        "started started progress(0,0,0) finished", "clip.mp4=137+140", refused);
    row("failed merge", two, ("140: announce m4a|" + planted + "out x\nffmpeg: exit 1").c_str(), "clear@end",
        "started started error(-4)", "{1}YDTMP_.mp4=137",
        (std::string(refused) + "|ffmpegFinished: FFMPEG terminated abnormally!").c_str());
    const auto path = [&row](const char *name, const char *setup, const char *named, const char *logged) {
        row(name, setup, ("137: out [download] Destination: " + std::string(named) + "\\n|announce mp4").c_str(), "",
            "started finished", "clip.mp4=137",
            ("takeItemFile: Yd file was there before, not taken: " + std::string(logged)).c_str());
    };
    path("relative", thesis, "../thesis.odt", "../thesis.odt");
    path("on a way through the folder", thesis, "ROOT/my videos/../thesis.odt", "DIR/../thesis.odt");
    path("behind a link in the folder", "elsewhere=thesis.odt link=in", "ROOT/my videos/in/thesis.odt",
         "DIR/in/thesis.odt");
    path("another folder", "", "ROOT/my videos/../notes/.", "DIR/../notes/.");
    row("a part that was there", "elsewhere=thesis.odt.part",
        "137: out [download] Destination: ROOT/thesis.odt\\n|touch ../thesis.odt|hang", "cancel@137",
        "started error(-1)", "", "ydProcessError: Yd process error: 1 ");
    row("made in this run", thesis, "137: touch ../new.odt|out [download] Destination: ROOT/new.odt\\n", "",
        "started finished", "clip.mp4=new");
    const std::string other = "out [download] Destination: ROOT/b.odt\\n|";
    row("two names in turn", "elsewhere=thesis.odt elsewhere=b.odt",
        ("137: " + planted + other + planted + other + "announce mp4").c_str(), "", "started finished", "clip.mp4=137",
        (std::string(refused) + "|takeItemFile: Yd file was there before, not taken: ROOT/b.odt").c_str());
    row("a link made in this run", "", "137: link ../new.odt|out [download] Destination: ROOT/new.odt\\n", "",
        "started error(-8)", "",
        "takeItemFile: Yd file was there before, not taken: ROOT/new.odt|"
        "ydFinished: Rename failed from ROOT/new.odt to DIR/clip.mp4!");
    row("inside the folder", "has=old.mp4", "137: out [download] Destination: ROOT/my videos/old.mp4\\n", "",
        "started finished", "clip.mp4=old");
}

void DownloadTest::failures_data()
{
    const TextTable row = DownloadTable::begin();
    row("no format code", "two code=", "", "", "error(-1)", "",
        "initYdDownloaderCommand: Yd download format is empty. url http://127.0.0.1/watch?v=1&list=2");
    row("exit 1 in item 2: all that clear() removes", "two has=clip.mp4 has=clip.mp4.part has=other.part",
        "137: announce mp4|file mp4.part\n140: announce m4a|file m4a.part|exit 1", "", "started started error(-4)",
        "clip.mp4=old, other.part=old, {1}YDTMP_.mp4=137",
        "ydFinished: Yd process terminated abnormally: http://127.0.0.1/watch?v=1  \n ExitCode: 1");
    row("crash in item 2", "two", "140: announce m4a|kill SIGABRT", "", "started started error(-1) error(-5)",
        "{1}YDTMP_.mp4=137",
        "ydProcessError: Yd process error: 1 |ydFinished: Yd process crashed: http://127.0.0.1/watch?v=1 ");
    row("destination is a link that leads nowhere", "", "137: announce mp4|link clip.mp4", "", "started error(-8)",
        "clip.mp4=link, {1}YDTMP_.mp4=137", "ydFinished: Rename failed from DIR/{1}YDTMP_.mp4 to DIR/clip.mp4!");
    row("merge's destination is a link that leads nowhere", "two", "140: announce m4a|link clip.mp4", "",
        "started started error(-8)", "clip.mp4=link, {1}YDTMP_.mp4.tmp.mp4=137+140 -> clip.mp4=link",
        "ffmpegFinished: Rename failed from DIR/{1}YDTMP_.mp4.tmp.mp4 to DIR/clip.mp4!");
    row("audio not for a plain stream", "companion", "", "", "started finished", "clip.mp4=137");
    row("DASH without an audio code", "dash", "", "", "started finished", "clip.mp4=137");
    row("audio with an audio companion", "two audio", "", "", "started started progress(0,0,0) finished",
        "clip.mp4=137+140");
    row("audio never named", "two has=.part", "140: file m4a", "", "started started error(-4)",
        ".part=old, {1}YDTMP_.mp4=137, {2}YDTMP_.m4a=140", "proceedMerge: FFMPEG not started*");
}

void DownloadTest::cancelClearDelete_data()
{
    const TextTable row = DownloadTable::begin();
    const char *killed = "ydProcessError: Yd process error: 1 ";
    const char *merging = "ffmpeg: write half|spawn|hang";
    const char *second = "137: announce mp4|file mp4.part\n140: announce m4a|file m4a.part|spawn|hang";
    row("cancel in item 1", "has=clip.mp4.part", "137: announce mp4|progress 50 1000|file mp4.part|spawn|hang",
        "cancel@137", "started progress(1000,500,10) error(-1)", "", killed);
    row("cancel before the file is named", "has=.part", "137: file mp4|hang", "cancel@137", "started error(-1)",
        ".part=old, {1}YDTMP_.mp4=137", killed);
    row("cancel in item 2", "two", second, "cancel@140", "started started error(-1)", "", killed);
    row("cancel after a download", "", "", "cancel@end", "started finished");
    row("cancel after a merge", "two", "", "cancel@end", "started started progress(0,0,0) finished");

    row("clear in item 1", "has=clip.mp4.part", "137: announce mp4|file mp4.part|hang", "clear@137", "started",
        "{1}YDTMP_.mp4=137");
    row("clear in the merge", "two", merging, "clear@ffmpeg", "started started", "{1}YDTMP_.mp4=137");
    row("clear after a download", "", "", "clear@end", "started finished", "clip.mp4=137");

    row("delete in item 1", "has=clip.mp4.part has=.part", "137: announce mp4|file mp4.part|spawn|hang", "delete@137",
        "started", ".part=old, {1}YDTMP_.mp4=137");
    row("delete in item 2", "two", second, "delete@140", "started started", "{1}YDTMP_.mp4=137");
    row("delete in the merge", "two", merging, "delete@ffmpeg", "started started", "{1}YDTMP_.mp4=137");
    row("delete after a download", "", "", "delete@end", "started finished", "clip.mp4=137");
}

void DownloadTest::idle()
{
    DownloadRun run("has=.part"_s);
    run.worker->cancel();
    run.worker->clear();
    run.worker.reset();
    QCOMPARE(run.log.text(), QString());
    QCOMPARE(run.stage.files(), ".part=old"_s);
    QCOMPARE(run.stage.records(LOG_DEBUG, true),
             QStringList("[INFO] YdDownloader.cpp cancel: Download canceling..."_s));
}

/** What can be called through the meta-object must not need a download. */
void DownloadTest::slotsByName()
{
    const DownloadRun run;
    const auto end = [&](const char *slot, int exitCode, QProcess::ExitStatus status) {
        return QMetaObject::invokeMethod(run.worker.get(), slot, Q_ARG(int, exitCode),
                                         Q_ARG(QProcess::ExitStatus, status));
    };
    for (const char *slot : {"ydReadOutputData", "ydReadError", "ffmpegReadOutputData", "ffmpegReadStandardError"})
        QVERIFY(QMetaObject::invokeMethod(run.worker.get(), slot));
    for (const char *slot : {"ydProcessError", "ffmpegProcessError"})
        QVERIFY(QMetaObject::invokeMethod(run.worker.get(), slot, Q_ARG(QProcess::ProcessError, QProcess::Timedout)));
    for (const char *slot : {"ydFinished", "ffmpegFinished"}) {
        QVERIFY(end(slot, 1, QProcess::NormalExit) && end(slot, 0, QProcess::CrashExit));
        QVERIFY(end(slot, 0, QProcess::NormalExit));
    }
    QCOMPARE(run.log.text(), "error(-1) error(-7) error(-4) error(-5) error(-8) error(-4) error(-5) error(-8)"_s);
    QCOMPARE(run.stage.files(), QString());
}

void DownloadTest::mergeArguments_data()
{
    const TextTable row{"video", "audio", "codecs", "steps", "output"};
    row("both copied", "mp4", "m4a", "-vcodec copy -acodec copy", "", "mp4.tmp.mp4");
    row("capitals", "MP4", "M4A", "-vcodec copy -acodec copy", "", "MP4.tmp.mp4");
    row("audio encoded", "mp4", "webm", "-vcodec copy", "", "mp4.tmp.mp4");
    row("last suffix counts", "x.mp4", "m4a.mp3", "-vcodec copy", "", "x.mp4.tmp.mp4");
    row("both encoded", "webm", "webm", "", "", "webm.tmp.mp4");
    row("video encoded, so audio too", "webm", "m4a", "", "", "webm.tmp.mp4");
    row("output taken", "mp4", "m4a", "-vcodec copy -acodec copy", "|file mp4.tmp.mp4 old", "mp40.tmp.mp4");
    row("output taken twice", "mp4", "m4a", "-vcodec copy -acodec copy", "|file mp4.tmp.mp4 old|file mp40.tmp.mp4 old",
        "mp41.tmp.mp4");
}

void DownloadTest::mergeArguments()
{
    QFETCH(QString, video);
    QFETCH(QString, audio);
    QFETCH(QString, steps);
    QFETCH(QString, codecs);
    QFETCH(QString, output);
    DownloadRun run("two"_s, "137: announce %1%2\n140: announce %3"_s.arg(video, steps, audio));
    const TestSandbox &stage = run.stage;
    run.start();
    QTRY_COMPARE_WITH_TIMEOUT(run.log.text(), "started started progress(0,0,0) finished"_s, TestSandbox::Patience);

    QStringList expected{"-i"_s, "DIR/{1}YDTMP_."_s + video, "-i"_s, "DIR/{2}YDTMP_."_s + audio};
    expected += codecs.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    expected += "DIR/{1}YDTMP_."_s + output;
    const QStringList arguments = stage.arguments("ffmpeg"_s);
    QCOMPARE(stage.plain(arguments.join(QLatin1Char('\n'))), expected.join(QLatin1Char('\n')));
    QVERIFY(stage.files().contains("clip.mp4=137+140"_s));
    QCOMPARE(stage.files().count("=old"_s), steps.count(QLatin1Char('|')));

    static const QRegularExpression marker(R"(^\w+\.cpp\([1-9]\d*\) : \d{4}/\d\d/\d\d \d\d:\d\d:\d\d 00000000\n\n$)"_s);
    const QString moduleLog = QString::fromUtf8(stage.moduleLog());
    QCOMPARE(marker.match(moduleLog).hasMatch(), codecs.isEmpty());
    QCOMPARE(moduleLog.isEmpty(), !codecs.isEmpty());
}

void DownloadTest::addresses_data()
{
    const TextTable row{"name", "file"};
    for (const char *name : {"-y.mp4", "-.mp4", "a:b.mp4", ":a.mp4", "pipe:0.mp4", "subfile,,start,0,end,9,,:a.mp4"})
        row(name, name, (std::string("./") + name).c_str());
    row("address of a file", "file:ROOT/thesis.odt", "./file:ROOT/thesis.odt");
    row("page", "http://127.0.0.1:9/a.mp4", "./http://127.0.0.1:9/a.mp4");
    row("plain", "a b.mp4", "a b.mp4");
    row("colon behind a slash", "./a:b.mp4", "./a:b.mp4");
    row("whole path", "ROOT/my videos/a:b.mp4", "DIR/a:b.mp4");
}

/** A name that the tool prints is always the name of a file to ffmpeg: no address and no option. */
void DownloadTest::addresses()
{
    QFETCH(QString, name);
    QFETCH(QString, file);
    // Where the name holds a folder that is not there, the file is missing.
    const bool isThere = !name.contains("//"_s) && !name.contains("ROOT/thesis"_s);
    const QString touched = isThere ? "touch %1|"_s.arg(QFileInfo(name).fileName()) : QString();
    for (const bool isVideo : {true, false}) {
        const QString announced = touched + "out [download] Destination: "_s + name + R"(\n)"_s;
        DownloadRun run("two elsewhere=thesis.odt"_s, "%1: %2"_s.arg(isVideo ? "137"_s : "140"_s, announced));
        run.start();
        const QString end = isThere ? " progress(0,0,0) finished"_s : " error(-4)"_s;
        QCOMPARE(run.log.settled("started started"_s + end), "started started"_s + end);
        const QStringList arguments = run.stage.arguments("ffmpeg"_s);
        QCOMPARE(run.stage.plain(arguments.at(isVideo ? 1 : 3)), file);
        if (isVideo)
            QCOMPARE(run.stage.plain(arguments.last()), file + ".tmp.mp4"_s);
        run.worker->cancel();
        QCOMPARE(run.stage.files(), QString());
        QVERIFY(run.stage.isElsewhereUntouched());
    }
}

/** Every log record and debug message of one download, in order. */
void DownloadTest::trace()
{
    DownloadRun run("two"_s,
                    "137: announce mp4|progress 50 1000|out é€\\n\n"
                    "140: announce m4a|err é€\nffmpeg: out é|err €|merge"_s);
    const TestSandbox &stage = run.stage;
    static QStringList messages;
    const QtMessageHandler before = qInstallMessageHandler(
        [](QtMsgType /*type*/, const QMessageLogContext & /*context*/, const QString &text) { messages += text; });
    run.start();
    const bool isFinished =
        QTest::qWaitFor([&run] { return run.log.text().endsWith("finished"_s); }, TestSandbox::Patience);
    qInstallMessageHandler(before);
    QVERIFY(isFinished);

    const QStringList expected{
        "[DEBUG] download: url http://127.0.0.1/watch?v=1&list=2 \r\nresolution 1080P \r\nformat MP4 \r\n"
        "destfile DIR/clip.mp4"_s,
        "[INFO] initYdDownloaderCommand: TOOL -f 137 --no-check-certificate -o \"DIR/{1}YDTMP_.%(ext)s\" "
        "http://127.0.0.1/watch?v=1"_s,
        "[DEBUG] ydReadOutputData: Yd download output: [download] Destination: DIR/{1}YDTMP_.mp4\n"_s,
        "[DEBUG] ydReadOutputData: Yd download output: [download] 50% of 1000B at 10B/s ETA 00:01\n"_s,
        "[DEBUG] ydReadOutputData: Yd download output: é?\n"_s,
        "[INFO] ydFinished: Yd download finished: http://127.0.0.1/watch?v=1"_s,
        "[INFO] downloadNextItem: TOOL -f 140 --no-check-certificate -o \"DIR/{2}YDTMP_.%(ext)s\" "
        "http://127.0.0.1/watch?v=1"_s,
        "[DEBUG] ydReadOutputData: Yd download output: [download] Destination: DIR/{2}YDTMP_.m4a\n"_s,
        "[ERROR] ydReadError: Yd process read error: é? "_s,
        "[INFO] ydFinished: Yd download finished: http://127.0.0.1/watch?v=1"_s,
        "[INFO] proceedMerge: \"APP/ffmpeg\" -i \"DIR/{1}YDTMP_.mp4\" -i \"DIR/{2}YDTMP_.m4a\" -vcodec copy "
        "-acodec copy \"DIR/{1}YDTMP_.mp4.tmp.mp4\" "_s,
        "[INFO] ffmpegReadOutputData: FFMPEG read output: Ã©"_s,
        "[ERROR] ffmpegReadStandardError: FFMPEG read error: \xc3\xa2\xc2\x82\xc2\xac"_s,
        "[INFO] ffmpegFinished: FFMPEG process finished"_s,
    };
    const QString tool = R"("APP/python3.10/bin/python3.10" -X pycache_prefix="ROOT/cache" "ROOT/yt.zip")"_s;
    QStringList records = stage.records(LOG_DEBUG, true);
    records.replaceInStrings("] YdDownloader.cpp "_s, "] "_s).replaceInStrings(tool, "TOOL"_s);
    QCOMPARE(records, expected);

    QCOMPARE(messages.size(), 9);
    const QString mergeArguments = stage.plain(messages.takeLast());
    for (const QString &part : {"-i"_s, "DIR/{1}YDTMP_.mp4"_s, "DIR/{2}YDTMP_.m4a"_s, "-acodec"_s})
        QVERIFY2(mergeArguments.contains(part), qPrintable(mergeArguments));
    const QStringList expectedMessages{
        "entering yd..."_s,          "ydProgress : 0B 0B 0B/s"_s, "ydProgress : 1000B 500B 10B/s"_s,
        "ydProgress : 0B 0B 0B/s"_s, "ydFinished : 0 0"_s,        "ydStarted : http://127.0.0.1/watch?v=1&list=2"_s,
        "ydProgress : 0B 0B 0B/s"_s, "ydFinished : 0 0"_s,
    };
    QCOMPARE(messages.replaceInStrings("\""_s, QString()), expectedMessages);
}

void DownloadTest::secondDownloadWhileOneRuns_data()
{
    const TextTable row{"phase", "failure"};
    row("ffmpeg", "ffmpeg");
    // Such an error says nothing about the end of the program.
    row("137, read error", "137", "ydProcessError");
    row("ffmpeg, read error", "ffmpeg", "ffmpegProcessError");
}

void DownloadTest::secondDownloadWhileOneRuns()
{
    QFETCH(QString, phase);
    QFETCH(QString, failure);
    DownloadRun run("two"_s, phase + (phase == "137"_s ? ": announce mp4"_s : ": merge"_s) + "|mark there|wait go"_s);
    TestSandbox &stage = run.stage;
    run.start();
    QTRY_VERIFY_WITH_TIMEOUT(stage.isMarked("there"_s), TestSandbox::Patience);
    if (!failure.isEmpty()) {
        QVERIFY(QMetaObject::invokeMethod(run.worker.get(), qPrintable(failure),
                                          Q_ARG(QProcess::ProcessError, QProcess::ReadError)));
    }
    const QString before = run.log.text();
    const auto recordCount = stage.records(LOG_DEBUG).size();
    run.worker->download("http://other/"_s, MediaProfile(), "/other.mp4"_s);
    QCOMPARE(run.log.text(), before);
    QCOMPARE(stage.errors().count("download: "_s), 1);
    QCOMPARE(stage.records(LOG_DEBUG).size(), recordCount + 1);
    stage.mark("go"_s);
    const QString rest = before.count("started"_s) == 1 ? " started"_s : QString();
    const QString expected = before + rest + " progress(0,0,0) finished"_s;
    QTRY_COMPARE_WITH_TIMEOUT(run.log.text(), expected, TestSandbox::Patience);
    QCOMPARE(before.contains("error"_s), !failure.isEmpty());
    QCOMPARE(stage.files(), "clip.mp4=137+140"_s);
    QCOMPARE(stage.keys(), (QStringList{"137"_s, "140"_s, "ffmpeg"_s}));
    QVERIFY(stage.records(LOG_INFO).last().startsWith("ffmpegFinished"_s));
}

void DownloadTest::secondDownloadAfterTheFirst_data()
{
    const TextTable row{"setup", "scenario", "hangs", "first", "files"};
    const char *full = "137: announce mp4|progress 100 9000\n140: announce m4a|progress 100 3000";
    row("success", "two", full, "",
        "started progress(10800,9000,10) started progress(12001,12000,10) "
        "progress(12001,12001,0) finished",
        "clip.mp4=137+140, second.mp4=137+140");
    row("cancelled in item 1", "two", "137: hang", "137", "started error(-1)", "second.mp4=137+140");
    row("cancelled in the merge", "two", "ffmpeg: hang", "ffmpeg", "started started error(-7) error(-5)",
        "second.mp4=137+140");
    row("destination taken", "has=clip.mp4", "", "", "started error(-8)",
        "clip.mp4=old, second.mp4=137+140, {1}YDTMP_.mp4=137");
}

/** Whatever the first download left, the second one gives the whole sequence, each notification once. */
void DownloadTest::secondDownloadAfterTheFirst()
{
    QFETCH(QString, setup);
    QFETCH(QString, scenario);
    QFETCH(QString, hangs);
    QFETCH(QString, first);
    QFETCH(QString, files);
    DownloadRun run(setup, scenario);
    TestSandbox &stage = run.stage;
    run.start();
    if (!hangs.isEmpty()) {
        QTRY_VERIFY_WITH_TIMEOUT(stage.hangs(hangs), TestSandbox::Patience);
        run.worker->cancel();
    }
    QTRY_COMPARE_WITH_TIMEOUT(run.log.text(), first, TestSandbox::Patience);

    stage.play("137: announce mp4|progress 50 1000\n140: announce m4a|progress 50 300"_s);
    const Setup two("two dest=second.mp4"_s, stage);
    run.worker->download(Setup::url(), two.profile(), two.destination());
    const QString all = first
        + " started progress(1200,500,10) started progress(1300,1150,10) "
          "progress(1300,1300,0) finished"_s;
    QCOMPARE(run.log.settled(all), all);
    QCOMPARE(stage.files(), files);
    QCOMPARE(stage.records(LOG_INFO).filter("FFMPEG process finished"_s).size(), stage.keys().count("ffmpeg"_s));
}

void DownloadTest::deletedWhenTheToolEnds_data()
{
    const TextTable row{"scenario", "keys"};
    row("item 1", "137: announce mp4|mark there|wait go", "137");
    row("item 1 crashes", "137: announce mp4|mark there|wait go|kill SIGABRT", "137");
    row("item 2", "140: announce m4a|mark there|wait go", "137 140");
}

/** The tool ends within the destructor's short wait: no further notification, no further process. */
void DownloadTest::deletedWhenTheToolEnds()
{
    QFETCH(QString, scenario);
    QFETCH(QString, keys);
    DownloadRun run("two"_s, scenario);
    run.start();
    QTRY_VERIFY_WITH_TIMEOUT(run.stage.isMarked("there"_s), TestSandbox::Patience);
    const QString before = run.log.text();
    run.stage.mark("go"_s);
    run.worker.reset();
    QTest::qWait(100);
    QCOMPARE(run.log.text(), before);
    QCOMPARE(run.stage.keys().join(QLatin1Char(' ')), keys);
    QCOMPARE(run.stage.files(), "{1}YDTMP_.mp4=137"_s);
    QVERIFY(run.stage.isQuiet());
    QCOMPARE(run.stage.errors(), QString());
}

/** Two downloads whose items alternate; each adds its own item 1 to its own item 2. */
void DownloadTest::sideBySide()
{
    DownloadRun run("two"_s,
                    "137: announce mp4|progress 100 1000|mark a1\n138: wait a1|announce mp4|progress 100 5000|mark b1\n"
                    "140: wait b1|announce m4a|progress 50 300|mark a2\n141: wait a2|announce m4a|progress 100 1500"_s);
    const auto other = run.stage.newDownloader();
    const SignalLog otherLog(other.get());
    run.start();
    MediaProfile profile = run.setup.profile();
    profile.setName("138"_s);
    profile.setPreferredDashAudioYdCode("141"_s);
    other->download(Setup::url(), profile, "other.mp4"_s);
    const QString first =
        "started progress(1200,1000,10) started progress(1300,1150,10) progress(1300,1300,0) finished"_s;
    const QString second =
        "started progress(6000,5000,10) started progress(6501,6500,10) progress(6501,6501,0) finished"_s;
    QCOMPARE(run.log.settled(first), first);
    QCOMPARE(otherLog.settled(second), second);
    QCOMPARE(run.stage.files(), "clip.mp4=137+140, other.mp4=138+141"_s);
}

void DownloadTest::errorDetail_data()
{
    const TextTable row{"setup", "scenario", "notifications", "detail"};
    row("nothing printed", "", "137: exit 1", "started error(-4)", "");
    row("in several outputs", "", "137: err WARNING: é\\n|err ERROR: €\\n|exit 1", "started error(-4)",
        "WARNING: é\nERROR: €\n");
    row("of both programs", "two", "140: announce m4a|err one\\n\nffmpeg: err two é|exit 1",
        "started started error(-4)", "one\ntwo é");
    row("after success", "", "137: announce mp4|err WARNING", "started finished", "WARNING");
    row("before a crash", "", "137: err last words|kill SIGKILL", "started error(-1) error(-5)", "last words");
    row("interpreter missing", "python=missing", "", "started error(-1)", "");
}

/** What the programs of this download have said, until the next one begins. */
void DownloadTest::errorDetail()
{
    QFETCH(QString, setup);
    QFETCH(QString, scenario);
    QFETCH(QString, notifications);
    QFETCH(QString, detail);
    DownloadRun run(setup, scenario);
    QCOMPARE(run.worker->errorDetail(), QString());
    run.start();
    QCOMPARE(run.log.settled(notifications), notifications);
    QCOMPARE(run.worker->errorDetail(), detail);
    run.worker->cancel();
    QCOMPARE(run.worker->errorDetail(), detail);
    run.stage.play("137: hang"_s);
    run.start();
    QCOMPARE(run.worker->errorDetail(), QString());
}

void DownloadTest::hostKilled_data()
{
    const TextTable row{"job", "phase"};
    row("extraction", "extract", "dump");
    for (const char *phase : {"137", "140", "ffmpeg"})
        row(phase, "download", phase);
}

/** A host that is killed cannot clean up: the system ends its direct child. */
void DownloadTest::hostKilled()
{
    QFETCH(QString, job);
    QFETCH(QString, phase);
    TestSandbox stage;
    stage.play(phase + ": spawn|hang"_s);
    HostProgram host(stage.path("app"_s));
    host.start(job, "/x/yt.zip"_s, stage.folder() + "/clip.mp4"_s);
    QTRY_VERIFY_WITH_TIMEOUT(stage.hangs(phase), TestSandbox::Patience);
    const qint64 program = stage.runs().at(stage.keys().indexOf(phase)).pid;
    QVERIFY(Processes::isRunning(program));
    host.killHard();
    QTRY_VERIFY_WITH_TIMEOUT(!Processes::isRunning(program), TestSandbox::GraceAfterKill);
}

NOX_TEST_MAIN(DownloadTest)
#include "DownloadTest.moc"
