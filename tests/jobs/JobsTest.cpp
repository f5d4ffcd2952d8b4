#include "tests/jobs/JobTest.h"
#include "tests/jobs/SampleStreams.h"

#include <QEventLoop>
#include <QJsonDocument>
#include <QPointer>
#include <QSignalSpy>
#include <QTimer>

using namespace Nox;

/** The jobs as a host uses them. */
class JobsTest : public JobTest
{
    Q_OBJECT

private Q_SLOTS:
    void reactions_data();
    void reactions();
    void outcomes_data();
    void outcomes();
    void sideBySide();
    void figures();
    void joiningFigures();
    void deletedRenewal_data();
    void deletedRenewal();

private:
    std::unique_ptr<Job> newJob(const QString &kind) const;
    std::unique_ptr<DownloadJob> newDownload(const QString &code, const QString &file = "clip.mp4"_s) const
    {
        return std::make_unique<DownloadJob>(m_url, SampleStreams::stream(code + " MP4 dash +140"_s),
                                             m_sandbox->video(file));
    }
    void watch();
    void react(const QString &moment);
    void runToEnd();

    QString m_moment; // of reactions()
    QString m_reaction;
    QStringList m_outcomes;
    bool m_hasReacted = false;
};

std::unique_ptr<Job> JobsTest::newJob(const QString &kind) const
{
    if (kind == "page"_s)
        return std::make_unique<PageJob>(m_url);
    if (kind == "bad address"_s)
        return std::make_unique<PageJob>("x y"_s);
    if (kind == "version"_s)
        return std::make_unique<ToolVersionJob>();
    if (kind == "list"_s)
        return std::make_unique<PlaylistJob>(m_url);
    if (kind.startsWith(QLatin1Char('{')))
        return std::make_unique<DownloadJob>(QJsonDocument::fromJson(kind.toUtf8()).object());
    if (kind == "best"_s) {
        PageJob page(m_url);
        page.start();
        static_cast<void>(QTest::qWaitFor([&page] { return isEnded(page); }, HostSandbox::Timeout));
        return std::make_unique<DownloadJob>(page, m_sandbox->videos());
    }
    if (kind == "mp3"_s) {
        auto job = std::make_unique<DownloadJob>(m_url, SampleStreams::stream("140 M4A 128K"_s),
                                                 m_sandbox->video("clip.mp4"_s));
        job->setSoundFormat(SoundFormat::Mp3);
        return job;
    }
    return newDownload(kind == "failing"_s ? "bad"_s : "137"_s);
}

void JobsTest::reactions_data()
{
    // A host does something inside a signal of a job. Each entry is what comes of it: the outcomes that are reported,
    // "-" for none, and "+ file" where the finished file stays.
    const TextTable row{"kind", "moment", "delete", "deleteLater", "cancel", "start", "loop", "delete in loop"};
    const auto name = [](const char *kind, const char *moment) { return QByteArray(kind) + ", " + moment; };
    const auto during = [&](const char *kind, const char *moment, const char *end) {
        row(name(kind, moment).constData(), kind, moment, "-", "-", "Cancelled", end, end, "-");
    };
    const auto ended = [&](const char *kind, const char *end, const char *deleted = "-") {
        row(name(kind, "Ended").constData(), kind, "Ended", deleted, end, end, end, end, deleted);
    };
    const auto finished = [&](const char *kind, const char *end) {
        row(name(kind, "finished").constData(), kind, "finished", end, end, end, end, end, end);
    };
    during("page", "Running", "NoError");
    ended("page", "NoError");
    finished("page", "NoError");
    during("version", "Running", "NoError");
    during("list", "entry", "NoError");
    during("bad address", "Running", "AddressError");
    const char saved[] = "NoError + file";
    for (const char *moment : {"Running", "Video", "waiting", "figures, Video", "Audio", "Joining", "figures, Joining"})
        during("download", moment, saved);
    ended("download", saved, "- + file");
    finished("download", saved);
    during("mp3", "Converting", saved);
    during("mp3", "figures, Converting", saved);
    row("stopping, Stopping", "stopping", "Stopping", "-", "-", "Cancelled", "Cancelled", "Cancelled", ""); // "": any
    during("failing", "Video", "OtherError");
}

/** Tells react() of every signal of the job. */
void JobsTest::watch()
{
    Job *job = m_job.get();
    connect(job, &Job::stateChanged, this, [this, job] { react(nameOf(job->state())); });
    connect(job, &Job::finished, this, [this](Job *ended) {
        m_outcomes += nameOf(ended->error());
        react("finished"_s);
    });
    if (const auto *list = qobject_cast<PlaylistJob *>(job))
        connect(list, &PlaylistJob::entryFound, this, [this] { react("entry"_s); });
    const auto *download = qobject_cast<DownloadJob *>(job);
    if (download == nullptr)
        return;
    connect(download, &DownloadJob::phaseChanged, this, [this](DownloadJob::Phase phase) { react(nameOf(phase)); });
    connect(download, &DownloadJob::figuresChanged, this,
            [this, download] { react("figures, "_s + nameOf(download->phase())); });
    connect(download, &DownloadJob::waitingTextChanged, this,
            [this, download] { react(download->waitingText().isEmpty() ? QString() : "waiting"_s); });
}

void JobsTest::react(const QString &moment)
{
    if (m_hasReacted || moment != m_moment)
        return;
    m_hasReacted = true;
    m_sandbox->let("go"_s);
    if (m_reaction == "delete"_s) {
        m_job.reset();
    } else if (m_reaction == "deleteLater"_s) {
        m_job.release()->deleteLater();
    } else if (m_reaction == "cancel"_s || m_reaction == "start"_s) {
        QVERIFY(QMetaObject::invokeMethod(m_job.get(), m_reaction.toLatin1().constData()));
    } else {
        if (m_reaction == "delete in loop"_s)
            QTimer::singleShot(0, this, [this] { m_job.reset(); });
        QEventLoop loop;
        QTimer::singleShot(60, &loop, &QEventLoop::quit);
        loop.exec();
    }
}

/** Runs the job of reactions() until it has ended or is deleted. */
void JobsTest::runToEnd()
{
    const QPointer<Job> job(m_job.get());
    const bool isStopped = QByteArray(QTest::currentDataTag()).startsWith("stopping");
    QTimer::singleShot(0, m_job.get(), [job, isStopped] {
        job->start();
        if (isStopped && !job.isNull())
            job->cancel();
    });
    QEventLoop loop; // as in a host; QTest::qWait() lets other events pass before a deferred deletion
    connect(m_job.get(), &QObject::destroyed, &loop, &QEventLoop::quit);
    connect(m_job.get(), &Job::finished, &loop, &QEventLoop::quit);
    QTimer::singleShot(HostSandbox::Timeout, &loop, &QEventLoop::quit);
    loop.exec();
    QTRY_VERIFY_WITH_TIMEOUT(job.isNull() || isEnded(*job), HostSandbox::Timeout);
    QTRY_VERIFY_WITH_TIMEOUT(m_sandbox->isQuiet(), HostSandbox::Timeout);
}

void JobsTest::reactions()
{
    QFETCH(QString, kind);
    QFETCH(QString, moment);
    m_moment = moment;
    for (const char *reaction : {"delete", "deleteLater", "cancel", "start", "loop", "delete in loop"}) {
        cleanup();
        init();
        HostSandbox::play("dump: json Clip 18\nbad: announce mp4|err ERROR: [x] y\\n|exit 1\n"
                          "137: announce mp4|err WARNING: [nox:waiting] Trying again in 4 s (3 of 6)\\n|wait go|"
                          "progress 50.0 100\nffmpeg: write half|wait go|merge\n"
                          R"(list: lines 1000 {"nox_url":"http://x/a"}|wait end)"_s);
        m_reaction = QLatin1String(reaction);
        m_hasReacted = false;
        m_outcomes.clear();
        m_job = newJob(kind);
        watch();
        if (moment != "waiting"_s)
            m_sandbox->let("go"_s);
        if (moment != "entry"_s || m_reaction != "deleteLater"_s) // the end could come before the deferred deletion
            m_sandbox->let("end"_s);
        runToEnd();
        QVERIFY2(m_hasReacted, reaction);
        const QString outcome = m_outcomes.isEmpty() ? "-"_s : m_outcomes.join(QLatin1Char(' '));
        const QString file = m_sandbox->files() == QStringList("clip.mp4"_s) ? " + file"_s : QString();
        const auto [expected] = fetchTexts(reaction);
        QVERIFY2(expected.isEmpty() || outcome + file == expected,
                 qPrintable("%1: %2%3 instead of %4"_s.arg(m_reaction, outcome, file, expected)));
        QVERIFY(!file.isEmpty() || m_sandbox->files().isEmpty());
    }
}

void JobsTest::outcomes_data()
{
    const TextTable row{"kind", "scenario", "error", "message", "details", "runs"};
    row("tag, in two pieces", "page", "dump: err ERROR: [nox:lo|fail gin] Members only", "LoginNeeded", "tool.conf",
        "ERROR: Members only", "1");
    row("no stream", "page", "dump: json Clip ", "NothingToDownload", "no video", "", "1");
    row("no usable code", "page", "dump: json Clip --exec=x", "NothingToDownload", "cannot be passed", "", "1");
    row("no description", "page", R"(dump: err some words\n|out nonsense)", "OtherError", "could not be read",
        "some words", "1");
    row("complaint, then a page", "page", R"(dump: err Odd\n|json Clip 18)", "NoError", "", "", "1");
    row("crash", "page", "dump: kill SIGSEGV", "OtherError", "crashed", "", "1");
    row("no address", "bad address", "", "AddressError", "must start with", "", "0");
    row("the best of a page that failed", "best", "dump: fail ERROR: [nox:country] Not here", "NotAvailableInCountry",
        "country", "ERROR: Not here", "1");
    row("no version", "version", "dump: exit 0", "OtherError", "version", "", "1");
    row("download's tag", "download", "137: fail ERROR: [nox:no-space] No room", "NoSpace", "disk is full",
        "ERROR: No room", "1");
    row("download crashes", "download", "137: announce mp4|kill SIGSEGV", "OtherError", "crashed", "", "1");
    row("second stream", "download", "140: fail ERROR: [nox:network] No route", "NoNetwork", "connection",
        "ERROR: No route", "2");
    row("joining", "download", "ffmpeg: fail ERROR: [nox:login] x", "ConversionFailed", "ffmpeg reported", "ERROR: x",
        "3");
    row("joining crashes", "download", "ffmpeg: kill SIGSEGV", "ConversionFailed", "ffmpeg crashed", "", "3");
    row("encoding", "mp3", "ffmpeg: fail Unknown encoder 'libmp3lame'", "ConversionFailed", "ffmpeg failed",
        "Unknown encoder 'libmp3lame'", "2");
    row("no file", "download", "ffmpeg: exit 0", "DestinationError", "final name", "", "3");
    row("no record", "{}", "", "OtherError", "stored data", "", "0");
    row("record, no address", R"({"version":1,"url":"--exec=x","destination":"/none/a","stream":{"code":"1"}})", "",
        "AddressError", "must start with", "", "0");
    row("record, an option as code", R"({"version":1,"url":"http://x/","destination":"/a","stream":{"code":"--exec"}})",
        "", "NothingToDownload", "cannot be passed", "", "0");
    row("record, no folder", R"({"version":1,"url":"http://x/","destination":"/none/a","stream":{"code":"1"}})", "",
        "DestinationError", "does not exist", "", "0");
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

// What is in use is left alone, and so is what has got the file's name meanwhile, even a link that leads nowhere.
void JobsTest::sideBySide()
{
    HostSandbox::play("137: announce mp4|mark on|wait go"_s);
    const auto first = newDownload("137"_s);
    const auto second = newDownload("137"_s);
    first->start();
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_sandbox->path("notes/mark.on"_s)), HostSandbox::Timeout);
    second->start();
    QVERIFY(QFile::link("nowhere"_s, m_sandbox->video("clip.mp4"_s)));
    m_sandbox->let("go"_s);
    QTRY_VERIFY_WITH_TIMEOUT(isEnded(*first) && isEnded(*second), HostSandbox::Timeout);
    QCOMPARE(m_sandbox->files(), (QStringList{"clip(1).mp4"_s, "clip(2).mp4"_s, "clip.mp4"_s}));
    QVERIFY(first->filePath() != second->filePath());
}

// A tool that tells no length: the file's growth counts, and ends the notice that the server is silent; the same one
// may come again. A tool that falls silent: its last speed does not stay.
void JobsTest::figures()
{
    const QString notice = "|err WARNING: [nox:waiting] Trying again in 4 s (3 of 6)\\n"_s;
    HostSandbox::play("137: announce mp4%1|wait more|file mp4 12345|wait again%1|wait go\n"
                      "140: announce m4a|progress 50.0 100|wait go"_s.arg(notice));
    const auto growing = newDownload("137"_s, "a.mp4"_s);
    DownloadJob silent(m_url, SampleStreams::stream("140 MP4 dash"_s), m_sandbox->video("b.m4a"_s));
    QVector<TransferFigures> told;
    connect(&silent, &DownloadJob::figuresChanged, this, [&](const TransferFigures &figures) { told += figures; });
    growing->start();
    silent.start();
    QTRY_VERIFY_WITH_TIMEOUT(growing->waitingText().contains("4 s (3 of 6)"_s), HostSandbox::Timeout);
    m_sandbox->let("more"_s);
    QTRY_COMPARE_WITH_TIMEOUT(growing->waitingText(), QString(), HostSandbox::Timeout);
    m_sandbox->let("again"_s);
    QTRY_VERIFY_WITH_TIMEOUT(growing->waitingText().contains("4 s (3 of 6)"_s), HostSandbox::Timeout);
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
    const auto job = newDownload("137"_s);
    QStringList told;
    connect(job.get(), &DownloadJob::figuresChanged, this, [&](const TransferFigures &figures) {
        const QString text = figures.amountText(QLocale::c()) + figures.speedText(QLocale::c());
        if (told.isEmpty() || told.last() != text)
            told += text;
    });
    job->start();
    QTRY_VERIFY_WITH_TIMEOUT(told.contains("4 bytes"_s), HostSandbox::Timeout); // of the joined file
    m_sandbox->let("on"_s);
    QTRY_VERIFY_WITH_TIMEOUT(told.last().startsWith("0:00:50"_s), HostSandbox::Timeout);
    m_sandbox->let("end"_s);
    QTRY_VERIFY_WITH_TIMEOUT(isEnded(*job), HostSandbox::Timeout);
    QCOMPARE(told.join(QLatin1Char('|')), "50 bytes / 120 bytes10 bytes/s||4 bytes|0:00:50 / 0:01:402.0x"_s);
}

void JobsTest::deletedRenewal_data()
{
    const TextTable row{"cleaning", "left"};
    row("removes its files", "rm \"$NOX_STAGE/begun\"; exit");
    row("does not end", ":", "begun");
}

/** The command of a job that is deleted has some time to remove its files. Then it is killed. */
void JobsTest::deletedRenewal()
{
    QFETCH(QString, cleaning);
    const QString command = m_sandbox->path("nox-renew-tool"_s);
    Files::write(command,
                 "#!/bin/sh\ntrap '" + cleaning.toUtf8()
                     + "' TERM\ntouch \"$NOX_STAGE/begun\"\n"
                       "while :; do sleep 300 & wait; done\n");
    QVERIFY(QFile::setPermissions(command, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    const QByteArray oldPath = qgetenv("PATH");
    qputenv("PATH", QFile::encodeName(m_sandbox->path({})) + ':' + oldPath);
    m_job = std::make_unique<ToolRenewalJob>();
    m_job->start();
    qputenv("PATH", oldPath);
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_sandbox->path("notes/begun"_s)), HostSandbox::Timeout);
    m_job.reset();
    QVERIFY(m_sandbox->isQuiet());
    QTEST(Files::names(m_sandbox->path("notes"_s)).join(QLatin1Char(' ')), "left");
}

QTEST_GUILESS_MAIN(JobsTest)
#include "JobsTest.moc"
