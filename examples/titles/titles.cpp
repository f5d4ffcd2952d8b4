// titles URL: prints the title of the video on a web page.

#include <nox/NoxWebMedia.h>

#include <QCoreApplication>
#include <QStandardPaths>

#include <iostream>
#include <memory>

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    Nox::Logger::init("/dev/null", Nox::LOG_ERROR, 0); // standard output is for the title

    const QString tool = QCoreApplication::applicationDirPath() + QLatin1String("/yt.zip");
    const QString cache = QStandardPaths::writableLocation(QStandardPaths::CacheLocation);
    const std::unique_ptr<Nox::WebMediaInfoExtractor> extractor(
        Nox::WebMediaDownloaderFactory::instance()->createExtractor(tool, cache));
    const Nox::WebMediaInfo page = extractor->getMediaInfo(QCoreApplication::arguments().last());
    std::cout << qUtf8Printable(page.getTitle()) << '\n';
    return page.isValid() ? 0 : 1;
}
