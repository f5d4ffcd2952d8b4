#pragma once

#include <nox/Export.h>
#include <nox/front/WebMediaDownloader.h>
#include <nox/front/WebMediaInfoExtractor.h>

#include <QString>

namespace Nox {

/** Makes extractors and downloaders. */
class NOX_EXPORT WebMediaDownloaderFactory
{
public:
    /** The process-wide factory, made on the first call and never destroyed. Not thread-safe. */
    static WebMediaDownloaderFactory *instance();

    /**
     * A new extractor, owned by the caller, without a parent.
     * @param toolPath path of the tool's file, normally of "yt.zip"
     * @param pycacheDir folder in which the interpreter keeps its compiled bytecode
     */
    WebMediaInfoExtractor *createExtractor(const QString &toolPath, const QString &pycacheDir);

    /**
     * A new downloader, owned by the caller, without a parent.
     * @param toolPath path of the tool's file, normally of "yt.zip"
     * @param pycacheDir folder in which the interpreter keeps its compiled bytecode
     */
    WebMediaDownloader *createDownloader(const QString &toolPath, const QString &pycacheDir);
};

} // namespace Nox
