#pragma once

#include <nox/jobs/Job.h>
#include <nox/model/WebMediaInfo.h>

#include <QCoreApplication>
#include <QString>

namespace Nox {

/** Error messages for the user: the cause, and what to do next. */
class FailureText
{
    Q_DECLARE_TR_FUNCTIONS(Nox::FailureText)

public:
    FailureText() = delete;

    /** The message for @p error; empty if the message depends on more than that. */
    static QString cause(Job::Error error);

    /** The message for @p code of WebMediaDownloader::error(), a value of DownloadError. */
    static QString download(int code, bool isJoining);

    /** The message for @p code of WebMediaInfoExtractor::error(). */
    static QString extraction(int code);

    /** For a format code that cannot be an argument of a command line. */
    static QString noFormatCode();

    /** For a record of a download that cannot be read. */
    static QString damagedRecord();

    /** For a tool that does not print its version. */
    static QString noVersion();

    /** For a newer tool that could not be downloaded. */
    static QString noRenewal();

    /** For a missing command nox-renew-tool. */
    static QString noRenewalCommand();

    /** For a @p page that was read, but has no stream to download. */
    static QString noStream(const WebMediaInfo &page);

    /** For a private folder that could not be created in @p folder. */
    static QString noPrivateFolder(const QString &folder, const QString &cause);

    /** For a finished file that could not be moved to @p destination. */
    static QString noFinalName(const QString &destination);
};

} // namespace Nox
