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

/** Downloads and merges, cancel, clear and destruction, with fakes for the tool and ffmpeg. */
class DownloadTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void progress_data()
    {
        const TextTable table = DownloadTable::begin();
        const auto row = [&table](const char *name, const char *setup, const char *scenario,
                                  const char *notifications) {
            const char *files = strncmp(setup, "two", 3) == 0 ? "clip.mp4=137+140" : "clip.mp4=137";
            table(name, setup, scenario, "", notifications, files);
        };
        row("one item, as the tool says", "size=7",
            "137: announce mp4|progress 0 1000|progress 100 1000|progress 40 2000|progress 50 1000",
            "started progress(1000,0,10) progress(1000,1000,10) progress(2000,800,10) progress(1000,500,10) finished");
        row("two items", "two",
            "137: announce mp4|progress 0 1000|progress 50 1000|progress 100 1000\n"
            "140: announce m4a|progress 50 300|progress 100 300",
            "started progress(1200,500,10) progress(1200,1000,10) started progress(1300,1150,10) "
            "progress(1301,1300,10) "
            "progress(1301,1301,0) finished");
        row("expected total cut to whole bytes", "two", "137: announce mp4|progress 50 1001",
            "started progress(1201,500,10) started progress(1201,1201,0) finished");
        row("profile's size above the figures, until they pass it", "two size=5000",
            "137: announce mp4|progress 100 1000\n140: announce m4a|progress 25 4800|progress 100 4800",
            "started progress(5000,1000,10) started progress(5800,2200,10) progress(5801,5800,10) "
            "progress(5801,5801,0) "
            "finished");
        row("profile's size equal to the video's", "two size=1000",
            "137: announce mp4|progress 50 1000|progress 100 1000",
            "started progress(1000,500,10) progress(1001,1000,10) started progress(1001,1001,0) finished");
        row("ratio that does not rise", "two",
            "137: announce mp4|progress 50 1000|progress 50 1000|progress 40 1000|progress 60 1000",
            "started progress(1200,500,10) progress(1200,600,10) started progress(1200,1200,0) finished");
        row("figures of the audio only", "two", "140: announce m4a|progress 50 300",
            "started started progress(300,150,10) progress(300,300,0) finished");
        row("destination and progress in one read", "",
            "137: file mp4|out [download] Destination: @mp4@\\n[download] 50% of 1000B at 10B/s ETA 1\\n",
            "started finished");
        row("progress line over two reads", "", "137: announce mp4|out [download] 50% of 100|out 0B at 10B/s ETA 1\\n",
            "started finished");
        row("total without a unit", "", "137: announce mp4|out [download]  45.3% of 12.34 at 1.23MiB/s ETA 00:05\\n",
            "started finished");
    }
    void progress() { DownloadTable::run(); }

    void ends_data()
    {
        const TextTable row = DownloadTable::begin();
        row("no format code", "two code=", "", "", "error(-1)", "",
            "initYdDownloaderCommand: Yd download format is empty. url http://127.0.0.1/watch?v=1&list=2");
        row("exit 1 in item 2: all that clear() removes", "two has=clip.mp4 has=clip.mp4.part has=other.part",
            "137: announce mp4|file mp4.part\n140: announce m4a|file m4a.part|exit 1", "", "started started error(-4)",
            "clip.mp4=old, other.part=old, {1}YDTMP_.mp4=137",
            "ydFinished: Yd process terminated abnormally: http://127.0.0.1/watch?v=1  \n ExitCode: 1");
        row("destination is a link that leads nowhere", "", "137: announce mp4|link clip.mp4", "", "started error(-8)",
            "clip.mp4=link, {1}YDTMP_.mp4=137", "ydFinished: Rename failed from DIR/{1}YDTMP_.mp4 to DIR/clip.mp4!");
        row("audio not for a plain stream", "audiocode", "", "", "started finished", "clip.mp4=137");
        row("DASH without an audio code", "dash", "", "", "started finished", "clip.mp4=137");
        row("audio joined with audio", "two audio", "", "", "started started progress(0,0,0) finished",
            "clip.mp4=137+140");
        row("audio never named", "two has=.part", "140: file m4a", "", "started started error(-4)",
            ".part=old, {1}YDTMP_.mp4=137, {2}YDTMP_.m4a=140", "proceedMerge: FFMPEG not started*");

        // The host cancels, clears or deletes.
        const char *killed = "ydProcessError: Yd process error: 1 ";
        const char *merging = "ffmpeg: write half|spawn|hang";
        const char *second = "137: announce mp4|file mp4.part\n140: announce m4a|file m4a.part|spawn|hang";
        row("cancel in item 1", "has=clip.mp4.part", "137: announce mp4|progress 50 1000|file mp4.part|spawn|hang",
            "cancel@137", "started progress(1000,500,10) error(-1)", "", killed);
        row("cancel before the file is named", "has=.part", "137: file mp4|hang", "cancel@137", "started error(-1)",
            ".part=old, {1}YDTMP_.mp4=137", killed);
        row("cancel in item 2", "two", second, "cancel@140", "started started error(-1)", "", killed);
        row("clear in item 1", "has=clip.mp4.part", "137: announce mp4|file mp4.part|hang", "clear@137", "started",
            "{1}YDTMP_.mp4=137");
        row("clear in the merge", "two", merging, "clear@ffmpeg", "started started", "{1}YDTMP_.mp4=137");
        row("delete in item 1", "has=clip.mp4.part has=.part", "137: announce mp4|file mp4.part|spawn|hang",
            "delete@137", "started", ".part=old, {1}YDTMP_.mp4=137");
        row("delete in item 2", "two", second, "delete@140", "started started", "{1}YDTMP_.mp4=137");
        row("delete in the merge", "two", merging, "delete@ffmpeg", "started started", "{1}YDTMP_.mp4=137");
    }
    void ends() { DownloadTable::run(); }

    void idle()
    {
        DownloadRun run("has=.part"_s);
        run.worker->cancel();
        run.worker->clear();
        run.worker.reset();
        QCOMPARE(run.log.text(), QString());
        QCOMPARE(run.sandbox.files(), ".part=old"_s);
        QCOMPARE(run.sandbox.records(LOG_DEBUG, true),
                 QStringList("[INFO] YdDownloader.cpp cancel: Download canceling..."_s));
    }

    /** Every log record and debug message of one download, in order. */
    void trace()
    {
        DownloadRun run("two"_s,
                        "137: announce mp4|progress 50 1000|out é€\\n\n"
                        "140: announce m4a|err é€\nffmpeg: out é|err €|merge"_s);
        const TestSandbox &sandbox = run.sandbox;
        static QStringList messages;
        const QtMessageHandler before = qInstallMessageHandler(
            [](QtMsgType /*type*/, const QMessageLogContext & /*context*/, const QString &text) { messages += text; });
        run.start();
        const QString all = "started progress(1200,500,10) started progress(1200,1200,0) finished"_s;
        const QString notifications = run.finalText(all);
        qInstallMessageHandler(before);
        QCOMPARE(notifications, all);

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
        QStringList records = sandbox.records(LOG_DEBUG, true);
        records.replaceInStrings("] YdDownloader.cpp "_s, "] "_s).replaceInStrings(tool, "TOOL"_s);
        QCOMPARE(records, expected);

        const QString merge = sandbox.plain(messages.takeLast());
        const QString end = "\"-vcodec\", \"copy\", \"-acodec\", \"copy\", \"\\\"DIR/{1}YDTMP_.mp4.tmp.mp4\\\"\")"_s;
        QVERIFY2(merge.endsWith(end), qPrintable(merge));
        const QStringList expectedMessages{
            "entering yd..."_s,          "ydProgress : 0B 0B 0B/s"_s, "ydProgress : 1000B 500B 10B/s"_s,
            "ydProgress : 0B 0B 0B/s"_s, "ydFinished : 0 0"_s,        "ydStarted : http://127.0.0.1/watch?v=1&list=2"_s,
            "ydProgress : 0B 0B 0B/s"_s, "ydFinished : 0 0"_s,
        };
        QCOMPARE(messages.replaceInStrings("\""_s, QString()), expectedMessages);
    }

    void secondDownloadWhileOneRuns_data()
    {
        const TextTable row{"scenario", "failure", "before", "after"};
        row("tool", "137: announce mp4|", "ydProcessError", "started error(-1)", " started");
        row("ffmpeg", "ffmpeg: merge|", "ffmpegProcessError", "started started error(-7)");
    }

    /** It is refused, also after a read error: that does not mean that the program has ended. */
    void secondDownloadWhileOneRuns()
    {
        const auto [scenario, failure, before, after] = fetchTexts("scenario", "failure", "before", "after");
        DownloadRun run("two"_s, scenario + "mark there|wait go"_s);
        TestSandbox &sandbox = run.sandbox;
        run.start();
        QTRY_VERIFY_WITH_TIMEOUT(sandbox.isMarked("there"_s), TestSandbox::Timeout);
        QVERIFY(QMetaObject::invokeMethod(run.worker.get(), qPrintable(failure),
                                          Q_ARG(QProcess::ProcessError, QProcess::ReadError)));
        const QStringList records = sandbox.records(LOG_DEBUG);
        run.worker->download("http://other/"_s, MediaProfile(), "/other.mp4"_s);
        QCOMPARE(run.log.text(), before);
        QCOMPARE(sandbox.records(LOG_DEBUG),
                 records + QStringList("download: Yd download is running already. url http://other/"_s));
        sandbox.mark("go"_s);
        const QString all = before + after + " progress(0,0,0) finished"_s;
        QCOMPARE(run.finalText(all), all);
        QCOMPARE(sandbox.files(), "clip.mp4=137+140"_s);
        QCOMPARE(sandbox.keys(), (QStringList{"137"_s, "140"_s, "ffmpeg"_s}));
    }

    /** The second download gives the whole sequence: no figure of the first one stays. */
    void secondDownloadAfterTheFirst()
    {
        DownloadRun run("two"_s, "137: announce mp4|progress 100 9000\n140: announce m4a|progress 100 3000"_s);
        run.start();
        const QString first = "started progress(10800,9000,10) started progress(12001,12000,10) "
                              "progress(12001,12001,0) finished"_s;
        QCOMPARE(run.finalText(first), first);

        run.sandbox.play("137: announce mp4|progress 50 1000\n140: announce m4a|progress 50 300"_s);
        run.worker->download(Setup::url(), run.setup.profile(), "second.mp4"_s);
        const QString all =
            first + " started progress(1200,500,10) started progress(1300,1150,10) progress(1300,1300,0) finished"_s;
        QCOMPARE(run.finalText(all), all);
        QCOMPARE(run.sandbox.files(), "clip.mp4=137+140, second.mp4=137+140"_s);
    }

    void deletedWhenTheToolEnds_data()
    {
        const TextTable row{"scenario", "keys"};
        row("item 1", "137: announce mp4|mark there|wait go", "137");
        row("item 1 crashes", "137: announce mp4|mark there|wait go|kill SIGABRT", "137");
        row("item 2", "140: announce m4a|mark there|wait go", "137 140");
    }

    /** If the tool ends while the destructor waits, there is no further notification and no further process. */
    void deletedWhenTheToolEnds()
    {
        const auto [scenario, keys] = fetchTexts("scenario", "keys");
        DownloadRun run("two"_s, scenario);
        run.start();
        QTRY_VERIFY_WITH_TIMEOUT(run.sandbox.isMarked("there"_s), TestSandbox::Timeout);
        const QString before = run.log.text();
        run.sandbox.mark("go"_s);
        run.worker.reset();
        QTRY_VERIFY_WITH_TIMEOUT(run.sandbox.isQuiet(), TestSandbox::GraceAfterKill);
        QCoreApplication::processEvents();
        QCOMPARE(run.log.text(), before);
        QCOMPARE(run.sandbox.keys().join(QLatin1Char(' ')), keys);
        QCOMPARE(run.sandbox.files(), "{1}YDTMP_.mp4=137"_s);
        QCOMPARE(run.sandbox.errors(), QString());
    }

    /** Two downloads at the same time do not mix their figures. */
    void sideBySide()
    {
        DownloadRun run(
            "two"_s,
            "137: announce mp4|progress 100 1000|mark a1\n138: wait a1|announce mp4|progress 100 5000|mark b1\n"
            "140: wait b1|announce m4a|progress 50 300|mark a2\n141: wait a2|announce m4a|progress 100 1500"_s);
        const auto other = run.sandbox.make<WebMediaDownloader>();
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
        QTRY_COMPARE_WITH_TIMEOUT(otherLog.text(), second, TestSandbox::Timeout);
        QCOMPARE(run.finalText(first), first);
        QCOMPARE(otherLog.text(), second);
        QCOMPARE(run.sandbox.files(), "clip.mp4=137+140, other.mp4=138+141"_s);
    }

    void errorDetail_data()
    {
        const TextTable row{"setup", "scenario", "notifications", "detail"};
        row("of both programs", "two", "140: announce m4a|err one\\n\nffmpeg: err two é|exit 1",
            "started started error(-4)", "one\ntwo é");
        row("before a crash", "", "137: err the end|kill SIGKILL", "started error(-1) error(-5)", "the end");
    }

    /** The standard error of this download, until the next one begins. */
    void errorDetail()
    {
        const auto [setup, scenario, notifications, detail] =
            fetchTexts("setup", "scenario", "notifications", "detail");
        DownloadRun run(setup, scenario);
        QCOMPARE(run.worker->errorDetail(), QString());
        run.start();
        QCOMPARE(run.finalText(notifications), notifications);
        QCOMPARE(run.worker->errorDetail(), detail);
        run.worker->cancel();
        QCOMPARE(run.worker->errorDetail(), detail);
        run.sandbox.play("137: hang"_s);
        run.start();
        QCOMPARE(run.worker->errorDetail(), QString());
    }

    void hostKilled_data()
    {
        rows({"job", "phase"}, {"extract -> dump"_s, "download -> 137"_s, "download -> 140"_s, "download -> ffmpeg"_s});
    }

    /** If the host is killed, the system ends its direct child. */
    void hostKilled()
    {
        const auto [job, phase] = fetchTexts("job", "phase");
        TestSandbox sandbox;
        sandbox.play(phase + ": spawn|hang"_s);
        QProcess host;
        host.start(TestSandbox::provideHost(sandbox.path("app"_s)),
                   {job, "/x/yt.zip"_s, sandbox.folder() + "/clip.mp4"_s});
        QTRY_VERIFY_WITH_TIMEOUT(sandbox.hangs(phase), TestSandbox::Timeout);
        const qint64 program = sandbox.runs().at(sandbox.keys().indexOf(phase)).pid;
        QVERIFY(Processes::isRunning(program));
        host.kill();
        QVERIFY(host.waitForFinished(TestSandbox::Timeout));
        QTRY_VERIFY_WITH_TIMEOUT(!Processes::isRunning(program), TestSandbox::GraceAfterKill);
    }
};

NOX_TEST_MAIN(DownloadTest)
#include "DownloadTest.moc"
