#pragma once

#include <nox/jobs/JobsExport.h>

#include <QMimeData>
#include <QStringList>

namespace Nox {

/** Finds the addresses of pages in a text, for example in pasted or dropped text. */
class NOX_JOBS_EXPORT AddressList
{
public:
    AddressList() = delete;

    /** The addresses in @p text in their order, without repetitions, completed for a PageJob. Also finds addresses
     * without a scheme, such as www.example.org. */
    static QStringList in(const QString &text);

    /** The addresses in dropped or copied data: in links, in text files or in the text. */
    static QStringList in(const QMimeData *data);

    static QStringList inFile(const QString &path); ///< The addresses in a text file; none if the file is too large.
};

} // namespace Nox
