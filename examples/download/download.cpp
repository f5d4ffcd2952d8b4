// download URL FILE: downloads the best video of a web page, with its sound, into a new file.

#include <nox/NoxWebMedia.h>

#include <QCoreApplication>
#include <QStandardPaths>
#include <QTimer>

#include <iostream>
#include <memory>

namespace {

/** The page's first video, which is the tool's best; with an audio stream where it holds only the picture. */
Nox::MediaProfile choose(const Nox::WebMediaInfo &page)
{
    QList<Nox::MediaProfile> videos = page.getMediaProfileList();
    MediaListRemoveAudio(videos);
    Nox::MediaProfile video = videos.value(0);
    const QList<Nox::MediaProfile> streams = page.getMediaProfileList();
    for (const Nox::MediaProfile &stream : streams) {
        // MP4 takes M4A as it is; other audio would be converted.
        const bool isAudio = stream.getMediaType() == Nox::MEDIA_TYPE_AUDIO;
        if (video.isDash() && isAudio && stream.getFormat() == QLatin1String("M4A"))
            video.setPreferredDashAudioYdCode(stream.getName());
    }
    return video;
}

const char *inWords(qint32 errorCode)
{
    switch (static_cast<Nox::DownloadError>(errorCode)) {
    case Nox::DownloadError::RenameFailed:
        return "The file exists already, or it cannot be written.";
    case Nox::DownloadError::MergeProcessFailed:
        return "ffmpeg could not be run.";
    default:
        return "The download failed.";
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        std::cerr << "usage: download URL FILE\n";
        return 2;
    }
    const QString &url = arguments.at(1);
    const QString &file = arguments.at(2);
    Nox::Logger::init("/dev/null", Nox::LOG_ERROR, 0); // standard output is for the progress

    const QString tool = QCoreApplication::applicationDirPath() + QLatin1String("/yt.zip");
    const QString cache = QStandardPaths::writableLocation(QStandardPaths::CacheLocation);
    Nox::WebMediaDownloaderFactory *factory = Nox::WebMediaDownloaderFactory::instance();
    const std::unique_ptr<Nox::WebMediaInfoExtractor> extractor(factory->createExtractor(tool, cache));
    const Nox::MediaProfile stream = choose(extractor->getMediaInfo(url));

    using Nox::WebMediaDownloader;
    const std::unique_ptr<WebMediaDownloader> downloader(factory->createDownloader(tool, cache));
    QObject::connect(downloader.get(), &WebMediaDownloader::progress, [](qint64 total, qint64 finish, qint64 speed) {
        std::cout << finish << " of " << total << " bytes, " << speed << " per second\n" << std::flush;
    });
    QObject::connect(downloader.get(), &WebMediaDownloader::finished, [&file] {
        std::cout << "done: " << qUtf8Printable(file) << '\n' << std::flush;
        QCoreApplication::exit(0);
    });
    QObject::connect(downloader.get(), &WebMediaDownloader::error, [&downloader](qint32 errorCode) {
        std::cerr << inWords(errorCode) << '\n' << qUtf8Printable(downloader->errorDetail());
        QCoreApplication::exit(1);
    });

    // From the event loop, which can be ended then by what the download reports at once.
    QTimer::singleShot(0, downloader.get(), [&] { downloader->download(url, stream, file); });
    return QCoreApplication::exec();
}
