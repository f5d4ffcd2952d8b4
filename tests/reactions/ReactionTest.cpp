#include "tests/support/ResourceLimit.h"
#include "tests/support/TestMain.h"
#include "tests/support/WorkerRun.h"
#include "tests/util/Rows.h"

#include <QEventLoop>
#include <QPointer>
#include <QRegularExpression>
#include <QTimer>
#include <QtTest>

#include <optional>
#include <sys/resource.h>

using namespace Nox;

namespace {

const QString newDownload = "started started progress(0,0,0) finished"_s;

/**
 * A cell of the current row: a notification, and what follows when a host reacts in it. Nothing follows a deletion.
 *   setup            as in WorkerTable; or "blocking" request; or "starved": no program can be started
 *   scenario         of the fakes; they wait for "go", which comes when the host has reacted
 *   before           all notifications up to this one
 *   cancel, restart, clear   what follows when the host does that; a restart that gives newDownload is accepted
 *   deleted, cancelled       the files that stay after that
 */
QString cell(const char *column)
{
    return fetchTexts(column).front();
}

/** A host that reacts once, in the notification of the current row. */
template <typename Worker>
class Host : public QObject
{
public:
    Host()
        : m_run(m_setup == "blocking"_s || m_setup == "starved"_s ? QString() : m_setup, cell("scenario"))
        , m_watch(m_run.worker.get())
    {
        // A function that is connected without a receiver runs as the worker's own.
        QObject *receiver = m_reaction.startsWith("own"_s) ? static_cast<QObject *>(m_watch) : this;
        const auto respond = [this] { this->respond(); };
        connect(m_watch, &Worker::error, receiver, respond);
        connect(m_watch, &Worker::finished, receiver, respond);
        if constexpr (isDownload) {
            connect(m_watch, &Worker::started, receiver, respond);
            connect(m_watch, &Worker::progress, receiver, respond);
        }
    }

    void run()
    {
        if (m_setup == "starved"_s)
            m_starvation.emplace(RLIMIT_NOFILE, 3); // no file can be opened, and so no program started
        begin(m_setup == "blocking"_s);

        const QString expected = (m_before + QLatin1Char(' ') + following()).trimmed();
        if (m_reaction == "deleteLater"_s) { // until it is deleted, more may follow
            QTRY_VERIFY_WITH_TIMEOUT(m_watch.isNull() && m_run.sandbox.isQuiet(), TestSandbox::Timeout);
            QVERIFY(m_run.log.text().startsWith(expected));
        } else {
            QCOMPARE(m_run.finalText(expected), expected);
        }
        QVERIFY(m_run.sandbox.isQuiet());
        QCOMPARE(m_watch.isNull(), isDeletion());
        if constexpr (isDownload)
            checkFiles();
    }

private:
    static constexpr bool isDownload = WorkerRun<Worker>::isDownload;

    bool isDeletion() const { return m_reaction.contains("delete"_s); }
    bool isRestart() const { return m_reaction.endsWith("restart"_s); }
    bool isRefused() const { return isDownload && isRestart() && following() != newDownload; }

    QString following() const
    {
        if (isDeletion())
            return QString();
        if (m_reaction == "cancel"_s || m_reaction == "clear"_s)
            return cell(qPrintable(m_reaction));
        return isDownload && m_reaction == "cancel+restart"_s ? newDownload : cell("restart");
    }

    void begin(bool isBlocking)
    {
        if constexpr (!isDownload) {
            if (isBlocking) {
                m_run.worker->getMediaInfo(Setup::url());
                return;
            }
        }
        m_run.start();
    }

    /** Called in each notification. The fakes continue when the host has reacted. */
    void respond()
    {
        m_starvation.reset();
        if (!m_hasReacted && m_run.log.text() == m_before) {
            m_hasReacted = true;
            if (m_reaction.startsWith("nested"_s))
                actInDialog();
            else
                act();
        }
        // A tool that is to be killed must not name its file before.
        if (m_hasReacted && !(isDownload && isDeletion()))
            m_run.sandbox.mark("go"_s);
    }

    void actInDialog()
    {
        constexpr int dialogTime = 60; // milliseconds, in which the event loop runs what has been posted
        QEventLoop dialog;
        QTimer::singleShot(0, &dialog, [this] { act(); });
        QTimer::singleShot(dialogTime, &dialog, &QEventLoop::quit);
        dialog.exec();
    }

    void act()
    {
        if (m_reaction == "deleteLater"_s)
            m_run.worker.release()->deleteLater();
        else if (isDeletion())
            m_run.worker.reset();
        else if (m_reaction.startsWith("cancel"_s))
            m_run.worker->cancel();
        if constexpr (isDownload) {
            if (m_reaction == "clear"_s)
                m_run.worker->clear();
        }
        if (isRestart() || m_reaction == "blocking"_s)
            restart();
    }

    void restart()
    {
        TestSandbox::provide(TestSandbox::Interpreter, TestSandbox::StandIn);
        if constexpr (isDownload) {
            TestSandbox::provide(TestSandbox::Ffmpeg, TestSandbox::StandIn);
            if (!isRefused())
                m_run.sandbox.play(QString());
            const Setup second("two code=138 dest=second.mp4"_s, m_run.sandbox);
            m_run.worker->download(Setup::url(), second.profile(), second.destination());
        } else {
            m_run.sandbox.play("dump: json B 2"_s);
            begin(m_reaction == "blocking"_s);
        }
    }

    void checkFiles()
    {
        const TestSandbox &sandbox = m_run.sandbox;
        QCOMPARE(sandbox.errors().count("download: "_s), isRefused() ? 1 : 0);
        if (m_reaction == "cancel"_s)
            QCOMPARE(sandbox.files(), cell("cancelled"));
        else if (isDeletion() && m_reaction != "deleteLater"_s)
            QCOMPARE(sandbox.files(), cell("deleted"));
        m_run.worker.reset();
        static const QRegularExpression allowed(R"(^((clip|second|\{\d\}YDTMP_)\.mp4=[^,]*(, |$))*$)"_s);
        QVERIFY2(allowed.match(sandbox.files()).hasMatch(), qPrintable(sandbox.files()));
        QCOMPARE(sandbox.files().contains("second.mp4=138+140"_s), isRestart() && !isRefused());
    }

    const QString m_setup = cell("setup");
    const QString m_before = cell("before");
    const QString m_reaction = cell("reaction");
    WorkerRun<Worker> m_run;
    const QPointer<Worker> m_watch;
    std::optional<ResourceLimit> m_starvation;
    bool m_hasReacted = false;
};

} // namespace

/** Each notification of a worker, with everything that a host may do in it. No process and no partial file stays. */
class ReactionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void extractor_data()
    {
        const char *printed = "dump: err bad|wait go|json A 1";
        const char *crash = "dump: kill SIGSEGV";
        const char *missing = "python=missing";
        const char *fresh = "finished(B|2|)";
        const char *afterError = "finished(B|2|bad)";
        const TextTable table{"reaction", "setup", "scenario", "before", "cancel", "restart"};
        const auto row = [&table](const char *name, const auto &...cells) {
            for (const char *reaction : {"delete", "own delete", "deleteLater", "cancel", "restart", "cancel+restart",
                                         "blocking", "nested delete", "nested restart"})
                table((std::string(name) + ": " + reaction).c_str(), reaction, cells...);
        };
        row("record with an error", "", printed, "finished(||bad)", "error(-1) finished(||bad) error(1)", afterError);
        row("error", "", printed, "finished(||bad) error(-1)", "finished(||bad) error(1)", afterError);
        row("record of a crash", "", crash, "finished(||)", "error(1)", fresh);
        row("crash, first code", "", crash, "finished(||) error(1)", "", fresh);
        row("crash, second code", "", crash, "finished(||) error(1) error(-1)", "", fresh);
        row("record of a failed start", missing, "", "finished(||)", "error(0)", fresh);
        row("failed start", missing, "", "finished(||) error(0)", "", fresh);
        row("record of a start that failed at once", "starved", "", "finished(||)", "error(0)", fresh);
        row("start that failed at once", "starved", "", "finished(||) error(0)", "", fresh);
        row("exit code", "", "dump: exit 3", "error(-1)", "", fresh);
        row("page", "", "dump: json A 1", "finished(A|1|)", "", "finished(B|2,1|)");
        row("page of a blocking request", "blocking", "dump: json A 1", "finished(A|1|)", "", "finished(B|2,1|)");
    }

    void extractor() { Host<WebMediaInfoExtractor>().run(); }

    void downloader_data()
    {
        const char *progress = "137: announce mp4|progress 50 1000|wait go";
        const char *accepted = "started started progress(0,0,0) finished";
        const char *crash = "137: announce mp4|file mp4.part|kill SIGSEGV";
        const char *mergeCrash = "ffmpeg: write half|kill SIGSEGV";
        const char *end = "progress(0,0,0) finished";
        const char *item = "{1}YDTMP_.mp4=137";
        const TextTable table{"reaction", "setup", "scenario", "before",   "cancel",
                              "restart",  "clear", "deleted",  "cancelled"};
        const auto row = [&table](const char *name, const auto &...cells) {
            for (const char *reaction : {"delete", "own delete", "deleteLater", "cancel", "clear", "restart",
                                         "cancel+restart", "nested delete", "nested restart"})
                table((std::string(name) + ": " + reaction).c_str(), reaction, cells...);
        };
        row("started", "", "137: wait go|announce mp4", "started", "error(-1)", "finished", "finished");
        row("second started", "two", "140: wait go|announce m4a", "started started", "error(-1)", end, end, item);
        row("progress", "", progress, "started progress(1000,500,10)", "error(-1)", "finished", "finished", item);
        row("no format code", "code=", "", "error(-1)", "", accepted);
        row("failed start", "python=missing", "", "started error(-1)", "", accepted);
        row("start that failed at once", "starved", "", "error(-1)", "", accepted, "started");
        row("failed second start", "two", "137: announce mp4|uninstall", "started started error(-1)", "", accepted, "",
            item);
        row("crash, first code", "", crash, "started error(-1)", "", "error(-5)", "error(-5)", item);
        row("crash, second code", "", crash, "started error(-1) error(-5)", "", accepted, "", item);
        row("exit code", "", "137: announce mp4|file mp4.part|exit 3", "started error(-4)", "", accepted, "", item);
        row("second exit code", "two", "140: announce m4a|exit 3", "started started error(-4)", "", accepted, "", item);
        row("destination taken", "has=clip.mp4", "", "started error(-8)", "", accepted, "",
            "clip.mp4=old, {1}YDTMP_.mp4=137");
        row("files not named", "two", "137: file mp4", "started started error(-4)", "", accepted, "", item, item);
        row("failed start of ffmpeg", "two ffmpeg=missing", "", "started started error(-7)", "", accepted, "", item);
        row("crash of ffmpeg, first code", "two", mergeCrash, "started started error(-7)", "error(-5)", "error(-5)",
            "error(-5)", item);
        row("crash of ffmpeg, second code", "two", mergeCrash, "started started error(-7) error(-5)", "", accepted, "",
            item);
        row("exit code of ffmpeg", "two", "ffmpeg: write half|exit 3", "started started error(-4)", "", accepted, "",
            item);
        row("destination of a merge taken", "two has=clip.mp4", "", "started started error(-8)", "", accepted, "",
            "clip.mp4=old");
        row("last progress", "two", "", "started started progress(0,0,0)", "", accepted, "finished",
            "clip.mp4=137+140");
        row("finished", "", "", "started finished", "", accepted, "", "clip.mp4=137");
        row("finished merge", "two", "", "started started progress(0,0,0) finished", "", accepted, "",
            "clip.mp4=137+140");
    }

    void downloader() { Host<WebMediaDownloader>().run(); }
};

NOX_TEST_MAIN(ReactionTest)
#include "ReactionTest.moc"
