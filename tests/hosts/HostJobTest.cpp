#include "hosts/common/DownloadJob.h"
#include "hosts/common/ExtractionJob.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace NoxHost;

namespace {

constexpr int patienceMs = 30000;

Nox::MediaProfile dashStream(const char *code)
{
    Nox::MediaProfile stream;
    stream.setName(QString::fromLatin1(code));
    stream.setFormat(QStringLiteral("MP4"));
    stream.setMediaType(Nox::MEDIA_TYPE_VIDEO);
    stream.setDash(true);
    stream.setPreferredDashAudioYdCode(QStringLiteral("140"));
    return stream;
}

} // namespace

/** The jobs as a program with a window uses them: several at once, dropped at any time. */
class HostJobTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void sideBySide();
    void dropped();
    void cancelledBeforeStart();
    void cancelledTwice();
    void extractionDropped();

private:
    std::unique_ptr<DownloadJob> newJob() const;
    QString path(const char *name) const;
    QStringList left() const;

    std::unique_ptr<QTemporaryDir> m_root;
};

void HostJobTest::initTestCase()
{
    const QDir programs(QCoreApplication::applicationDirPath());
    QVERIFY(programs.mkpath(QStringLiteral("python3.10/bin")));
    for (const char *name : {"python3.10/bin/python3.10", "ffmpeg"}) {
        const QString file = programs.filePath(QString::fromLatin1(name));
        QFile::remove(file);
        QVERIFY(QFile::link(QStringLiteral(NOX_FAKE_PROGRAM), file));
    }
}

void HostJobTest::init()
{
    m_root = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(m_root->path()).mkpath(QStringLiteral("out")) && QDir(m_root->path()).mkpath(QStringLiteral("notes")));
    qputenv("NOX_STAGE", QFile::encodeName(path("notes")));
    qputenv("NOX_SCENARIO", "137: announce mp4|progress 50.0 100\nslow: announce mp4|hang\ndump: hang");
    qputenv("TMPDIR", QFile::encodeName(m_root->path()));
}

void HostJobTest::cleanup()
{
    m_root.reset();
}

std::unique_ptr<DownloadJob> HostJobTest::newJob() const
{
    return std::make_unique<DownloadJob>(ToolSetup(path("yt.zip"), path("cache")));
}

QString HostJobTest::path(const char *name) const
{
    return m_root->filePath(QString::fromLatin1(name));
}

QStringList HostJobTest::left() const
{
    return QDir(path("out")).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

void HostJobTest::sideBySide()
{
    const auto first = newJob();
    const auto second = newJob();
    QSignalSpy firstEnd(first.get(), &DownloadJob::finished);
    QSignalSpy secondEnd(second.get(), &DownloadJob::finished);
    QSignalSpy phases(first.get(), &DownloadJob::phaseChanged);
    QSignalSpy figures(first.get(), &DownloadJob::progressed);
    for (const auto *job : {&first, &second})
        (*job)->start(QStringLiteral("http://x/"), dashStream("137"), path("out/clip.mp4"));
    QTRY_VERIFY_WITH_TIMEOUT(firstEnd.size() == 1 && secondEnd.size() == 1, patienceMs);
    QCOMPARE(left(), (QStringList{QStringLiteral("clip(1).mp4"), QStringLiteral("clip.mp4")}));
    QVERIFY(firstEnd.first().first() != secondEnd.first().first());
    QCOMPARE(phases.size(), 3); // video, audio, joining
    QCOMPARE(first->phase(), DownloadJob::Phase::Joining);
    QVERIFY(figures.size() >= 2);
}

void HostJobTest::dropped()
{
    auto job = newJob();
    job->start(QStringLiteral("http://x/"), dashStream("slow"), path("out/clip.mp4"));
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(path("notes/mark.hang.slow")), patienceMs);
    QCOMPARE(left().size(), 1);
    job.reset();
    QCOMPARE(left(), QStringList());
}

void HostJobTest::cancelledBeforeStart()
{
    const auto job = newJob();
    QSignalSpy cancelled(job.get(), &DownloadJob::cancelled);
    job->cancel();
    job->start(QStringLiteral("http://x/"), dashStream("137"), path("out/clip.mp4"));
    QCOMPARE(cancelled.size(), 0); // from the event loop only
    QTRY_COMPARE_WITH_TIMEOUT(cancelled.size(), 1, patienceMs);
    QVERIFY(!QFile::exists(path("notes/runs")));
}

void HostJobTest::cancelledTwice()
{
    const auto job = newJob();
    QSignalSpy cancelled(job.get(), &DownloadJob::cancelled);
    QSignalSpy failed(job.get(), &DownloadJob::failed);
    job->start(QStringLiteral("http://x/"), dashStream("slow"), path("out/clip.mp4"));
    job->cancel(); // before the tool has done anything
    job->cancel();
    QTRY_COMPARE_WITH_TIMEOUT(cancelled.size(), 1, patienceMs);
    QTest::qWait(50);
    QCOMPARE(cancelled.size() + failed.size(), 1);
    QCOMPARE(left(), QStringList());
}

void HostJobTest::extractionDropped()
{
    auto job = std::make_unique<ExtractionJob>(ToolSetup(path("yt.zip"), path("cache")));
    QSignalSpy failed(job.get(), &ExtractionJob::failed);
    job->start(QStringLiteral("http://x/"));
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(path("notes/mark.hang.dump")), patienceMs);
    job.reset();
    QCOMPARE(failed.size(), 0);
}

QTEST_GUILESS_MAIN(HostJobTest)
#include "HostJobTest.moc"
