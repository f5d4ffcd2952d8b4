#include <nox/NoxWebMedia.h>

#include <QCoreApplication>
#include <QTimer>

#include <memory>

using namespace Nox;

/** A host that extracts or downloads once and ends with the first outcome: JOB TOOL DESTINATION. */
int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString url = QStringLiteral("http://127.0.0.1/page");
    Logger::init({}, LOG_FATAL, 0);
    QTimer watchdog;
    QObject::connect(&watchdog, &QTimer::timeout, &app, [] { QCoreApplication::exit(2); });
    watchdog.start(60000);
    const auto end = [] { QCoreApplication::quit(); };

    auto *const factory = WebMediaDownloaderFactory::instance();
    const std::unique_ptr<WebMediaInfoExtractor> extractor(factory->createExtractor(arguments.value(2), QString()));
    const std::unique_ptr<WebMediaDownloader> downloader(factory->createDownloader(arguments.value(2), QString()));
    QObject::connect(extractor.get(), &WebMediaInfoExtractor::finished, &app, end);
    QObject::connect(extractor.get(), &WebMediaInfoExtractor::error, &app, end);
    QObject::connect(downloader.get(), &WebMediaDownloader::finished, &app, end);
    QObject::connect(downloader.get(), &WebMediaDownloader::error, &app, end);

    MediaProfile profile;
    profile.setName(QStringLiteral("137"));
    profile.setDash(true);
    profile.setPreferredDashAudioYdCode(QStringLiteral("140"));
    if (arguments.value(1) == QLatin1String("extract"))
        extractor->getMediaInfoBySignal(url);
    else
        downloader->download(url, profile, arguments.value(3));
    return QCoreApplication::exec();
}
