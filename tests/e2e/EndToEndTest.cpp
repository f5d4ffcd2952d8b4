#include "tests/support/DemoPage.h"
#include "tests/support/Processes.h"
#include "tests/support/SignalLog.h"
#include "tests/support/TestMain.h"
#include "tests/support/TestSandbox.h"

#include <nox/front/WebMediaDownloaderFactory.h>
#include <nox/model/MediaList.h>

#include <QDir>
#include <QProcess>
#include <QtTest>

#include <memory>

using namespace Nox;

/** The library with the real tool and the real ffmpeg, on a page that is served on the loopback address. */
class EndToEndTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data();
    void initTestCase();
    void init();
    void extraction();
    void missingPage();
    void download();
    void cancelledDownload();

private:
    std::unique_ptr<WebMediaInfoExtractor> newExtractor() const;
    std::unique_ptr<WebMediaDownloader> newDownloader() const;
    QStringList filesLeft() const;

    static constexpr int Patience = 120000; // milliseconds

    QTemporaryDir m_root;
    QString m_tool;
    DemoPage m_page;
    qsizetype m_childCount = 0; // the server
    MediaProfile m_video;
};

void EndToEndTest::initTestCase_data()
{
    QTest::addColumn<QString>("tool");
    QTest::newRow("with its front") << QStringLiteral("yt.zip");
    QTest::newRow("plain") << QStringLiteral("plain-yt.zip");
}

void EndToEndTest::initTestCase()
{
    QVERIFY(m_page.serve());
    Logger::init(m_root.filePath(QStringLiteral("library.log")).toStdString(), LOG_DEBUG, LOG_OUT_FILE);
    QVERIFY(QDir(m_root.path()).mkdir(QStringLiteral("my videos")));
    QCOMPARE(QProcess::execute(QStringLiteral(NOX_SCRIPTS "/make-tool-archive.py"),
                               {QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("plain-yt.zip")),
                                QStringLiteral("--plain")}),
             0);
    m_childCount = Processes::children().size();
}

void EndToEndTest::init()
{
    QFETCH_GLOBAL(QString, tool);
    m_tool = QDir(QCoreApplication::applicationDirPath()).filePath(tool);
    for (const QString &file : filesLeft()) // of the run with the other tool
        QVERIFY(QFile::remove(m_root.filePath(QStringLiteral("my videos/") + file)));
}

std::unique_ptr<WebMediaInfoExtractor> EndToEndTest::newExtractor() const
{
    auto *const factory = WebMediaDownloaderFactory::instance();
    return std::unique_ptr<WebMediaInfoExtractor>(
        factory->createExtractor(m_tool, m_root.filePath(QStringLiteral("byte code"))));
}

std::unique_ptr<WebMediaDownloader> EndToEndTest::newDownloader() const
{
    auto *const factory = WebMediaDownloaderFactory::instance();
    return std::unique_ptr<WebMediaDownloader>(
        factory->createDownloader(m_tool, m_root.filePath(QStringLiteral("byte code"))));
}

QStringList EndToEndTest::filesLeft() const
{
    return QDir(m_root.filePath(QStringLiteral("my videos")))
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

void EndToEndTest::extraction()
{
    const auto extractor = newExtractor();
    WebMediaInfo info;
    connect(extractor.get(), &WebMediaInfoExtractor::finished, this, [&](const WebMediaInfo &found) { info = found; });
    extractor->getMediaInfoBySignal(m_page.url());
    QTRY_VERIFY_WITH_TIMEOUT(info.isValid(), Patience);

    QCOMPARE(info.getUrl(), m_page.url());
    QVERIFY2(info.getTitle().startsWith(QString::fromUtf8("Open the café/bar? A clip")), qPrintable(info.getTitle()));
    QVERIFY2(info.getFileName().startsWith(QString::fromUtf8("Open the café bar  A clip")),
             qPrintable(info.getFileName()));
    QCOMPARE(info.getThumbnailUrl(), m_page.url() + QStringLiteral("mqdefault.jpg"));
    QVERIFY2(info.errorDetail().isEmpty() || info.errorDetail().startsWith(QLatin1String("WARNING")),
             qPrintable(info.errorDetail()));

    info.sortProfileDesc();
    const QList<MediaProfile> profiles = info.getMediaProfileList();
    QCOMPARE(profiles.size(), 2);
    m_video = profiles.first();
    QCOMPARE(m_video.getName(), QStringLiteral("137"));
    QCOMPARE(m_video.getMediaType(), MEDIA_TYPE_VIDEO);
    QCOMPARE(m_video.getFormat(), QStringLiteral("MP4"));
    QCOMPARE(m_video.getVResolution(), QSize(640, 360));
    QCOMPARE(m_video.resolutionStringEx(), QStringLiteral("640X360"));
    QVERIFY(m_video.isDash() && !m_video.is3D());
    const MediaProfile audio = MediaListGetStreamByYdCode(profiles, QStringLiteral("140"));
    QCOMPARE(audio.getMediaType(), MEDIA_TYPE_AUDIO);
    QCOMPARE(audio.getFormat(), QStringLiteral("M4A"));
    QVERIFY(audio.isDash());
}

void EndToEndTest::missingPage()
{
    const auto extractor = newExtractor();
    const SignalLog log(extractor.get());
    extractor->getMediaInfoBySignal(m_page.url() + QStringLiteral("missing"));
    QTRY_VERIFY_WITH_TIMEOUT(log.text().endsWith(QStringLiteral(") error(-1) error(-1)")), Patience);
    QVERIFY2(log.text().contains(QStringLiteral("ERROR")), qPrintable(log.text()));
    QVERIFY2(log.text().contains(QStringLiteral("404")), qPrintable(log.text()));
}

void EndToEndTest::download()
{
    QVERIFY(m_video.isValid()); // as the extraction found it
    MediaProfile video = m_video;
    video.setPreferredDashAudioYdCode(QStringLiteral("140"));
    const QString file = m_root.filePath(QString::fromUtf8("my videos/café 1.mp4"));
    const auto downloader = newDownloader();
    const SignalLog log(downloader.get());
    downloader->download(m_page.url(), video, file);
    QTRY_VERIFY_WITH_TIMEOUT(
        log.text().endsWith(QStringLiteral("finished")) || log.text().contains(QStringLiteral("error")), Patience);
    const QStringList notifications = log.text().split(QLatin1Char(' '));
    QCOMPARE(notifications.first(), QStringLiteral("started"));
    QCOMPARE(notifications.last(), QStringLiteral("finished"));
    QCOMPARE(notifications.count(QStringLiteral("started")), 2);
    QVERIFY2(notifications.indexOf(QStringLiteral("started"), 1) > 3, qPrintable(log.text())); // with progress between
    QVERIFY2(notifications.at(notifications.size() - 2).endsWith(QLatin1String(",0)")), qPrintable(log.text()));

    QCOMPARE(filesLeft(), QStringList(QString::fromUtf8("café 1.mp4")));
    QProcess probe;
    probe.start(QStringLiteral("ffprobe"),
                {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-show_entries"),
                 QStringLiteral("stream=codec_type,codec_name"), QStringLiteral("-of"), QStringLiteral("csv=p=0"),
                 file});
    QVERIFY(probe.waitForFinished(Patience));
    QCOMPARE(QString::fromUtf8(probe.readAllStandardOutput()), QStringLiteral("h264,video\naac,audio\n"));
}

void EndToEndTest::cancelledDownload()
{
    const auto downloader = newDownloader();
    const SignalLog log(downloader.get());
    downloader->download(m_page.url(), m_video, m_root.filePath(QStringLiteral("my videos/b.mp4")));
    QTRY_VERIFY_WITH_TIMEOUT(log.text().contains(QStringLiteral("progress")), Patience);
    QVERIFY2(!filesLeft().isEmpty(), "the tool writes beside the destination");
    downloader->cancel();
    QTRY_VERIFY_WITH_TIMEOUT(log.text().endsWith(QStringLiteral(" error(-1)")), TestSandbox::GraceAfterKill);
    QTRY_COMPARE_WITH_TIMEOUT(Processes::children().size(), m_childCount, TestSandbox::GraceAfterKill);
    QCOMPARE(filesLeft(), QStringList());
}

NOX_TEST_MAIN(EndToEndTest)
#include "EndToEndTest.moc"
