#include "hosts/common/DownloadJob.h"
#include "hosts/common/ExtractionJob.h"
#include "tests/hosts/HostSandbox.h"
#include "tests/hosts/SampleStreams.h"
#include "tests/util/Rows.h"

#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace NoxHost;

namespace {

/** A video that is joined with the audio 140. */
Nox::MediaProfile dashStream(const char *code)
{
    return SampleStreams::stream(QLatin1String(code) + " MP4 dash +140"_s);
}

} // namespace

/** The jobs as a program with a window uses them: several at once, dropped at any time. */
class HostJobTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void sideBySide();
    void figures();
    void joiningFigures();
    void brokenTool();
    void dropped();
    void cancelledBeforeStart();
    void cancelledTwice();

private:
    static std::unique_ptr<DownloadJob> newJob() { return std::make_unique<DownloadJob>(ToolSetup()); }

    std::unique_ptr<HostSandbox> m_stage;
};

void HostJobTest::init()
{
    m_stage = std::make_unique<HostSandbox>();
    HostSandbox::installStandIns();
    HostSandbox::play("137: announce mp4|progress 50.0 100\nslow: announce mp4|hang\ndump: hang"_s);
}

void HostJobTest::cleanup()
{
    QTRY_VERIFY_WITH_TIMEOUT(m_stage->isQuiet(), HostSandbox::Patience);
    m_stage.reset();
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
        (*job)->start("http://x/"_s, dashStream("137"), m_stage->video("clip.mp4"_s));
    QTRY_VERIFY_WITH_TIMEOUT(firstEnd.size() == 1 && secondEnd.size() == 1, HostSandbox::Patience);
    QCOMPARE(m_stage->files(), (QStringList{"clip(1).mp4"_s, "clip.mp4"_s}));
    QVERIFY(firstEnd.first().first() != secondEnd.first().first());
    QCOMPARE(phases.size(), 3); // video, audio, joining
    QCOMPARE(first->phase(), DownloadJob::Phase::Joining);
    QVERIFY(figures.size() >= 2);
}

// A tool that tells no length: the file's growth counts. One that falls silent: its last speed does not stay.
void HostJobTest::figures()
{
    HostSandbox::play("137: announce mp4|file mp4 12345|wait go\n140: announce m4a|progress 50.0 100|wait go"_s);
    const auto growing = newJob();
    const auto silent = newJob();
    TransferFigures growth;
    QVector<TransferFigures> told;
    connect(growing.get(), &DownloadJob::progressed, this, [&](const TransferFigures &figures) { growth = figures; });
    connect(silent.get(), &DownloadJob::progressed, this, [&](const TransferFigures &figures) { told += figures; });
    const auto alone = SampleStreams::stream("140 MP4 dash"_s);
    growing->start("http://x/"_s, dashStream("137"), m_stage->video("a.mp4"_s));
    silent->start("http://x/"_s, alone, m_stage->video("b.m4a"_s));
    QTRY_COMPARE_WITH_TIMEOUT(growth.done(), qint64(5), HostSandbox::Patience);
    QCOMPARE(growth.total(), qint64(0));
    QTRY_COMPARE_WITH_TIMEOUT(told.size(), 2, HostSandbox::Patience);
    QVERIFY(told.first().speed() > 0 && told.first().secondsLeft() > 0);
    QVERIFY(told.last().speed() == 0 && told.last().done() == told.first().done());
}

// Joining begins without figures, and then has ffmpeg's own.
void HostJobTest::joiningFigures()
{
    HostSandbox::play("137: announce mp4|progress 50.0 100\n"
                      "ffmpeg: err   Duration: 00:01:40.00\\n|write half|wait on|"
                      "err time=00:00:50.00 bitrate=1 speed=2.0x\\r|wait end|merge"_s);
    const auto job = newJob();
    QSignalSpy finished(job.get(), &DownloadJob::finished);
    QStringList told;
    connect(job.get(), &DownloadJob::phaseChanged, this,
            [&](DownloadJob::Phase phase) { told += "phase %1"_s.arg(int(phase)); });
    connect(job.get(), &DownloadJob::progressed, this, [&](const TransferFigures &figures) {
        const QString text = figures.amountText(QLocale::c()) + figures.speedText(QLocale::c());
        if (told.last() != text)
            told += text;
    });
    job->start("http://x/"_s, dashStream("137"), m_stage->video("clip.mp4"_s));
    QTRY_VERIFY_WITH_TIMEOUT(told.contains("4 bytes"_s), HostSandbox::Patience); // of the joined file
    m_stage->let("on"_s);
    QTRY_VERIFY_WITH_TIMEOUT(told.last().startsWith("0:00:50"_s), HostSandbox::Patience);
    m_stage->let("end"_s);
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, HostSandbox::Patience);
    const QStringList expected{"phase 1"_s, "50 bytes / 120 bytes10 bytes/s"_s, "phase 2"_s, "phase 3"_s, QString(),
                               "4 bytes"_s, "0:00:50 / 0:01:402.0x"_s};
    QCOMPARE(told, expected);
}

void HostJobTest::brokenTool()
{
    HostSandbox::play("137: err zlib.error: Error -3\\n|exit 1\ndump: err zlib.error: Error -3\\n|exit 1"_s);
    const auto download = newJob();
    ExtractionJob extraction{ToolSetup()};
    QSignalSpy downloadEnd(download.get(), &DownloadJob::failed);
    QSignalSpy extractionEnd(&extraction, &ExtractionJob::failed);
    download->start("http://x/"_s, dashStream("137"), m_stage->video("clip.mp4"_s));
    extraction.start("http://x/"_s);
    QTRY_VERIFY_WITH_TIMEOUT(downloadEnd.size() == 1 && extractionEnd.size() == 1, HostSandbox::Patience);
    QCOMPARE(downloadEnd.first().mid(1), extractionEnd.first());
    QVERIFY(extractionEnd.first().first().toString().contains("damaged"_s));
    QCOMPARE(extractionEnd.first().last().toString(), "zlib.error: Error -3"_s);
}

void HostJobTest::dropped()
{
    auto job = newJob();
    job->start("http://x/"_s, dashStream("slow"), m_stage->video("clip.mp4"_s));
    QTRY_VERIFY_WITH_TIMEOUT(m_stage->hangs("slow"_s), HostSandbox::Patience);
    QCOMPARE(m_stage->files().size(), 1);
    job.reset();
    QCOMPARE(m_stage->files(), QStringList());
}

void HostJobTest::cancelledBeforeStart()
{
    const auto job = newJob();
    QSignalSpy cancelled(job.get(), &DownloadJob::cancelled);
    job->cancel();
    job->start("http://x/"_s, dashStream("137"), m_stage->video("clip.mp4"_s));
    QCOMPARE(cancelled.size(), 0); // from the event loop only
    QTRY_COMPARE_WITH_TIMEOUT(cancelled.size(), 1, HostSandbox::Patience);
    QCOMPARE(m_stage->runCount(), 0);
}

void HostJobTest::cancelledTwice()
{
    const auto job = newJob();
    QSignalSpy cancelled(job.get(), &DownloadJob::cancelled);
    QSignalSpy failed(job.get(), &DownloadJob::failed);
    job->start("http://x/"_s, dashStream("slow"), m_stage->video("clip.mp4"_s));
    job->cancel(); // before the tool has done anything
    job->cancel();
    QTRY_COMPARE_WITH_TIMEOUT(cancelled.size(), 1, HostSandbox::Patience);
    QTest::qWait(50);
    QCOMPARE(cancelled.size() + failed.size(), 1);
    QCOMPARE(m_stage->files(), QStringList());
}

QTEST_GUILESS_MAIN(HostJobTest)
#include "HostJobTest.moc"
