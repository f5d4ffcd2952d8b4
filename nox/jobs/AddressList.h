#pragma once

#include <nox/jobs/JobsExport.h>

#include <QMimeData>
#include <QStringList>

/** Finds the addresses of pages in a text, for example in pasted or dropped text. */
namespace Nox::AddressList {

/**
 * The addresses in @p text in their order, without repetitions, completed for a PageJob. Also finds addresses without a
 * scheme, such as www.example.org.
 */
NOX_JOBS_EXPORT QStringList in(const QString &text);

/** The addresses in dropped or copied data: in links, in text files or in the text. */
NOX_JOBS_EXPORT QStringList in(const QMimeData *data);

/** The addresses in a text file; none if the file is too large. */
NOX_JOBS_EXPORT QStringList inFile(const QString &path);

} // namespace Nox::AddressList
