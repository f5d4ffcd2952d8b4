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
    void figures();
    void joiningFigures();
    void brokenTool();
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

// A tool that tells no length: the file's growth counts. One that falls silent: its last speed does not stay.
void HostJobTest::figures()
{
    qputenv("NOX_SCENARIO", "137: announce mp4|file mp4 12345|wait go\n140: announce m4a|progress 50.0 100|wait go");
    const auto growing = newJob();
    const auto silent = newJob();
    TransferFigures growth;
    QVector<TransferFigures> told;
    connect(growing.get(), &DownloadJob::progressed, this, [&](const TransferFigures &figures) { growth = figures; });
    connect(silent.get(), &DownloadJob::progressed, this, [&](const TransferFigures &figures) { told += figures; });
    auto alone = dashStream("140");
    alone.setPreferredDashAudioYdCode({});
    growing->start(QStringLiteral("http://x/"), dashStream("137"), path("out/a.mp4"));
    silent->start(QStringLiteral("http://x/"), alone, path("out/b.m4a"));
    QTRY_COMPARE_WITH_TIMEOUT(growth.done(), qint64(5), patienceMs);
    QCOMPARE(growth.total(), qint64(0));
    QTRY_COMPARE_WITH_TIMEOUT(told.size(), 2, patienceMs);
    QVERIFY(told.first().speed() > 0 && told.first().secondsLeft() > 0);
    QVERIFY(told.last().speed() == 0 && told.last().done() == told.first().done());
}

// Joining begins without figures, and then has ffmpeg's own.
void HostJobTest::joiningFigures()
{
    qputenv("NOX_SCENARIO",
            "137: announce mp4|progress 50.0 100\n"
            "ffmpeg: err   Duration: 00:01:40.00\\n|write half|wait on|"
            "err time=00:00:50.00 bitrate=1 speed=2.0x\\r|wait end|merge");
    const auto job = newJob();
    QSignalSpy finished(job.get(), &DownloadJob::finished);
    QStringList told;
    connect(job.get(), &DownloadJob::phaseChanged, this,
            [&](DownloadJob::Phase phase) { told += QStringLiteral("phase %1").arg(int(phase)); });
    connect(job.get(), &DownloadJob::progressed, this, [&](const TransferFigures &figures) {
        const QString text = figures.amountText(QLocale::c()) + figures.speedText(QLocale::c());
        if (told.last() != text)
            told += text;
    });
    const auto mark = [this](const char *name) {
        QVERIFY(QFile(path("notes/") + QLatin1String(name)).open(QIODevice::WriteOnly));
    };
    job->start(QStringLiteral("http://x/"), dashStream("137"), path("out/clip.mp4"));
    QTRY_VERIFY_WITH_TIMEOUT(told.contains(QStringLiteral("4 bytes")), patienceMs); // of the joined file
    mark("mark.on");
    QTRY_VERIFY_WITH_TIMEOUT(told.last().startsWith(QLatin1String("0:00:50")), patienceMs);
    mark("mark.end");
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, patienceMs);
    const QStringList expected{QStringLiteral("phase 1"),
                               QStringLiteral("50 bytes / 120 bytes10 bytes/s"),
                               QStringLiteral("phase 2"),
                               QStringLiteral("phase 3"),
                               QString(),
                               QStringLiteral("4 bytes"),
                               QStringLiteral("0:00:50 / 0:01:402.0x")};
    QCOMPARE(told, expected);
}

void HostJobTest::brokenTool()
{
    qputenv("NOX_SCENARIO", "137: err zlib.error: Error -3\\n|exit 1\ndump: err zlib.error: Error -3\\n|exit 1");
    const auto download = newJob();
    ExtractionJob extraction(ToolSetup(path("yt.zip"), path("cache")));
    QSignalSpy downloadEnd(download.get(), &DownloadJob::failed);
    QSignalSpy extractionEnd(&extraction, &ExtractionJob::failed);
    download->start(QStringLiteral("http://x/"), dashStream("137"), path("out/clip.mp4"));
    extraction.start(QStringLiteral("http://x/"));
    QTRY_VERIFY_WITH_TIMEOUT(downloadEnd.size() == 1 && extractionEnd.size() == 1, patienceMs);
    QCOMPARE(downloadEnd.first().mid(1), extractionEnd.first());
    QVERIFY(extractionEnd.first().first().toString().contains(QLatin1String("damaged")));
    QCOMPARE(extractionEnd.first().last().toString(), QStringLiteral("zlib.error: Error -3"));
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
