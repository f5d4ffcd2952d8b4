#include <nox/NoxWebMedia.h>

#include <QCoreApplication>
#include <QTimer>

#include <memory>

using namespace Nox;

/** A host that extracts or downloads once and ends with the first outcome: JOB TOOL DESTINATION. */
int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList words = app.arguments();
    const QString url = QStringLiteral("http://127.0.0.1/page");
    Logger::init({}, LOG_FATAL, 0);
    QTimer::singleShot(60000, &app, [] { QCoreApplication::exit(2); });
    const auto end = [] { QCoreApplication::quit(); };

    const auto factory = WebMediaDownloaderFactory::instance();
    const std::unique_ptr<WebMediaInfoExtractor> extractor(factory->createExtractor(words.value(2), QString()));
    const std::unique_ptr<WebMediaDownloader> downloader(factory->createDownloader(words.value(2), QString()));
    QObject::connect(extractor.get(), &WebMediaInfoExtractor::finished, &app, end);
    QObject::connect(extractor.get(), &WebMediaInfoExtractor::error, &app, end);
    QObject::connect(downloader.get(), &WebMediaDownloader::finished, &app, end);
    QObject::connect(downloader.get(), &WebMediaDownloader::error, &app, end);

    MediaProfile profile;
    profile.setName(QStringLiteral("137"));
    profile.setDash(true);
    profile.setPreferredDashAudioYdCode(QStringLiteral("140"));
    if (words.value(1) == QLatin1String("extract"))
        extractor->getMediaInfoBySignal(url);
    else
        downloader->download(url, profile, words.value(3));
    return app.exec();
}
