#pragma once

#include <nox/jobs/JobsExport.h>

#include <QCoreApplication>
#include <QString>

namespace Nox {

/**
 * Whether a text may go to the library as a page address. The address stands without quotes on the
 * tool's command line, so a blank or a quote in it would smuggle options in.
 */
class NOX_JOBS_EXPORT UrlCheck
{
    Q_DECLARE_TR_FUNCTIONS(Nox::UrlCheck)

public:
    UrlCheck() = delete;

    /**
     * @p text as the address that was meant: without blanks around it, with the scheme in small letters,
     * https:// in front of "www." or the name of a server, and %27 for an apostrophe. Whatever else is wrong stays as
     * it is.
     */
    static QString corrected(const QString &text);

    /** Why @p url is not one acceptable address, in words; empty when it is. */
    static QString errorString(const QString &url);
};

} // namespace Nox
