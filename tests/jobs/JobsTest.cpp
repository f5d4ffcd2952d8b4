#include "tests/jobs/HostSandbox.h"
#include "tests/jobs/SampleStreams.h"
#include "tests/support/LogFile.h"
#include "tests/support/TextTable.h"
#include "tests/util/Rows.h"

#include <nox/NoxWebMediaJobs.h>

#include <QEventLoop>
#include <QPointer>
#include <QSignalSpy>
#include <QTimer>
#include <QtTest>

#include <memory>

using namespace Nox;

namespace {

const QString url = "http://x/"_s;

/** A video that is joined with the audio 140. */
MediaProfile dashStream(const char *code)
{
    return SampleStreams::stream(QLatin1String(code) + " MP4 dash +140"_s);
}

QString nameOf(Job::Error error)
{
    return QString::fromLatin1(QMetaEnum::fromType<Job::Error>().valueToKey(error));
}

} // namespace

/** The jobs as a host uses them, with stand-ins for the external programs. */
class JobsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void reactions_data();
    void reactions();
    void outcomes_data();
    void outcomes();
    void best();
    void sideBySide();
    void figures();
    void joiningFigures();
    void waiting();
    void warnings();
    void startedTwice();
    void cancelledBeforeStart();
    void cancelledTwice();

protected Q_SLOTS: // no test
    void react();

private:
    std::unique_ptr<Job> newJob(const QString &kind) const;
    std::unique_ptr<DownloadJob> newDownload(const char *code, const QString &file = "clip.mp4"_s) const
    {
        return std::make_unique<DownloadJob>(url, dashStream(code), m_sandbox->video(file));
    }
    QString moment() const;
    static bool isEnded(const Job &job) { return job.state() == Job::Ended; }

    std::unique_ptr<HostSandbox> m_sandbox;
    std::unique_ptr<Job> m_job; // of reactions()
    std::unique_ptr<Job> m_other;
    QString m_moment;
    QString m_reaction;
    QStringList m_outcomes;
    bool m_hasReacted = false;
};

void JobsTest::init()
{
    m_sandbox = std::make_unique<HostSandbox>();
    HostSandbox::installStandIns();
    HostSandbox::play("137: announce mp4|progress 50.0 100\nslow: announce mp4|hang\ndump: hang"_s);
}

void JobsTest::cleanup()
{
    m_job.reset();
    m_other.reset();
    QTRY_VERIFY_WITH_TIMEOUT(m_sandbox->isQuiet(), HostSandbox::Timeout);
    m_sandbox.reset();
}

std::unique_ptr<Job> JobsTest::newJob(const QString &kind) const
{
    if (kind == "page"_s)
        return std::make_unique<PageJob>(url);
    if (kind == "version"_s)
        return std::make_unique<ToolVersionJob>();
    if (kind == "playlist"_s)
        return std::make_unique<PlaylistJob>(url);
    if (kind == "mp3"_s) {
        auto job =
            std::make_unique<DownloadJob>(url, SampleStreams::stream("140 M4A 128K"_s), m_sandbox->video("clip.mp4"_s));
        job->setSoundFormat(SoundFormat::Mp3);
        return job;
    }
    if (kind == "bad address"_s)
        return std::make_unique<PageJob>("x y"_s);
    return newDownload(kind == "failing"_s ? "bad" : "137");
}

void JobsTest::reactions_data()
{
    // A host does something inside a signal of a job. Each entry is what comes of it: the outcomes that are reported,
    // "-" for none, and "+ file" where the finished file stays.
    const TextTable row{"kind",  "moment", "delete", "deleteLater",   "cancel",
                        "start", "other",  "loop",   "delete in loop"};
    const char *const ok = "NoError";
    const char *const saved = "NoError + file";
    const char *const left = "- + file";
    const char *const stopped = "Cancelled";
    const char *const failed = "OtherError";
    row("page begins", "page", "Running", "-", "-", stopped, ok, ok, ok, "-");
    row("page ends", "page", "Ended", "-", ok, ok, ok, ok, ok, "-");
    row("page is finished", "page", "finished", ok, ok, ok, ok, ok, ok, ok);
    row("version begins", "version", "Running", "-", "-", stopped, ok, ok, ok, "-");
    row("version ends", "version", "Ended", "-", ok, ok, ok, ok, ok, "-");
    row("version is finished", "version", "finished", ok, ok, ok, ok, ok, ok, ok);
    row("list begins", "playlist", "Running", "-", "-", stopped, ok, ok, ok, "-");
    row("list grows", "playlist", "entry", "-", "-", stopped, ok, ok, ok, "-");
    row("list is finished", "playlist", "finished", ok, ok, ok, ok, ok, ok, ok);
    row("no address, begins", "bad address", "Running", "-", "-", stopped, "AddressError", "AddressError",
        "AddressError", "-");
    row("no address, finished", "bad address", "finished", "AddressError", "AddressError", "AddressError",
        "AddressError", "AddressError", "AddressError", "AddressError");
    row("download begins", "download", "Running", "-", "-", stopped, saved, saved, saved, "-");
    row("video begins", "download", "Video", "-", "-", stopped, saved, saved, saved, "-");
    row("server is silent", "download", "waiting", "-", "-", stopped, saved, saved, saved, "-");
    row("figures come", "download", "figures", "-", "-", stopped, saved, saved, saved, "-");
    row("audio begins", "download", "Audio", "-", "-", stopped, saved, saved, saved, "-");
    row("joining begins", "download", "Joining", "-", "-", stopped, saved, saved, saved, "-");
    row("joining has no figures", "download", "figures of joining", "-", "-", stopped, saved, saved, saved, "-");
    row("encoding begins", "mp3", "Converting", "-", "-", stopped, saved, saved, saved, "-");
    row("encoding has figures", "mp3", "figures of encoding", "-", "-", stopped, saved, saved, saved, "-");
    row("download ends", "download", "Ended", left, saved, saved, saved, saved, saved, left);
    row("download is finished", "download", "finished", saved, saved, saved, saved, saved, saved, saved);
    row("download stops", "stopping", "Stopping", "-", "-", stopped, stopped, stopped, stopped, ""); // "": any

    row("failing download begins", "failing", "Video", "-", "-", stopped, failed, failed, failed, "-");
    row("failing download ends", "failing", "Ended", "-", failed, failed, failed, failed, failed, "-");
    row("failing download is finished", "failing", "finished", failed, failed, failed, failed, failed, failed, failed);
}

/** What m_job is at, in the words of the table. */
QString JobsTest::moment() const
{
    const auto *download = qobject_cast<const DownloadJob *>(m_job.get());
    const int signal = senderSignalIndex();
    const auto isSignal = [signal](const QMetaMethod &method) { return method.methodIndex() == signal; };
    if (isSignal(QMetaMethod::fromSignal(&Job::finished)))
        return "finished"_s;
    if (qobject_cast<const PlaylistJob *>(m_job.get()) != nullptr
        && isSignal(QMetaMethod::fromSignal(&PlaylistJob::entryFound)))
        return "entry"_s;
    if (download == nullptr)
        return QString::fromLatin1(QMetaEnum::fromType<Job::State>().valueToKey(m_job->state()));
    if (isSignal(QMetaMethod::fromSignal(&DownloadJob::phaseChanged)))
        return QString::fromLatin1(QMetaEnum::fromType<DownloadJob::Phase>().valueToKey(download->phase()));
    if (isSignal(QMetaMethod::fromSignal(&DownloadJob::figuresChanged)))
        return download->phase() == DownloadJob::Joining   ? "figures of joining"_s
            : download->phase() == DownloadJob::Converting ? "figures of encoding"_s
                                                           : "figures"_s;
    if (isSignal(QMetaMethod::fromSignal(&DownloadJob::waitingTextChanged)))
        return download->waitingText().isEmpty() ? QString() : "waiting"_s;
    return QString::fromLatin1(QMetaEnum::fromType<Job::State>().valueToKey(m_job->state()));
}

void JobsTest::react()
{
    if (m_hasReacted || moment() != m_moment)
        return;
    m_hasReacted = true;
    m_sandbox->let("go"_s);
    if (m_reaction == "delete"_s) {
        m_job.reset();
    } else if (m_reaction == "deleteLater"_s) {
        m_job.release()->deleteLater();
    } else if (m_reaction == "cancel"_s) {
        m_job->cancel();
    } else if (m_reaction == "start"_s) {
        m_job->start();
    } else if (m_reaction == "other"_s) {
        m_other = std::make_unique<ToolVersionJob>();
        m_other->start();
    } else {
        QEventLoop loop;
        if (m_reaction == "delete in loop"_s)
            QTimer::singleShot(0, this, [this] { m_job.reset(); });
        QTimer::singleShot(60, &loop, &QEventLoop::quit);
        loop.exec();
    }
}

void JobsTest::reactions()
{
    QFETCH(QString, kind);
    QFETCH(QString, moment);
    const QStringList all{"delete"_s, "deleteLater"_s, "cancel"_s, "start"_s, "other"_s, "loop"_s, "delete in loop"_s};
    m_moment = moment;
    for (const QString &reaction : all) {
        cleanup();
        init();
        HostSandbox::play("dump: json Clip 18\nbad: announce mp4|err ERROR: [x] y\\n|exit 1\n"
                          "137: announce mp4|err WARNING: [nox:waiting] Trying again in 4 s (3 of 6)\\n|wait go|"
                          "progress 50.0 100\nffmpeg: write half|wait go|merge"_s);
        m_reaction = reaction;
        m_hasReacted = false;
        m_outcomes.clear();
        m_job = newJob(kind);
        connect(m_job.get(), &Job::finished, this, [this](Job *job) { m_outcomes += nameOf(job->error()); });
        if (kind == "version"_s || kind == "page"_s)
            HostSandbox::play("dump: json Clip 18"_s);
        if (kind == "playlist"_s)
            HostSandbox::play(R"(list: lines 1000 {"nox_url":"http://x/a"})"_s);
        for (const char *signal :
             {SIGNAL(stateChanged()), SIGNAL(finished(Nox::Job *)), SIGNAL(waitingTextChanged()),
              SIGNAL(entryFound(Nox::PlaylistEntry)), SIGNAL(phaseChanged(Nox::DownloadJob::Phase)),
              SIGNAL(figuresChanged(Nox::TransferFigures))}) {
            if (m_job->metaObject()->indexOfSignal(QMetaObject::normalizedSignature(signal + 1).constData()) >= 0)
                connect(m_job.get(), signal, this, SLOT(react()));
        }
        if (moment != "waiting"_s)
            m_sandbox->let("go"_s);
        const QPointer<Job> job(m_job.get());
        QTimer::singleShot(0, m_job.get(), [this, kind, job] {
            m_job->start();
            if (kind == "stopping"_s && !job.isNull())
                m_job->cancel();
        });
        QEventLoop loop; // as in a host; QTest::qWait() lets other events pass before a deferred deletion
        connect(m_job.get(), &QObject::destroyed, &loop, &QEventLoop::quit);
        connect(m_job.get(), &Job::finished, &loop, &QEventLoop::quit);
        QTimer::singleShot(HostSandbox::Timeout, &loop, &QEventLoop::quit);
        loop.exec();
        QVERIFY2(m_hasReacted, qPrintable(reaction));
        QTRY_VERIFY2_WITH_TIMEOUT(job.isNull() || isEnded(*job), qPrintable(reaction), HostSandbox::Timeout);
        if (m_other != nullptr)
            QTRY_VERIFY_WITH_TIMEOUT(isEnded(*m_other), HostSandbox::Timeout);
        QTRY_VERIFY_WITH_TIMEOUT(m_sandbox->isQuiet(), HostSandbox::Timeout);
        const QString outcome = m_outcomes.isEmpty() ? "-"_s : m_outcomes.join(QLatin1Char(' '));
        const QString file = m_sandbox->files() == QStringList("clip.mp4"_s) ? " + file"_s : QString();
        const QString expected =
            *static_cast<QString *>(QTest::qData(reaction.toLatin1().constData(), qMetaTypeId<QString>()));
        QVERIFY2(expected.isEmpty() || outcome + file == expected,
                 qPrintable("%1: %2%3 instead of %4"_s.arg(reaction, outcome, file, expected)));
        QVERIFY(!file.isEmpty() || m_sandbox->files().isEmpty());
    }
}

void JobsTest::outcomes_data()
{
    const TextTable row{"kind", "scenario", "error", "message", "details", "runs"};
    row("tag", "page", R"(dump: err ERROR: [nox:login] Members only\n|exit 1)", "LoginNeeded", "tool.conf",
        "ERROR: Members only", "1");
    row("no tag", "page", R"(dump: err ERROR: [x] gone\n|exit 1)", "OtherError", "could not read", "ERROR: [x] gone",
        "1");
    row("broken tool", "page", R"(dump: err zlib.error: Error -3\n|exit 1)", "ToolBroken", "damaged",
        "zlib.error: Error -3", "1");
    row("no stream", "page", "dump: json Clip ", "NothingToDownload", "no video", "", "1");
    row("no description", "page", "dump: out nonsense", "OtherError", "could not be read", "", "1");
    row("complaint, then a page", "page", R"(dump: err Odd\n|json Clip 18)", "NoError", "", "", "1");
    row("crash", "page", "dump: kill SIGSEGV", "OtherError", "crashed", "", "1");
    row("no address", "bad address", "", "AddressError", "must start with", "", "0");
    row("no version", "version", "dump: exit 0", "OtherError", "version", "", "1");
    row("download's tag", "download", R"(137: err ERROR: [nox:no-space] No room\n|exit 1)", "NoSpace", "disk is full",
        "ERROR: No room", "1");
    row("second stream", "download", R"(140: err ERROR: [nox:network] No route\n|exit 1)", "NoNetwork", "connection",
        "ERROR: No route", "2");
    row("joining", "download", R"(ffmpeg: err ERROR: [nox:login] x\n|exit 1)", "ConversionFailed", "ffmpeg reported",
        "ERROR: x", "3");
    row("joining crashes", "download", "ffmpeg: kill SIGSEGV", "ConversionFailed", "ffmpeg crashed", "", "3");
    row("encoding", "mp3", R"(ffmpeg: err Unknown encoder 'libmp3lame'\n|exit 1)", "ConversionFailed", "ffmpeg failed",
        "Unknown encoder 'libmp3lame'", "2");
    row("encoding crashes", "mp3", "ffmpeg: kill SIGSEGV", "ConversionFailed", "ffmpeg failed", "", "2");
    row("no file", "download", "ffmpeg: exit 0", "DestinationError", "final name", "", "3");
}

void JobsTest::outcomes()
{
    QFETCH(QString, kind);
    QFETCH(QString, scenario);
    QFETCH(QString, message);
    HostSandbox::play("137: announce mp4\n"_s + scenario);
    m_job = newJob(kind);
    QSignalSpy finished(m_job.get(), &Job::finished);
    m_job->start();
    QCOMPARE(finished.size(), 0); // from the event loop only
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, HostSandbox::Timeout);
    QTEST(nameOf(m_job->error()), "error");
    QVERIFY2(m_job->errorString().contains(message), qPrintable(m_job->errorString()));
    QCOMPARE(m_job->errorString().isEmpty(), message.isEmpty());
    QTEST(m_job->errorDetails(), "details");
    QTEST(QString::number(m_sandbox->runCount()), "runs");
    QCOMPARE(m_sandbox->files(), QStringList());
}

// After the page, the download that suits best; after a page that failed, its error.
void JobsTest::best()
{
    const auto run = [this](const QString &scenario) {
        HostSandbox::play(scenario);
        PageJob page(url);
        page.start();
        [&] { QTRY_VERIFY_WITH_TIMEOUT(isEnded(page), HostSandbox::Timeout); }();
        m_job = std::make_unique<DownloadJob>(page, m_sandbox->videos());
        m_job->start();
        [&] { QTRY_VERIFY_WITH_TIMEOUT(isEnded(*m_job), HostSandbox::Timeout); }();
        return QStringList{nameOf(m_job->error()), m_job->errorDetails()};
    };
    QCOMPARE(run(HostSandbox::pageScenario() + "\n137: announce mp4"_s), (QStringList{"NoError"_s, QString()}));
    QCOMPARE(static_cast<DownloadJob *>(m_job.get())->filePath(), m_sandbox->video("Clip.mp4"_s));
    QCOMPARE(m_sandbox->runCount(), 4); // page, video, audio, ffmpeg
    QCOMPARE(run("dump: err ERROR: [nox:country] Not here\\n|exit 1"_s),
             (QStringList{"NotAvailableInCountry"_s, "ERROR: Not here"_s}));
    QCOMPARE(m_sandbox->runCount(), 5);
}

void JobsTest::sideBySide()
{
    const auto first = newDownload("137");
    const auto second = newDownload("137");
    QSignalSpy phases(first.get(), &DownloadJob::phaseChanged);
    QSignalSpy figures(first.get(), &DownloadJob::figuresChanged);
    first->start();
    second->start();
    QTRY_VERIFY_WITH_TIMEOUT(isEnded(*first) && isEnded(*second), HostSandbox::Timeout);
    QCOMPARE(m_sandbox->files(), (QStringList{"clip(1).mp4"_s, "clip.mp4"_s}));
    QVERIFY(first->filePath() != second->filePath());
    QCOMPARE(phases.size(), 3); // video, audio, joining
    QCOMPARE(first->phase(), DownloadJob::Joining);
    QVERIFY(figures.size() >= 2);
}

// A tool that tells no length: the file's growth counts. One that falls silent: its last speed does not stay.
void JobsTest::figures()
{
    HostSandbox::play("137: announce mp4|file mp4 12345|wait go\n140: announce m4a|progress 50.0 100|wait go"_s);
    const auto growing = newDownload("137", "a.mp4"_s);
    DownloadJob silent(url, SampleStreams::stream("140 MP4 dash"_s), m_sandbox->video("b.m4a"_s));
    QVector<TransferFigures> told;
    connect(&silent, &DownloadJob::figuresChanged, this, [&](const TransferFigures &figures) { told += figures; });
    growing->start();
    silent.start();
    QTRY_COMPARE_WITH_TIMEOUT(growing->figures().processed(), qint64(5), HostSandbox::Timeout);
    QCOMPARE(growing->figures().total(), qint64(0));
    QTRY_COMPARE_WITH_TIMEOUT(told.size(), 2, HostSandbox::Timeout);
    QVERIFY(told.first().speed() > 0 && told.first().secondsLeft() > 0);
    QVERIFY(told.last().speed() == 0 && told.last().processed() == told.first().processed());
}

// Joining begins without figures, and then has ffmpeg's own.
void JobsTest::joiningFigures()
{
    HostSandbox::play("137: announce mp4|progress 50.0 100\n"
                      "ffmpeg: err   Duration: 00:01:40.00\\n|write half|wait on|"
                      "err time=00:00:50.00 bitrate=1 speed=2.0x\\r|wait end|merge"_s);
    const auto job = newDownload("137");
    QStringList told;
    connect(job.get(), &DownloadJob::phaseChanged, this,
            [&](DownloadJob::Phase phase) { told += "phase %1"_s.arg(int(phase)); });
    connect(job.get(), &DownloadJob::figuresChanged, this, [&](const TransferFigures &figures) {
        const QString text = figures.amountText(QLocale::c()) + figures.speedText(QLocale::c());
        if (told.last() != text)
            told += text;
    });
    job->start();
    QTRY_VERIFY_WITH_TIMEOUT(told.contains("4 bytes"_s), HostSandbox::Timeout); // of the joined file
    m_sandbox->let("on"_s);
    QTRY_VERIFY_WITH_TIMEOUT(told.last().startsWith("0:00:50"_s), HostSandbox::Timeout);
    m_sandbox->let("end"_s);
    QTRY_VERIFY_WITH_TIMEOUT(isEnded(*job), HostSandbox::Timeout);
    const QStringList expected{"phase 1"_s, "50 bytes / 120 bytes10 bytes/s"_s, "phase 2"_s, "phase 3"_s, QString(),
                               "4 bytes"_s, "0:00:50 / 0:01:402.0x"_s};
    QCOMPARE(told, expected);
}

void JobsTest::waiting()
{
    HostSandbox::play("137: announce mp4|err WARNING: [nox:waiting] Trying again in 4 s (3 of 6)\\n|wait go|"
                      "file mp4 12345|wait end"_s);
    const auto job = newDownload("137");
    job->start();
    QTRY_VERIFY_WITH_TIMEOUT(job->waitingText().contains("4 s (3 of 6)"_s), HostSandbox::Timeout);
    m_sandbox->let("go"_s);
    QTRY_COMPARE_WITH_TIMEOUT(job->waitingText(), QString(), HostSandbox::Timeout);
    m_sandbox->let("end"_s);
    QTRY_VERIFY_WITH_TIMEOUT(isEnded(*job), HostSandbox::Timeout);
    QCOMPARE(job->errorString(), QString());
}

void JobsTest::warnings()
{
    HostSandbox::play("dump: err WARNING: formats may be missing\\nWARNING: formats may be missing\\n|json Clip 18"_s);
    PageJob page(url);
    page.start();
    QTRY_VERIFY_WITH_TIMEOUT(isEnded(page), HostSandbox::Timeout);
    QCOMPARE(page.warnings(), QStringList("formats may be missing"_s));
    QCOMPARE(page.title(), "Clip"_s);
    QCOMPARE(page.errorDetails(), QString());
}

// Refused, with one record in the log.
void JobsTest::startedTwice()
{
    const LogFile log(m_sandbox->path("log"_s));
    const auto job = newDownload("137");
    job->start();
    job->start();
    QTRY_VERIFY_WITH_TIMEOUT(isEnded(*job), HostSandbox::Timeout);
    job->start();
    QCOMPARE(m_sandbox->files(), QStringList("clip.mp4"_s));
    QCOMPARE(log.records(LOG_ERROR).filter("Nox::DownloadJob: a job is started once"_s).size(), 2);
}

void JobsTest::cancelledBeforeStart()
{
    const auto job = newDownload("137");
    QSignalSpy finished(job.get(), &Job::finished);
    job->cancel();
    job->start();
    QCOMPARE(finished.size(), 0); // from the event loop only
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, HostSandbox::Timeout);
    QCOMPARE(job->error(), Job::Cancelled);
    QCOMPARE(m_sandbox->runCount(), 0);
}

void JobsTest::cancelledTwice()
{
    const auto job = newDownload("slow");
    QSignalSpy finished(job.get(), &Job::finished);
    job->start();
    job->cancel(); // before the tool has done anything
    job->cancel();
    QTRY_VERIFY_WITH_TIMEOUT(isEnded(*job) && m_sandbox->isQuiet(), HostSandbox::Timeout);
    QCOMPARE(finished.size(), 1);
    QCOMPARE(m_sandbox->files(), QStringList());
}

QTEST_GUILESS_MAIN(JobsTest)
#include "JobsTest.moc"
