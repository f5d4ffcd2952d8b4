#pragma once

#include <nox/jobs/Job.h>
#include <nox/model/WebMediaInfo.h>

#include <QCoreApplication>
#include <QString>

namespace Nox {

/** Failures for a person: the cause, and what to do next. */
class FailureText
{
    Q_DECLARE_TR_FUNCTIONS(Nox::FailureText)

public:
    FailureText() = delete;

    /** What stands for @p error by itself; empty for those whose text depends on more. */
    static QString cause(Job::Error error);

    /** @p code as WebMediaDownloader::error() gives it, a value of DownloadError. */
    static QString download(int code, bool isJoining);

    /** @p code as WebMediaInfoExtractor::error() gives it. */
    static QString extraction(int code);

    /** The stream's format code cannot stand on a command line. */
    static QString noFormatCode();

    /** The record of a download cannot be read. */
    static QString damagedRecord();

    /** The tool does not tell its version. */
    static QString noVersion();

    /** The tool has read the page, but what it tells of it, @p page, holds nothing to download. */
    static QString noStream(const WebMediaInfo &page);

    /** The download's private folder could not be made in @p folder. */
    static QString noPrivateFolder(const QString &folder, const QString &cause);

    /** The finished file could not be moved to @p destination. */
    static QString noFinalName(const QString &destination);
};

} // namespace Nox
