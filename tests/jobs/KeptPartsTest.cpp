#include "tests/jobs/HostSandbox.h"
#include "tests/jobs/SampleStreams.h"
#include "tests/support/TextTable.h"
#include "tests/util/Rows.h"

#include <nox/NoxWebMediaJobs.h>

#include <QDir>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Nox;

namespace {

const QString url = "http://x/"_s;

bool isEnded(const Job &job)
{
    return job.state() == Job::Ended;
}

void setAge(const QString &path, int days)
{
    const time_t then = QDateTime::currentSecsSinceEpoch() - days * 86400LL;
    const timespec times[] = {{then, 0}, {then, 0}};
    QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
}

} // namespace

/** Downloads that keep what they have, with stand-ins for the external programs. */
class KeptPartsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void ends_data();
    void ends();
    void goesOn_data();
    void goesOn();
    void takenName();
    void fullFigures();
    void abandoned_data();
    void abandoned();
    void discarded();
    void damagedRecords_data();
    void damagedRecords();

private:
    std::unique_ptr<DownloadJob> newJob(const QString &stream = "137 MP4 1280x720 dash +140"_s,
                                        const QString &file = "clip.mp4"_s) const;
    void leaveParts() const;
    QString hiddenFolder() const { return m_sandbox->video(m_sandbox->files().filter(".nox-"_s).value(0)); }

    std::unique_ptr<HostSandbox> m_sandbox;
};

void KeptPartsTest::init()
{
    m_sandbox = std::make_unique<HostSandbox>();
    HostSandbox::installStandIns();
    HostSandbox::play({});
}

void KeptPartsTest::cleanup()
{
    QTRY_VERIFY_WITH_TIMEOUT(m_sandbox->isQuiet(), HostSandbox::Timeout);
    m_sandbox.reset();
}

std::unique_ptr<DownloadJob> KeptPartsTest::newJob(const QString &stream, const QString &file) const
{
    auto job = std::make_unique<DownloadJob>(url, SampleStreams::stream(stream), m_sandbox->video(file));
    job->setKeepsParts(true);
    return job;
}

/** As a download leaves them that failed. */
void KeptPartsTest::leaveParts() const
{
    HostSandbox::play("137: touch parts/a.part|exit 1"_s);
    const auto job = newJob();
    job->start();
    QTRY_VERIFY_WITH_TIMEOUT(isEnded(*job), HostSandbox::Timeout);
    QVERIFY(job->hasParts());
}

void KeptPartsTest::ends_data()
{
    // What the host does while the stand-in hangs that has the key, and what is left of the parts then.
    const TextTable row{"scenario", "key", "action", "outcome", "left"};
    const char some[] = "137: touch parts/a.part|announce mp4|hang";
    row("paused", some, "137", "pause", "Paused", "parts");
    row("paused with nothing fetched", "137: announce mp4|hang", "137", "pause", "Paused", "");
    row("paused in the second stream", "137: touch parts/a.part|announce mp4\n140: announce m4a|hang", "140", "pause",
        "Paused", "parts");
    row("paused while joining", "137: touch parts/a.part|announce mp4\nffmpeg: write half|hang", "ffmpeg", "pause",
        "Paused", "parts");
    row("paused, without parts", some, "137", "forget pause", "OtherError", "");
    row("paused before the start", some, "", "pause", "Paused", "");
    row("cancelled", some, "137", "cancel", "Cancelled", "");
    row("paused, then cancelled", some, "137", "pause cancel", "Cancelled", "");
    row("cancelled, then paused", some, "137", "cancel pause", "Cancelled", "");
    row("deleted", some, "137", "delete", "", "parts");
    row("cancelled, then deleted", some, "137", "cancel delete", "", "");
    row("failed", "137: touch parts/a.part|err ERROR: [nox:network] x\\n|exit 1", "", "", "NoNetwork", "parts");
    row("failed with nothing fetched", "137: exit 1", "", "", "OtherError", "");
    row("failed in the second stream", "137: touch parts/a.part|announce mp4\n140: err ERROR: [nox:login] x\\n|exit 1",
        "", "", "LoginNeeded", "parts");
    row("failed while joining", "137: touch parts/a.part|announce mp4\nffmpeg: write half|exit 1", "", "",
        "ConversionFailed", "parts");
    row("success", "137: touch parts/a.part|announce mp4", "", "", "NoError", "");
}

// A job has one outcome, and leaves its parts or nothing.
void KeptPartsTest::ends()
{
    QFETCH(QString, scenario);
    QFETCH(QString, key);
    QFETCH(QString, action);
    QFETCH(QString, outcome);
    QFETCH(QString, left);
    HostSandbox::play(scenario);
    auto job = newJob();
    QStringList outcomes;
    bool hasParts = false;
    connect(job.get(), &Job::finished, this, [&](Job *ended) {
        outcomes += QString::fromLatin1(QMetaEnum::fromType<Job::Error>().valueToKey(ended->error()));
        hasParts = static_cast<DownloadJob *>(ended)->hasParts();
    });
    const QStringList steps = action.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (steps.value(0) == "forget"_s) {
        job->setKeepsParts(false);
        HostSandbox::play("137: announce mp4|hang"_s);
        outcome = "Cancelled"_s;
    }
    if (!key.isEmpty() || action.isEmpty())
        job->start();
    if (!key.isEmpty())
        QTRY_VERIFY_WITH_TIMEOUT(m_sandbox->hangs(key), HostSandbox::Timeout);
    for (const QString &step : steps) {
        if (step == "pause"_s)
            job->pause();
        else if (step == "cancel"_s)
            job->cancel();
        else if (step == "delete"_s)
            job.reset();
    }
    QTRY_VERIFY_WITH_TIMEOUT(job == nullptr || isEnded(*job), HostSandbox::Timeout);
    QTRY_VERIFY_WITH_TIMEOUT(m_sandbox->isQuiet(), HostSandbox::Timeout);
    QCOMPARE(outcomes.join(QLatin1Char(' ')), outcome);
    QStringList expected = outcome == "NoError"_s ? QStringList("clip.mp4"_s) : QStringList();
    if (left.isEmpty()) {
        QCOMPARE(m_sandbox->files(), expected);
    } else {
        QVERIFY(hasParts || job == nullptr);
        QCOMPARE(m_sandbox->files().size(), 1);
        // Nothing but the parts, which others may not see.
        QCOMPARE(QDir(hiddenFolder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 QStringList("parts"_s));
        QCOMPARE(int(QFile::permissions(hiddenFolder() + "/parts"_s)) & 0x77, 0);
        QCOMPARE(DownloadJob::interrupted(m_sandbox->videos()).size(), 1);
    }
    QVERIFY(left.isEmpty() || QFile::exists(hiddenFolder() + "/parts/a.part"_s));
}

void KeptPartsTest::goesOn_data()
{
    const TextTable row{"stream", "file", "taken", "audio"}; // whether the parts are taken over
    row("same", "137 MP4 9x9 dash +140", "clip.mp4", "yes");
    row("other file", "137 MP4 9x9 dash +140", "other.mp4", "yes");
    row("other audio", "137 MP4 9x9 dash +251", "clip.mp4", "no");
    row("other stream", "136 MP4 9x9 dash +140", "clip.mp4", "no");
    row("from the record", "", "clip.mp4", "yes");
}

void KeptPartsTest::goesOn()
{
    QFETCH(QString, stream);
    QFETCH(QString, file);
    QFETCH(QString, taken);
    leaveParts();
    const QString folder = hiddenFolder();
    const QList<QJsonObject> records = DownloadJob::interrupted(m_sandbox->videos());
    QCOMPARE(records.size(), 1);
    QVERIFY(QFile(folder + "/rest"_s).open(QIODevice::WriteOnly)); // of a host that was killed

    HostSandbox::play("137: mark on|wait go|announce mp4\n136: mark on|wait go|announce mp4"_s);
    const auto job = stream.isEmpty() ? std::make_unique<DownloadJob>(records.constFirst()) : newJob(stream, file);
    QVERIFY(job->keepsParts());
    job->start();
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_sandbox->path("notes/mark.on"_s)), HostSandbox::Timeout);
    const bool isTaken = taken == "yes"_s;
    QCOMPARE(m_sandbox->files().size(), isTaken ? 1 : 2);
    QCOMPARE(DownloadJob::interrupted(m_sandbox->videos()).size(), isTaken ? 0 : 1);
    QVERIFY(QFile::exists(folder + "/parts/a.part"_s) && !QFile::exists(folder + "/rest"_s));
    DownloadJob::discard(job->record()); // of no effect while a job uses them
    m_sandbox->let("go"_s);
    QTRY_VERIFY_WITH_TIMEOUT(isEnded(*job), HostSandbox::Timeout);
    QCOMPARE(job->errorString(), QString());
    QCOMPARE(m_sandbox->files().size(), isTaken ? 1 : 2);
    QCOMPARE(job->filePath(), m_sandbox->video(file));
}

// A file of that name has come meanwhile: it is not replaced.
void KeptPartsTest::takenName()
{
    leaveParts();
    const QJsonObject record = DownloadJob::interrupted(m_sandbox->videos()).value(0);
    QVERIFY(QFile(m_sandbox->video("clip.mp4"_s)).open(QIODevice::WriteOnly));
    HostSandbox::play({});
    DownloadJob job(record);
    job.start();
    QTRY_VERIFY_WITH_TIMEOUT(isEnded(job), HostSandbox::Timeout);
    QCOMPARE(m_sandbox->files(), (QStringList{"clip(1).mp4"_s, "clip.mp4"_s}));
}

// The figures of a download that goes on begin with what is there.
void KeptPartsTest::fullFigures()
{
    leaveParts();
    HostSandbox::play("137: wait go|announce mp4"_s);
    const auto job = newJob();
    QSignalSpy figures(job.get(), &DownloadJob::figuresChanged);
    job->start();
    QTRY_VERIFY_WITH_TIMEOUT(!figures.isEmpty(), HostSandbox::Timeout);
    QCOMPARE(job->figures().processed(), qint64(3));
    job->pause();
    QTRY_VERIFY_WITH_TIMEOUT(isEnded(*job), HostSandbox::Timeout);
}

void KeptPartsTest::abandoned_data()
{
    const TextTable row{"change", "stays"};
    row("young", "", "yes");
    row("a month ago", "29", "yes");
    row("long ago", "32", "no");
    row("no record", "record", "no");
    row("damaged record", "damage", "no");
    row("a link in its place, after a power cut", "link lock", "no");
    row("power cut", "lock", "yes");
}

// Parts that nobody can go on with, or has gone on with for long, do not pile up.
void KeptPartsTest::abandoned()
{
    QFETCH(QString, change);
    QFETCH(QString, stays);
    leaveParts();
    const QString parts = hiddenFolder() + "/parts"_s;
    const QString record = parts + "/record.json"_s;
    QVERIFY(QFile::exists(record));
    if (change == "record"_s) {
        QVERIFY(QFile::remove(record));
    } else if (change == "damage"_s) {
        QVERIFY(QFile::resize(record, 20));
    } else if (change.startsWith("link"_s)) {
        QVERIFY(QFile::rename(parts, m_sandbox->path("elsewhere"_s)));
        QVERIFY(QFile::link(m_sandbox->path("elsewhere"_s), parts));
    }
    if (change.contains("lock"_s)) {
        const QString lock = hiddenFolder() + "/.lock"_s;
        QVERIFY(QFile(lock).open(QIODevice::WriteOnly));
        setAge(lock, 1);
    }
    if (const int days = change.toInt(); days > 0) {
        setAge(record, days);
        setAge(parts, days);
    }
    QCOMPARE(DownloadJob::interrupted(m_sandbox->videos()).size(),
             change.toInt() > 0 || change.isEmpty() || change == "lock"_s ? 1 : 0);
    HostSandbox::play({});
    DownloadJob other(url, SampleStreams::stream("18 MP4 9x9"_s), m_sandbox->video("other.mp4"_s));
    other.start();
    QTRY_VERIFY_WITH_TIMEOUT(isEnded(other), HostSandbox::Timeout);
    QCOMPARE(m_sandbox->files().size(), stays == "yes"_s ? 2 : 1);
    QCOMPARE(QFile::exists(m_sandbox->path("elsewhere/a.part"_s)), change.startsWith("link"_s));
}

// Only the parts of that download, and not those of the same streams for another file.
void KeptPartsTest::discarded()
{
    leaveParts();
    const QJsonObject record = DownloadJob::interrupted(m_sandbox->videos()).value(0);
    DownloadJob::discard(newJob("137 MP4 9x9 dash +140"_s, "other.mp4"_s)->record());
    DownloadJob::discard({});
    QCOMPARE(m_sandbox->files().size(), 1);
    DownloadJob::discard(record);
    QCOMPARE(m_sandbox->files(), QStringList());
}

void KeptPartsTest::damagedRecords_data()
{
    const TextTable row{"record", "error"};
    row("empty", "{}", "OtherError");
    row("other version", R"({"version":2,"url":"http://x/","destination":"/a","stream":{"code":"1"}})", "OtherError");
    row("no stream", R"({"version":1,"url":"http://x/","destination":"/a","stream":[]})", "OtherError");
    row("relative path", R"({"version":1,"url":"http://x/","destination":"a","stream":{"code":"1"}})", "OtherError");
    row("no address", R"({"version":1,"url":"--exec=x","destination":"/a","stream":{"code":"1"}})", "AddressError");
    row("option as code", R"({"version":1,"url":"http://x/","destination":"/a","stream":{"code":"--exec"}})",
        "NothingToDownload");
    row("odd numbers",
        R"({"version":1,"url":"http://x/","destination":"/none/a","duration":-1,"stream":{"code":"1","width":1e99,)"
        R"("height":"x","size":-1e300}})",
        "DestinationError");
}

void KeptPartsTest::damagedRecords()
{
    QFETCH(QString, record);
    DownloadJob job(QJsonDocument::fromJson(record.toUtf8()).object());
    QSignalSpy finished(&job, &Job::finished);
    job.start();
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, HostSandbox::Timeout);
    QTEST(QString::fromLatin1(QMetaEnum::fromType<Job::Error>().valueToKey(job.error())), "error");
    QVERIFY(!job.errorString().isEmpty());
    QVERIFY(job.stream().getSize() == 0 && !job.stream().getVResolution().isValid());
    QCOMPARE(m_sandbox->runCount(), 0);
}

QTEST_GUILESS_MAIN(KeptPartsTest)
#include "KeptPartsTest.moc"
