#include "tests/support/FewFiles.h"
#include "tests/support/Setup.h"
#include "tests/support/SignalLog.h"
#include "tests/support/TestMain.h"
#include "tests/support/TestSandbox.h"

#include <QEventLoop>
#include <QPointer>
#include <QRegularExpression>
#include <QTimer>
#include <QtTest>

#include <functional>
#include <memory>
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
    void extractor();
    void downloader_data();
    void downloader();
};

namespace {

/** A moment and what is known of it; the texts are those of SignalLog. */
struct Moment {
    const char *name;
    const char *setup;       ///< as in DownloadTable; "starved" when no program can be started at all
    const char *scenario;    ///< what the stand-ins play; they wait for "go", which comes when the host has acted
    const char *sequence;    ///< all notifications when the host does nothing
    int position;            ///< of the notification in which the host acts, counted from 1
    const char *afterCancel; ///< what follows a cancel()
    const char *other;       ///< extractor: the new request's record; downloader: "runs" where it refuses one
};

void addRows(const std::vector<Moment> &moments, const QString &reactions)
{
    for (const char *text : {"setup", "scenario", "sequence", "afterCancel", "other", "reaction"})
        QTest::addColumn<QString>(text);
    QTest::addColumn<int>("position");
    for (const Moment &moment : moments) {
        for (const QString &reaction : reactions.split(QLatin1Char(','))) {
            QTest::newRow(qPrintable(QLatin1String(moment.name) + QStringLiteral(": ") + reaction))
                << QString::fromUtf8(moment.setup) << QString::fromUtf8(moment.scenario)
                << QString::fromUtf8(moment.sequence) << QString::fromUtf8(moment.afterCancel)
                << QString::fromUtf8(moment.other) << reaction << moment.position;
        }
    }
}

/** The current row, and a host that acts on it once, in the notification of the row's position. */
template <typename Worker>
class Host : public QObject
{
public:
    explicit Host(std::unique_ptr<Worker> worker)
        : m_worker(worker.release())
        , m_watch(m_worker)
        , m_log(m_worker)
    {
    }
    ~Host() override { end(); }

    Worker *worker() const { return m_worker; }
    bool isGone() const { return m_watch.isNull(); }
    void end()
    {
        const std::unique_ptr<Worker> worker(m_watch.data());
        m_watch.clear();
    }
    QString log() const { return m_log.text(); }

    /** To be called by each notification: does what the row says, when its time has come. Returns whether it has. */
    bool respond(const std::function<void()> &restart)
    {
        QFETCH(int, position);
        QFETCH(QString, reaction);
        if (++m_count != position)
            return m_count > position;
        const auto act = [=] { this->act(reaction, restart); };
        if (!reaction.startsWith(QLatin1String("nested"))) {
            act();
            return true;
        }
        constexpr int dialogTime = 60; // milliseconds, in which the loop deletes what it finds to delete
        QEventLoop dialog;
        QTimer begin;
        QTimer end;
        begin.setSingleShot(true);
        connect(&begin, &QTimer::timeout, &dialog, act);
        connect(&end, &QTimer::timeout, &dialog, &QEventLoop::quit);
        begin.start(0);
        end.start(dialogTime);
        dialog.exec();
        return true;
    }

    /** What must have come in the end. */
    QString expected(const QString &newOutcome, bool isRefused) const
    {
        QFETCH(QString, sequence);
        QFETCH(QString, afterCancel);
        QFETCH(QString, reaction);
        QFETCH(int, position);
        const QString before = sequence.section(QLatin1Char(' '), 0, position - 1);
        if (reaction == QLatin1String("clear") || isRefused)
            return sequence;
        if (reaction == QLatin1String("cancel"))
            return (before + QLatin1Char(' ') + afterCancel).trimmed();
        return reaction.contains(QLatin1String("delete")) ? before : before + QLatin1Char(' ') + newOutcome;
    }

private:
    void act(const QString &reaction, const std::function<void()> &restart)
    {
        if (reaction == QLatin1String("deleteLater"))
            m_worker->deleteLater();
        else if (reaction.endsWith(QLatin1String("delete")))
            end();
        else if (reaction.startsWith(QLatin1String("cancel")))
            m_worker->cancel();
        if constexpr (std::is_same_v<Worker, WebMediaDownloader>) {
            if (reaction == QLatin1String("clear"))
                m_worker->clear();
        }
        if (reaction.endsWith(QLatin1String("start")) || reaction == QLatin1String("blocking"))
            restart();
    }

    Worker *m_worker;
    QPointer<Worker> m_watch;
    SignalLog m_log;
    int m_count = 0;
};

} // namespace

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
            QStringLiteral("delete,deleteLater,cancel,restart,cancel+restart,blocking,nested delete,nested restart"));
}

void ReactionTest::extractor()
{
    QFETCH(QString, setup);
    QFETCH(QString, scenario);
    QFETCH(QString, reaction);
    QFETCH(QString, other);
    TestSandbox stage;
    const bool isBlocking = setup == QLatin1String("blocking");
    const bool isStarved = setup == QLatin1String("starved");
    const Setup applied(isBlocking || isStarved ? QString() : setup, stage);
    stage.play(scenario);
    std::optional<FewFiles> starvation;
    Host<WebMediaInfoExtractor> host(stage.newExtractor());
    const auto respond = [&] {
        starvation.reset();
        const bool hasActed = host.respond([&] {
            stage.play(QStringLiteral("dump: json B 2"));
            stage.provide(TestSandbox::Interpreter, TestSandbox::StandIn);
            if (reaction == QLatin1String("blocking"))
                host.worker()->getMediaInfo(Setup::url());
            else
                host.worker()->getMediaInfoBySignal(Setup::url());
        });
        if (hasActed)
            stage.mark(QStringLiteral("go"));
    };
    connect(host.worker(), &WebMediaInfoExtractor::finished, &host, respond);
    connect(host.worker(), &WebMediaInfoExtractor::error, &host, respond);
    if (isStarved)
        starvation.emplace();
    if (isBlocking)
        host.worker()->getMediaInfo(Setup::url());
    else
        host.worker()->getMediaInfoBySignal(Setup::url());

    const QString expected = host.expected(other, false);
    if (reaction == QLatin1String("deleteLater")) {
        QTRY_VERIFY_WITH_TIMEOUT(host.isGone(), TestSandbox::Patience);
        QVERIFY(host.log().startsWith(expected));
    } else {
        QTRY_COMPARE_WITH_TIMEOUT(host.log(), expected, TestSandbox::Patience);
    }
    const QString outcome = host.log();
    QTRY_VERIFY_WITH_TIMEOUT(stage.isQuiet(), TestSandbox::GraceAfterKill);
    QTest::qWait(30);
    QCOMPARE(host.log(), outcome);
    QCOMPARE(host.isGone(), reaction.contains(QLatin1String("delete")));
}

void ReactionTest::downloader_data()
{
    const char *progress = "137: announce mp4|progress 50 1000|wait go";
    const char *crash = "137: announce mp4|file mp4.part|kill SIGSEGV";
    const char *mergeCrash = "ffmpeg: write half|kill SIGSEGV";
    const char *crashed = "started error(-1) error(-5)";
    const char *mergeCrashed = "started started error(-7) error(-5)";
    const char *merged = "started started progress(0,0,0) finished";
    addRows({{"started", "", "137: wait go|announce mp4", "started finished", 1, "error(-1)", "runs"},
             {"second started", "two", "140: wait go|announce m4a", merged, 2, "error(-1)", "runs"},
             {"progress", "", progress, "started progress(1000,500,10) finished", 2, "error(-1)", "runs"},
             {"no format code", "code=", "", "error(-1)", 1, "", ""},
             {"failed start", "python=missing", "", "started error(-1)", 2, "", ""},
             {"start that failed at once", "starved", "", "error(-1) started", 1, "", ""},
             {"failed second start", "two", "137: announce mp4|uninstall", "started started error(-1)", 3, "", ""},
             {"crash, first code", "", crash, crashed, 2, "", "runs"},
             {"crash, second code", "", crash, crashed, 3, "", ""},
             {"exit code", "", "137: announce mp4|file mp4.part|exit 3", "started error(-4)", 2, "", ""},
             {"second exit code", "two", "140: announce m4a|exit 3", "started started error(-4)", 3, "", ""},
             {"destination taken", "has=clip.mp4", "", "started error(-8)", 2, "", ""},
             {"files not named", "two", "137: file mp4", "started started error(-4)", 3, "", ""},
             {"failed start of ffmpeg", "two ffmpeg=missing", "", "started started error(-7)", 3, "", ""},
             {"crash of ffmpeg, first code", "two", mergeCrash, mergeCrashed, 3, "error(-5)", "runs"},
             {"crash of ffmpeg, second code", "two", mergeCrash, mergeCrashed, 4, "", ""},
             {"exit code of ffmpeg", "two", "ffmpeg: write half|exit 3", "started started error(-4)", 3, "", ""},
             {"destination of a merge taken", "two has=clip.mp4", "", "started started error(-8)", 3, "", ""},
             {"closing progress", "two", "", merged, 3, "", ""},
             {"finished", "", "", "started finished", 2, "", ""},
             {"finished merge", "two", "", merged, 4, "", ""}},
            QStringLiteral("delete,deleteLater,cancel,clear,restart,cancel+restart,nested delete,nested restart"));
}

void ReactionTest::downloader()
{
    QFETCH(QString, setup);
    QFETCH(QString, scenario);
    QFETCH(QString, reaction);
    QFETCH(QString, other);
    TestSandbox stage;
    const bool isStarved = setup == QLatin1String("starved");
    const Setup applied(isStarved ? QString() : setup, stage);
    const Setup second(QStringLiteral("code=138"), stage);
    stage.play(scenario);
    std::optional<FewFiles> starvation;
    Host<WebMediaDownloader> host(stage.newDownloader());
    const auto respond = [&] {
        starvation.reset();
        const bool hasActed = host.respond([&] {
            stage.provide(TestSandbox::Interpreter, TestSandbox::StandIn);
            host.worker()->download(Setup::url(), second.profile(), stage.folder() + QStringLiteral("/second.mp4"));
        });
        if (hasActed
            && !reaction.contains(QLatin1String("delete"))) // a tool that is to be killed does not name its file before
            stage.mark(QStringLiteral("go"));
    };
    connect(host.worker(), &WebMediaDownloader::started, &host, respond);
    connect(host.worker(), &WebMediaDownloader::progress, &host, respond);
    connect(host.worker(), &WebMediaDownloader::error, &host, respond);
    connect(host.worker(), &WebMediaDownloader::finished, &host, respond);
    if (isStarved)
        starvation.emplace();
    host.worker()->download(Setup::url(), applied.profile(), applied.destination());

    const bool isRestart = reaction.endsWith(QLatin1String("restart"));
    const bool isRefused = other == QLatin1String("runs") && isRestart && !reaction.startsWith(QLatin1String("cancel"));
    const QString expected = host.expected(QStringLiteral("started finished"), isRefused);
    if (reaction == QLatin1String("deleteLater")) {
        QTRY_VERIFY_WITH_TIMEOUT(host.isGone(), TestSandbox::Patience);
        QVERIFY(host.log().startsWith(expected));
    } else {
        QTRY_COMPARE_WITH_TIMEOUT(host.log(), expected, TestSandbox::Patience);
    }
    const QString outcome = host.log();
    QTRY_VERIFY_WITH_TIMEOUT(stage.isQuiet(), TestSandbox::GraceAfterKill);
    QTest::qWait(30);
    QCOMPARE(host.log(), outcome);
    QCOMPARE(stage.errors().count(QStringLiteral("download: ")), isRefused ? 1 : 0);

    QCOMPARE(host.isGone(), reaction.contains(QLatin1String("delete")));
    host.end();
    static const QRegularExpression allowed(QStringLiteral("^((clip|second|\\{\\d\\}YDTMP_)\\.mp4=[^,]*(, |$))*$"));
    QVERIFY2(allowed.match(stage.files()).hasMatch(), qPrintable(stage.files()));
    QCOMPARE(stage.files().contains(QStringLiteral("second.mp4=138")), isRestart && !isRefused);
}

NOX_TEST_MAIN(ReactionTest)
#include "ReactionTest.moc"
