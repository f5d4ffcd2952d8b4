#include "tests/support/FewFiles.h"
#include "tests/support/TestMain.h"
#include "tests/support/WorkerRun.h"
#include "tests/util/Rows.h"

#include <QEventLoop>
#include <QPointer>
#include <QRegularExpression>
#include <QTimer>
#include <QtTest>

#include <optional>

using namespace Nox;

/**
 * Every notification of a worker times everything that a host may do inside it. A row states what a host may rely on:
 * after a deletion nothing more; after a new request its outcome and nothing of the old one; no process left, and no
 * file but those that clear() leaves.
 */
class ReactionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void extractor_data();
    void extractor() { run<WebMediaInfoExtractor>(); }
    void downloader_data();
    void downloader() { run<WebMediaDownloader>(); }

private:
    template <typename Worker>
    static void run();
};

namespace {

/** A moment and what is known of it; the texts are those of SignalLog. */
struct Moment {
    const char *name;
    const char *setup;       ///< as in WorkerTable; "starved" when no program can be started at all
    const char *scenario;    ///< what the stand-ins play; they wait for "go", which comes when the host has acted
    const char *sequence;    ///< all notifications when the host does nothing
    int position;            ///< of the notification in which the host acts, counted from 1
    const char *afterCancel; ///< what follows a cancel()
    const char *other;       ///< extractor: the new request's record; downloader: "runs" where it refuses one
    const char *left = "";   ///< downloader: files after a deletion, and behind " -> ", where they differ, a cancel()
};

} // namespace
Q_DECLARE_METATYPE(Moment)
namespace {

void addRows(const std::vector<Moment> &moments, const QString &reactions)
{
    QTest::addColumn<Moment>("moment");
    QTest::addColumn<QString>("reaction");
    for (const Moment &moment : moments) {
        for (const QString &reaction : reactions.split(QLatin1Char(',')))
            QTest::newRow(qPrintable(QLatin1String(moment.name) + ": "_s + reaction)) << moment << reaction;
    }
}

/** A host that acts on the current row once, in the notification of the row's position. */
template <typename Worker>
class Host : public QObject
{
public:
    Host(const Moment &moment, QString reaction)
        : m_moment(moment)
        , m_words(QString::fromUtf8(moment.setup))
        , m_reaction(std::move(reaction))
        , m_run(m_words == "blocking"_s || m_words == "starved"_s ? QString() : m_words,
                QString::fromUtf8(moment.scenario))
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

    /** Starts the row's worker and compares what follows with what must follow. */
    void run()
    {
        if (m_words == "starved"_s)
            m_starvation.emplace();
        begin(m_words == "blocking"_s);

        const QString expected = this->expected();
        if (m_reaction == "deleteLater"_s) {
            QTRY_VERIFY_WITH_TIMEOUT(m_watch.isNull(), TestSandbox::Patience);
            QVERIFY(m_run.log.text().startsWith(expected));
        } else {
            QTRY_COMPARE_WITH_TIMEOUT(m_run.log.text(), expected, TestSandbox::Patience);
        }
        const QString outcome = m_run.log.text();
        QTRY_VERIFY_WITH_TIMEOUT(m_run.stage.isQuiet(), TestSandbox::GraceAfterKill);
        QCOMPARE(m_run.log.settled(outcome), outcome);
        QCOMPARE(m_watch.isNull(), isDeletion());
        if constexpr (isDownload)
            checkFiles();
    }

private:
    static constexpr bool isDownload = WorkerRun<Worker>::isDownload;

    bool isDeletion() const { return m_reaction.contains("delete"_s); }
    bool isRestart() const { return m_reaction.endsWith("restart"_s); }
    bool isRefused() const
    {
        return QLatin1String(m_moment.other) == "runs"_s && isRestart() && !m_reaction.startsWith("cancel"_s);
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

    /** Each notification comes here. The stand-ins go on when the host has acted. */
    void respond()
    {
        m_starvation.reset();
        if (++m_count == m_moment.position) {
            if (m_reaction.startsWith("nested"_s))
                actInDialog();
            else
                act();
        }
        // A tool that is to be killed does not name its file before.
        if (m_count >= m_moment.position && !(isDownload && isDeletion()))
            m_run.stage.mark("go"_s);
    }

    void actInDialog()
    {
        constexpr int dialogTime = 60; // milliseconds, in which the loop deletes what it finds to delete
        QEventLoop dialog;
        QTimer begin;
        QTimer end;
        begin.setSingleShot(true);
        connect(&begin, &QTimer::timeout, &dialog, [this] { act(); });
        connect(&end, &QTimer::timeout, &dialog, &QEventLoop::quit);
        begin.start(0);
        end.start(dialogTime);
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
        m_run.stage.provide(TestSandbox::Interpreter, TestSandbox::StandIn);
        if constexpr (isDownload) {
            m_run.stage.provide(TestSandbox::Ffmpeg, TestSandbox::StandIn);
            if (!isRefused())
                m_run.stage.play(QString());
            const Setup second("two code=138 dest=second.mp4"_s, m_run.stage);
            m_run.worker->download(Setup::url(), second.profile(), second.destination());
        } else {
            m_run.stage.play("dump: json B 2"_s);
            begin(m_reaction == "blocking"_s);
        }
    }

    /** What must have come in the end. */
    QString expected() const
    {
        QString sequence = QString::fromUtf8(m_moment.sequence);
        const QString before = sequence.section(QLatin1Char(' '), 0, m_moment.position - 1);
        if (m_reaction == "clear"_s || isRefused())
            return sequence;
        if (m_reaction == "cancel"_s)
            return (before + QLatin1Char(' ') + QLatin1String(m_moment.afterCancel)).trimmed();
        const QString newOutcome =
            isDownload ? "started started progress(0,0,0) finished"_s : QString::fromUtf8(m_moment.other);
        return isDeletion() ? before : before + QLatin1Char(' ') + newOutcome;
    }

    void checkFiles()
    {
        const TestSandbox &stage = m_run.stage;
        QCOMPARE(stage.errors().count("download: "_s), isRefused() ? 1 : 0);
        const QStringList left = QString::fromUtf8(m_moment.left).split(" -> "_s);
        if (m_reaction != "deleteLater"_s && (isDeletion() || m_reaction == "cancel"_s))
            QCOMPARE(stage.files(), isDeletion() ? left.first() : left.last());
        m_run.worker.reset();
        static const QRegularExpression allowed(R"(^((clip|second|\{\d\}YDTMP_)\.mp4=[^,]*(, |$))*$)"_s);
        QVERIFY2(allowed.match(stage.files()).hasMatch(), qPrintable(stage.files()));
        QCOMPARE(stage.files().contains("second.mp4=138+140"_s), isRestart() && !isRefused());
    }

    const Moment m_moment;
    const QString m_words;
    const QString m_reaction;
    WorkerRun<Worker> m_run;
    const QPointer<Worker> m_watch;
    std::optional<FewFiles> m_starvation;
    int m_count = 0;
};

} // namespace

template <typename Worker>
void ReactionTest::run()
{
    QFETCH(Moment, moment);
    QFETCH(QString, reaction);
    Host<Worker>(moment, reaction).run();
}

void ReactionTest::extractor_data()
{
    const char *complaint = "dump: err bad|wait go|json A 1";
    const char *complained = "finished(||bad) error(-1) finished(A|1|bad)";
    const char *crashed = "finished(||) error(1) error(-1)";
    const char *fresh = "finished(B|2|)";
    addRows({{"record of a complaint", "", complaint, complained, 1, "error(-1) finished(||bad) error(1)",
              "finished(B|2|bad)"},
             {"complaint", "", complaint, complained, 2, "finished(||bad) error(1)", "finished(B|2|bad)"},
             {"record of a crash", "", "dump: kill SIGSEGV", crashed, 1, "error(1)", fresh},
             {"crash, first code", "", "dump: kill SIGSEGV", crashed, 2, "", fresh},
             {"crash, second code", "", "dump: kill SIGSEGV", crashed, 3, "", fresh},
             {"record of a failed start", "python=missing", "", "finished(||) error(0)", 1, "error(0)", fresh},
             {"failed start", "python=missing", "", "finished(||) error(0)", 2, "", fresh},
             {"record of a start that failed at once", "starved", "", "finished(||) error(0)", 1, "error(0)", fresh},
             {"start that failed at once", "starved", "", "finished(||) error(0)", 2, "", fresh},
             {"exit code", "", "dump: exit 3", "error(-1)", 1, "", fresh},
             {"page", "", "dump: json A 1", "finished(A|1|)", 1, "", "finished(B|2,1|)"},
             {"page of a blocking request", "blocking", "dump: json A 1", "finished(A|1|)", 1, "", "finished(B|2,1|)"}},
            "delete,own delete,deleteLater,cancel,restart,cancel+restart,blocking,nested delete,nested restart"_s);
}

void ReactionTest::downloader_data()
{
    const char *progress = "137: announce mp4|progress 50 1000|wait go";
    const char *crash = "137: announce mp4|file mp4.part|kill SIGSEGV";
    const char *mergeCrash = "ffmpeg: write half|kill SIGSEGV";
    const char *crashed = "started error(-1) error(-5)";
    const char *mergeCrashed = "started started error(-7) error(-5)";
    const char *item = "{1}YDTMP_.mp4=137 -> ";
    const char *merged = "started started progress(0,0,0) finished";
    addRows(
        {{"started", "", "137: wait go|announce mp4", "started finished", 1, "error(-1)", "runs"},
         {"second started", "two", "140: wait go|announce m4a", merged, 2, "error(-1)", "runs", item},
         {"progress", "", progress, "started progress(1000,500,10) finished", 2, "error(-1)", "runs", item},
         {"no format code", "code=", "", "error(-1)", 1, "", ""},
         {"failed start", "python=missing", "", "started error(-1)", 2, "", ""},
         {"start that failed at once", "starved", "", "error(-1) started", 1, "", ""},
         {"failed second start", "two", "137: announce mp4|uninstall", "started started error(-1)", 3, "", "", item},
         {"crash, first code", "", crash, crashed, 2, "", "runs", item},
         {"crash, second code", "", crash, crashed, 3, "", "", item},
         {"exit code", "", "137: announce mp4|file mp4.part|exit 3", "started error(-4)", 2, "", "", item},
         {"second exit code", "two", "140: announce m4a|exit 3", "started started error(-4)", 3, "", "", item},
         {"destination taken", "has=clip.mp4", "", "started error(-8)", 2, "", "",
          "clip.mp4=old, {1}YDTMP_.mp4=137 -> "},
         {"files not named", "two", "137: file mp4", "started started error(-4)", 3, "", "", "{1}YDTMP_.mp4=137"},
         {"failed start of ffmpeg", "two ffmpeg=missing", "", "started started error(-7)", 3, "", "", item},
         {"crash of ffmpeg, first code", "two", mergeCrash, mergeCrashed, 3, "error(-5)", "runs", item},
         {"crash of ffmpeg, second code", "two", mergeCrash, mergeCrashed, 4, "", "", item},
         {"exit code of ffmpeg", "two", "ffmpeg: write half|exit 3", "started started error(-4)", 3, "", "", item},
         {"destination of a merge taken", "two has=clip.mp4", "", "started started error(-8)", 3, "", "",
          "clip.mp4=old -> "},
         {"closing progress", "two", "", merged, 3, "", "", "clip.mp4=137+140 -> "},
         {"finished", "", "", "started finished", 2, "", "", "clip.mp4=137 -> "},
         {"finished merge", "two", "", merged, 4, "", "", "clip.mp4=137+140 -> "}},
        "delete,own delete,deleteLater,cancel,clear,restart,cancel+restart,nested delete,nested restart"_s);
}

NOX_TEST_MAIN(ReactionTest)
#include "ReactionTest.moc"
