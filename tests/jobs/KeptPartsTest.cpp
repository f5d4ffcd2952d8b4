#include "tests/jobs/JobTest.h"
#include "tests/jobs/SampleStreams.h"
#include "tests/support/LogFile.h"

#include <fcntl.h>
#include <sys/stat.h>

using namespace Nox;

namespace {

void setAge(const QString &path, int days)
{
    const time_t then = QDateTime::currentSecsSinceEpoch() - days * 86400LL;
    const timespec times[] = {{then, 0}, {then, 0}};
    QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
}

} // namespace

/** The ends of downloads, above all of those that keep what they have. */
class KeptPartsTest : public JobTest
{
    Q_OBJECT

private Q_SLOTS:
    void ends_data();
    void ends();
    void goesOn_data();
    void goesOn();
    void abandoned_data();
    void abandoned();

private:
    std::unique_ptr<DownloadJob> newJob(const QString &stream = "137 MP4 1280x720 dash +140"_s,
                                        const QString &file = "clip.mp4"_s) const;
    void leaveParts() const;
    QString hiddenFolder() const { return m_sandbox->video(m_sandbox->files().filter(".nox-"_s).value(0)); }
};

std::unique_ptr<DownloadJob> KeptPartsTest::newJob(const QString &stream, const QString &file) const
{
    auto job = std::make_unique<DownloadJob>(m_url, SampleStreams::stream(stream), m_sandbox->video(file));
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
    // What the host does, "start" up to the hang of the stand-in with the key; and the files that are left then.
    const TextTable row{"scenario", "key", "calls", "outcome", "left"};
    const char some[] = "137: touch parts/a.part|announce mp4|hang";
    row("paused", some, "137", "start pause", "Paused", "parts");
    row("paused with nothing fetched", "137: announce mp4|hang", "137", "start pause", "Paused");
    row("paused while joining", "137: touch parts/a.part|announce mp4\nffmpeg: write half|hang", "ffmpeg",
        "start pause", "Paused", "parts");
    row("paused, without parts", "137: announce mp4|hang", "137", "forget start pause", "Cancelled");
    row("paused before the start", "", "", "pause", "Paused");
    row("cancelled before the start", "", "", "cancel start", "Cancelled");
    row("started twice", "", "", "start start", "NoError", "clip.mp4");
    row("cancelled", some, "137", "start cancel", "Cancelled");
    row("paused, then cancelled", some, "137", "start pause cancel", "Cancelled");
    row("cancelled, then paused", some, "137", "start cancel pause", "Cancelled");
    row("deleted", some, "137", "start delete", "", "parts");
    row("cancelled, then deleted", some, "137", "start cancel delete", "");
    row("failed", "137: touch parts/a.part|fail ERROR: [nox:network] x", "", "start", "NoNetwork", "parts");
    row("failed with nothing fetched", "137: exit 1", "", "start", "OtherError");
    row("failed while joining", "137: touch parts/a.part|announce mp4\nffmpeg: write half|exit 1", "", "start",
        "ConversionFailed", "parts");
    row("success", "137: touch parts/a.part|announce mp4", "", "start", "NoError", "clip.mp4");
}

// A job has one outcome, from the event loop only, and leaves its parts or nothing. A second start is logged.
void KeptPartsTest::ends()
{
    QFETCH(QString, scenario);
    QFETCH(QString, key);
    QFETCH(QString, calls);
    QFETCH(QString, left);
    const LogFile log(m_sandbox->path("log"_s));
    HostSandbox::play(scenario);
    auto job = newJob();
    QStringList outcomes;
    bool hasParts = false;
    connect(job.get(), &Job::finished, this, [&](Job *ended) {
        outcomes += nameOf(ended->error());
        hasParts = static_cast<DownloadJob *>(ended)->hasParts();
    });
    for (const QByteArray &call : calls.toLatin1().split(' ')) {
        if (call == "forget")
            job->setKeepsParts(false);
        else if (call == "delete")
            job.reset();
        else
            QVERIFY(QMetaObject::invokeMethod(job.get(), call.constData()));
        QTRY_VERIFY_WITH_TIMEOUT(call != "start" || key.isEmpty() || m_sandbox->hangs(key), HostSandbox::Timeout);
    }
    QCOMPARE(outcomes, QStringList());
    QTRY_VERIFY_WITH_TIMEOUT(job == nullptr || isEnded(*job), HostSandbox::Timeout);
    QTRY_VERIFY_WITH_TIMEOUT(m_sandbox->isQuiet(), HostSandbox::Timeout);
    QTEST(outcomes.join(QLatin1Char(' ')), "outcome");
    QVERIFY(calls.contains("start "_s) || calls.startsWith("start"_s) || m_sandbox->runCount() == 0);
    QCOMPARE(log.records(LOG_ERROR).filter("a job is started once"_s).size(), calls.endsWith(" start"_s) ? 1 : 0);
    if (left != "parts"_s) {
        QCOMPARE(m_sandbox->files().join(QLatin1Char(' ')), left);
        return;
    }
    QVERIFY(hasParts || job == nullptr);
    QCOMPARE(m_sandbox->files().size(), 1);
    // Nothing but the parts, which others may not see.
    const QDir folder(hiddenFolder());
    QCOMPARE(Files::names(folder.path()), QStringList("parts"_s));
    QCOMPARE(int(QFile::permissions(folder.filePath("parts"_s))) & 0x77, 0);
    QVERIFY(folder.exists("parts/a.part"_s));
    QCOMPARE(DownloadJob::interrupted(m_sandbox->videos()).size(), 1);
}

void KeptPartsTest::goesOn_data()
{
    const TextTable row{"stream", "file", "taken"}; // whether the parts are taken over
    row("same", "137 MP4 9x9 dash +140", "clip.mp4", "yes");
    row("other file", "137 MP4 9x9 dash +140", "other.mp4", "yes");
    row("other audio", "137 MP4 9x9 dash +251", "clip.mp4", "no");
    row("other stream", "136 MP4 9x9 dash +140", "clip.mp4", "no");
    row("from the record, and the file's name is taken", "", "clip(1).mp4", "yes");
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
    QVERIFY(QDir().mkpath(folder + "/rest/.rest"_s)); // of a host that was killed
    if (stream.isEmpty())
        Files::write(m_sandbox->video("clip.mp4"_s));

    HostSandbox::play("137: mark on|wait go|announce mp4\n136: mark on|wait go|announce mp4"_s);
    const auto job = stream.isEmpty() ? std::make_unique<DownloadJob>(records.constFirst()) : newJob(stream, file);
    QVERIFY(job->keepsParts());
    job->start();
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_sandbox->path("notes/mark.on"_s)), HostSandbox::Timeout);
    const bool isTaken = taken == "yes"_s;
    QTRY_COMPARE_WITH_TIMEOUT(job->figures().processed(), qint64(isTaken ? 3 : 0), HostSandbox::Timeout);
    const auto fileCount = (isTaken ? 1 : 2) + (stream.isEmpty() ? 1 : 0);
    QCOMPARE(m_sandbox->files().size(), fileCount);
    QCOMPARE(DownloadJob::interrupted(m_sandbox->videos()).size(), isTaken ? 0 : 1);
    QVERIFY(QFile::exists(folder + "/parts/a.part"_s) && !QFile::exists(folder + "/rest"_s));
    DownloadJob::discard(job->record()); // of no effect while a job uses them
    m_sandbox->let("go"_s);
    QTRY_VERIFY_WITH_TIMEOUT(isEnded(*job), HostSandbox::Timeout);
    QCOMPARE(job->errorString(), QString());
    QCOMPARE(m_sandbox->files().size(), fileCount);
    QCOMPARE(job->filePath(), m_sandbox->video(file));
    DownloadJob::discard(newJob("137 MP4 9x9 dash +140"_s, "other file.mp4"_s)->record());
    DownloadJob::discard({});
    QCOMPARE(m_sandbox->files().size(), fileCount);
    DownloadJob::discard(records.constFirst());
    QCOMPARE(m_sandbox->files().size(), fileCount - (isTaken ? 0 : 1));
}

void KeptPartsTest::abandoned_data()
{
    const TextTable row{"change", "found", "left"}; // numbers of folders, before and after the next download
    row("a month ago", "29", "1", "1");
    row("long ago", "32", "1", "0");
    row("no record", "record", "0", "0");
    row("damaged record", "damage", "0", "0");
    row("a link in its place, after a power cut", "link lock", "0", "0");
    row("power cut", "lock", "1", "1");
}

// Parts that nobody can go on with, or has gone on with for long, do not pile up.
void KeptPartsTest::abandoned()
{
    QFETCH(QString, change);
    leaveParts();
    const QString parts = hiddenFolder() + "/parts"_s;
    const QString record = parts + "/record.json"_s;
    const QString lock = hiddenFolder() + "/.lock"_s;
    const QString elsewhere = m_sandbox->path("elsewhere"_s);
    if (const int days = change.toInt(); days > 0) {
        setAge(record, days);
        setAge(parts, days);
    } else if (change == "record"_s) {
        QVERIFY(QFile::remove(record));
    } else if (change == "damage"_s) {
        QVERIFY(QFile::resize(record, 20));
    } else {
        Files::write(lock);
        setAge(lock, 1);
    }
    const bool isLink = change.startsWith("link"_s);
    QVERIFY(!isLink || (QFile::rename(parts, elsewhere) && QFile::link(elsewhere, parts)));
    QTEST(QString::number(DownloadJob::interrupted(m_sandbox->videos()).size()), "found");
    HostSandbox::play({});
    DownloadJob other(m_url, SampleStreams::stream("18 MP4 9x9"_s), m_sandbox->video("other.mp4"_s));
    other.start();
    QTRY_VERIFY_WITH_TIMEOUT(isEnded(other), HostSandbox::Timeout);
    QTEST(QString::number(m_sandbox->files().size() - 1), "left");
    QCOMPARE(QFile::exists(elsewhere + "/a.part"_s), isLink);
}

QTEST_GUILESS_MAIN(KeptPartsTest)
#include "KeptPartsTest.moc"
