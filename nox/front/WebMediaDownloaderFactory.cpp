#include <nox/front/WebMediaDownloaderFactory.h>

#include <nox/download/YdDownloader.h>
#include <nox/extract/YdExtractor.h>

namespace Nox {

WebMediaDownloaderFactory *WebMediaDownloaderFactory::instance()
{
    static WebMediaDownloaderFactory *factory = nullptr;
    if (factory == nullptr)
        factory = new WebMediaDownloaderFactory;
    return factory;
}

WebMediaInfoExtractor *WebMediaDownloaderFactory::createExtractor(const QString &toolPath, const QString &pycacheDir)
{
    return new YdExtractor(toolPath, pycacheDir);
}

WebMediaDownloader *WebMediaDownloaderFactory::createDownloader(const QString &toolPath, const QString &pycacheDir)
{
    return new YdDownloader(toolPath, pycacheDir);
}

} // namespace Nox
