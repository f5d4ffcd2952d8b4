#pragma once

#include <nox/jobs/JobsExport.h>

#include <QCoreApplication>
#include <QString>

namespace Nox {

/**
 * Checks the address of a page before it is given to the library. The library does not quote it on the tool's command
 * line, so an address with a blank or a quote could add options there.
 */
class NOX_JOBS_EXPORT UrlCheck
{
    Q_DECLARE_TR_FUNCTIONS(Nox::UrlCheck)

public:
    UrlCheck() = delete;

    /**
     * @p text as a complete address: without blanks at both ends, with the scheme in lower case, with https:// in front
     * of "www." or the name of a server, and with %27 for an apostrophe. Other errors are not corrected.
     */
    static QString corrected(const QString &text);

    /** The error message if @p url is not a valid address; else empty. */
    static QString errorString(const QString &url);
};

} // namespace Nox
