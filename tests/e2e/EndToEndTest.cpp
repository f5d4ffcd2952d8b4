#include "tests/support/DemoPage.h"
#include "tests/support/Processes.h"
#include "tests/support/SignalLog.h"
#include "tests/support/TestMain.h"
#include "tests/support/TestSandbox.h"
#include "tests/util/Files.h"
#include "tests/util/Rows.h"

#include <nox/front/WebMediaDownloaderFactory.h>
#include <nox/model/MediaList.h>

#include <QProcess>
#include <QtTest>

#include <memory>

using namespace Nox;

/** The library with the real tool and the real ffmpeg, on a page that is served on the loopback address. */
class EndToEndTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data() { rows({"tool"}, {"yt.zip"_s, "plain-yt.zip"_s}); } // with its front, and without

    void initTestCase()
    {
        QVERIFY(m_page.serve());
        Logger::init(m_root.filePath("library.log"_s).toStdString(), LOG_DEBUG, LOG_OUT_FILE);
        const QString plain = QDir(QCoreApplication::applicationDirPath()).filePath("plain-yt.zip"_s);
        QCOMPARE(QProcess::execute(QStringLiteral(NOX_SCRIPTS "/make-tool-archive.py"), {plain, "--plain"_s}), 0);
        m_childCount = Processes::children().size();
    }

    void init()
    {
        QFETCH_GLOBAL(QString, tool);
        m_tool = QDir(QCoreApplication::applicationDirPath()).filePath(tool);
        m_videos = m_root.filePath("videos of "_s + tool);
        QVERIFY(QDir().mkpath(m_videos));
    }

    void extraction()
    {
        const std::unique_ptr<WebMediaInfoExtractor> extractor(m_factory->createExtractor(m_tool, m_cache));
        WebMediaInfo info = extractor->getMediaInfo(m_page.url());
        QVERIFY2(info.getTitle().startsWith("Open the café/bar? A clip"_s), qPrintable(info.getTitle()));
        QCOMPARE(info.getThumbnailUrl(), m_page.url() + "mqdefault.jpg"_s);

        info.sortProfileDesc();
        const QList<MediaProfile> profiles = info.getMediaProfileList();
        QCOMPARE(profiles.size(), 2);
        m_video = profiles.first();
        QCOMPARE(m_video.getName(), "137"_s);
        QCOMPARE(m_video.getMediaType(), MEDIA_TYPE_VIDEO);
        QCOMPARE(m_video.getFormat(), "MP4"_s);
        QCOMPARE(m_video.getVResolution(), QSize(640, 360));
        QVERIFY(m_video.isDash() && !m_video.is3D());
        const MediaProfile audio = MediaListGetStreamByYdCode(profiles, "140"_s);
        QCOMPARE(audio.getMediaType(), MEDIA_TYPE_AUDIO);
        QCOMPARE(audio.getFormat(), "M4A"_s);
        QVERIFY(audio.isDash());
    }

    void download()
    {
        MediaProfile video = m_video; // as the extraction found it
        video.setPreferredDashAudioYdCode("140"_s);
        const QString file = m_videos + "/café 1.mp4"_s;
        const std::unique_ptr<WebMediaDownloader> downloader(m_factory->createDownloader(m_tool, m_cache));
        const SignalLog log(downloader.get());
        downloader->download(m_page.url(), video, file);
        QTRY_VERIFY_WITH_TIMEOUT(log.text().endsWith("finished"_s) || log.text().contains("error"_s), Timeout);
        const QStringList notifications = log.text().split(QLatin1Char(' '));
        QCOMPARE(notifications.last(), "finished"_s);
        QCOMPARE(notifications.count("started"_s), 2);
        QVERIFY2(notifications.indexOf("started"_s, 1) > 3, qPrintable(log.text())); // with progress between

        QCOMPARE(filesLeft(), QStringList("café 1.mp4"_s));
        QCOMPARE(DemoPage::codecs(file), QByteArray("h264\naac\n"));
        QVERIFY(QFile::remove(file));
    }

    void cancelledDownload()
    {
        const std::unique_ptr<WebMediaDownloader> downloader(m_factory->createDownloader(m_tool, m_cache));
        const SignalLog log(downloader.get());
        downloader->download(m_page.url(), m_video, m_videos + "/b.mp4"_s);
        QTRY_VERIFY_WITH_TIMEOUT(log.text().contains("progress"_s), Timeout);
        QVERIFY2(!filesLeft().isEmpty(), "the tool writes beside the destination");
        downloader->cancel();
        QTRY_VERIFY_WITH_TIMEOUT(log.text().endsWith(" error(-1)"_s), TestSandbox::GraceAfterKill);
        QTRY_COMPARE_WITH_TIMEOUT(Processes::children().size(), m_childCount, TestSandbox::GraceAfterKill);
        QCOMPARE(filesLeft(), QStringList());
    }

private:
    QStringList filesLeft() const { return Files::names(m_videos); }

    static constexpr int Timeout = 120000; // milliseconds

    WebMediaDownloaderFactory *const m_factory = WebMediaDownloaderFactory::instance();
    QTemporaryDir m_root;
    const QString m_cache = m_root.filePath("byte code"_s);
    QString m_tool;
    QString m_videos;
    DemoPage m_page;
    qsizetype m_childCount = 0; // the server
    MediaProfile m_video;
};

NOX_TEST_MAIN(EndToEndTest)
#include "EndToEndTest.moc"
