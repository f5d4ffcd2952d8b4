#include "tests/support/DemoPage.h"
#include "tests/support/Processes.h"
#include "tests/support/SignalLog.h"
#include "tests/support/TestMain.h"
#include "tests/support/TestSandbox.h"
#include "tests/util/Rows.h"

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
    void initTestCase_data()
    {
        QTest::addColumn<QString>("tool");
        QTest::newRow("with its front") << "yt.zip"_s;
        QTest::newRow("plain") << "plain-yt.zip"_s;
    }

    void initTestCase()
    {
        QVERIFY(m_page.serve());
        Logger::init(m_root.filePath("library.log"_s).toStdString(), LOG_DEBUG, LOG_OUT_FILE);
        QVERIFY(QDir(m_root.path()).mkdir("my videos"_s));
        QCOMPARE(
            QProcess::execute(QStringLiteral(NOX_SCRIPTS "/make-tool-archive.py"),
                              {QDir(QCoreApplication::applicationDirPath()).filePath("plain-yt.zip"_s), "--plain"_s}),
            0);
        m_childCount = Processes::children().size();
    }

    void init()
    {
        QFETCH_GLOBAL(QString, tool);
        m_tool = QDir(QCoreApplication::applicationDirPath()).filePath(tool);
        for (const QString &file : filesLeft()) // of the run with the other tool
            QVERIFY(QFile::remove(m_root.filePath("my videos/"_s + file)));
    }

    void extraction()
    {
        const auto extractor = newExtractor();
        WebMediaInfo info;
        connect(extractor.get(), &WebMediaInfoExtractor::finished, this,
                [&](const WebMediaInfo &found) { info = found; });
        extractor->getMediaInfoBySignal(m_page.url());
        QTRY_VERIFY_WITH_TIMEOUT(info.isValid(), Timeout);

        QCOMPARE(info.getUrl(), m_page.url());
        QVERIFY2(info.getTitle().startsWith("Open the café/bar? A clip"_s), qPrintable(info.getTitle()));
        QVERIFY2(info.getFileName().startsWith("Open the café bar  A clip"_s), qPrintable(info.getFileName()));
        QCOMPARE(info.getThumbnailUrl(), m_page.url() + "mqdefault.jpg"_s);
        QVERIFY2(info.errorDetail().isEmpty() || info.errorDetail().startsWith("WARNING"_s),
                 qPrintable(info.errorDetail()));

        info.sortProfileDesc();
        const QList<MediaProfile> profiles = info.getMediaProfileList();
        QCOMPARE(profiles.size(), 2);
        m_video = profiles.first();
        QCOMPARE(m_video.getName(), "137"_s);
        QCOMPARE(m_video.getMediaType(), MEDIA_TYPE_VIDEO);
        QCOMPARE(m_video.getFormat(), "MP4"_s);
        QCOMPARE(m_video.getVResolution(), QSize(640, 360));
        QCOMPARE(m_video.resolutionStringEx(), "640X360"_s);
        QVERIFY(m_video.isDash() && !m_video.is3D());
        const MediaProfile audio = MediaListGetStreamByYdCode(profiles, "140"_s);
        QCOMPARE(audio.getMediaType(), MEDIA_TYPE_AUDIO);
        QCOMPARE(audio.getFormat(), "M4A"_s);
        QVERIFY(audio.isDash());
    }

    void download()
    {
        QVERIFY(m_video.isValid()); // as the extraction found it
        MediaProfile video = m_video;
        video.setPreferredDashAudioYdCode("140"_s);
        const QString file = m_root.filePath("my videos/café 1.mp4"_s);
        const auto downloader = newDownloader();
        const SignalLog log(downloader.get());
        downloader->download(m_page.url(), video, file);
        QTRY_VERIFY_WITH_TIMEOUT(log.text().endsWith("finished"_s) || log.text().contains("error"_s), Timeout);
        const QStringList notifications = log.text().split(QLatin1Char(' '));
        QCOMPARE(notifications.first(), "started"_s);
        QCOMPARE(notifications.last(), "finished"_s);
        QCOMPARE(notifications.count("started"_s), 2);
        QVERIFY2(notifications.indexOf("started"_s, 1) > 3, qPrintable(log.text())); // with progress between
        QVERIFY2(notifications.at(notifications.size() - 2).endsWith(",0)"_s), qPrintable(log.text()));

        QCOMPARE(filesLeft(), QStringList("café 1.mp4"_s));
        QProcess probe;
        probe.start(
            "ffprobe"_s,
            {"-v"_s, "error"_s, "-show_entries"_s, "stream=codec_type,codec_name"_s, "-of"_s, "csv=p=0"_s, file});
        QVERIFY(probe.waitForFinished(Timeout));
        QCOMPARE(QString::fromUtf8(probe.readAllStandardOutput()), "h264,video\naac,audio\n"_s);
    }

    void missingPage()
    {
        const auto extractor = newExtractor();
        const SignalLog log(extractor.get());
        extractor->getMediaInfoBySignal(m_page.url() + "missing"_s);
        QTRY_VERIFY_WITH_TIMEOUT(log.text().endsWith(") error(-1) error(-1)"_s), Timeout);
        QVERIFY2(log.text().contains("ERROR"_s), qPrintable(log.text()));
        QVERIFY2(log.text().contains("404"_s), qPrintable(log.text()));
    }

    void cancelledDownload()
    {
        const auto downloader = newDownloader();
        const SignalLog log(downloader.get());
        downloader->download(m_page.url(), m_video, m_root.filePath("my videos/b.mp4"_s));
        QTRY_VERIFY_WITH_TIMEOUT(log.text().contains("progress"_s), Timeout);
        QVERIFY2(!filesLeft().isEmpty(), "the tool writes beside the destination");
        downloader->cancel();
        QTRY_VERIFY_WITH_TIMEOUT(log.text().endsWith(" error(-1)"_s), TestSandbox::GraceAfterKill);
        QTRY_COMPARE_WITH_TIMEOUT(Processes::children().size(), m_childCount, TestSandbox::GraceAfterKill);
        QCOMPARE(filesLeft(), QStringList());
    }

    void namesAndLinks_data()
    {
        QTest::addColumn<QString>("audio"); // as the tool names it; MEDIA and PAGE are where the streams are
        QTest::addColumn<QString>("code");
        QTest::newRow("a file's address") << "file:MEDIA/audio.m4a"_s
                                          << "-4"_s;
        QTest::newRow("a page's address") << "PAGEaudio.m4a"_s
                                          << "-4"_s;
        QTest::newRow("a link at the destination") << QString() << "-8"_s;
    }

    /** ffmpeg does not read an address that the tool prints, and nothing is written through a link. */
    void namesAndLinks()
    {
        const auto [audio, code] = fetchTexts("audio", "code");
        const QString media = m_page.mediaFolder();
        QFile tool(m_root.filePath("naming.py"_s));
        QVERIFY(tool.open(QIODevice::WriteOnly));
        tool.write("import os, shutil, sys\n"
                   "code, template = (sys.argv[sys.argv.index(option) + 1] for option in ('-f', '-o'))\n"
                   "stream = {'137': 'video.mp4', '140': 'audio.m4a'}[code]\n"
                   "file = template.replace('%(ext)s', stream[-3:])\n"
                   "shutil.copy(os.path.join(os.environ['NOX_MEDIA'], stream), file)\n"
                   "audio = os.environ['NOX_AUDIO']\n"
                   "print('[download] Destination: ' + (audio if code == '140' and audio else file))\n");
        tool.close();
        qputenv("NOX_MEDIA", media.toUtf8());
        qputenv("NOX_AUDIO", QString(audio).replace("MEDIA"_s, media).replace("PAGE"_s, m_page.url()).toUtf8());
        const QString outside = m_root.filePath("outside.mp4"_s);
        const QString destination = m_root.filePath("my videos/named.mp4"_s);
        if (audio.isEmpty())
            QVERIFY(QFile::link(outside, destination));

        auto *const factory = WebMediaDownloaderFactory::instance();
        const std::unique_ptr<WebMediaDownloader> downloader(factory->createDownloader(tool.fileName(), QString()));
        const SignalLog log(downloader.get());
        MediaProfile video = m_video;
        video.setPreferredDashAudioYdCode("140"_s);
        downloader->download(m_page.url(), video, destination);
        const QString expected = "started started error(%1)"_s.arg(code);
        QTRY_VERIFY_WITH_TIMEOUT(log.text().contains("error"_s) || log.text().contains("finished"_s), Timeout);
        QTRY_COMPARE_WITH_TIMEOUT(Processes::children().size(), m_childCount, Timeout);
        QCoreApplication::processEvents();
        QCOMPARE(log.text(), expected);
        QVERIFY(!QFile::exists(outside) && !QFile::exists(destination));
        QCOMPARE(QFileInfo(destination).isSymLink(), audio.isEmpty());
        downloader->cancel();
        if (audio.isEmpty())
            QVERIFY(QFile::remove(destination));
        QCOMPARE(filesLeft().filter("named"_s), QStringList());
    }

private:
    std::unique_ptr<WebMediaInfoExtractor> newExtractor() const
    {
        auto *const factory = WebMediaDownloaderFactory::instance();
        return std::unique_ptr<WebMediaInfoExtractor>(factory->createExtractor(m_tool, m_root.filePath("byte code"_s)));
    }

    std::unique_ptr<WebMediaDownloader> newDownloader() const
    {
        auto *const factory = WebMediaDownloaderFactory::instance();
        return std::unique_ptr<WebMediaDownloader>(factory->createDownloader(m_tool, m_root.filePath("byte code"_s)));
    }

    QStringList filesLeft() const
    {
        return QDir(m_root.filePath("my videos"_s)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    static constexpr int Timeout = 120000; // milliseconds

    QTemporaryDir m_root;
    QString m_tool;
    DemoPage m_page;
    qsizetype m_childCount = 0; // the server
    MediaProfile m_video;
};

NOX_TEST_MAIN(EndToEndTest)
#include "EndToEndTest.moc"
