#include <nox/NoxWebMedia.h>

#include <QCoreApplication>
#include <QTimer>

#include <memory>

using namespace Nox;

/** A host that ends with the first outcome of one job: "extract" TOOL, or "download" TOOL DESTINATION of 137 with 140.
 */
int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString url = QStringLiteral("http://127.0.0.1/page");
    Logger::init({}, LOG_FATAL, 0);
    QTimer::singleShot(60000, &app, [] { QCoreApplication::exit(2); });

    auto *const factory = WebMediaDownloaderFactory::instance();
    const std::unique_ptr<WebMediaInfoExtractor> extractor(factory->createExtractor(arguments.value(2), QString()));
    const std::unique_ptr<WebMediaDownloader> downloader(factory->createDownloader(arguments.value(2), QString()));
    QObject::connect(extractor.get(), &WebMediaInfoExtractor::finished, &app, QCoreApplication::quit);
    QObject::connect(extractor.get(), &WebMediaInfoExtractor::error, &app, QCoreApplication::quit);
    QObject::connect(downloader.get(), &WebMediaDownloader::finished, &app, QCoreApplication::quit);
    QObject::connect(downloader.get(), &WebMediaDownloader::error, &app, QCoreApplication::quit);

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
