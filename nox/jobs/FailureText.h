#pragma once

#include <nox/model/WebMediaInfo.h>

#include <QCoreApplication>
#include <QString>

namespace Nox {

/** Failures in words: the cause, and what the user can do. */
class FailureText
{
    Q_DECLARE_TR_FUNCTIONS(Nox::FailureText)

public:
    FailureText() = delete;

    /** What was going on when a download failed; the library's codes alone do not tell. */
    enum class During { Fetching, Joining };

    /** @p code as WebMediaDownloader::error() gives it, a value of Nox::DownloadError. */
    static QString download(int code, During during);

    /** @p code as WebMediaInfoExtractor::error() gives it. */
    static QString extraction(int code);

    /** The tool's archive is damaged or incomplete. */
    static QString brokenTool();

    /** The tool does not take the user's settings. */
    static QString refusedSettings();

    /** The tool does not tell its version. */
    static QString noVersion();

    /** The tool was content with the page, but what it tells of it, @p page, holds nothing to download. */
    static QString noStream(const WebMediaInfo &page);

    /** The page was read, and nothing of it can be downloaded. */
    static QString nothingToDownload();

    /** The download's private folder could not be made in @p folder. */
    static QString noPrivateFolder(const QString &folder, const QString &cause);

    /** The finished file could not be moved to @p destination. */
    static QString noFinalName(const QString &destination);
};

} // namespace Nox
