#pragma once

#include <nox/jobs/JobsExport.h>

#include <QString>

namespace Nox {

/** Makes texts from outside fit for display: titles and the tool's words may hold escape sequences. */
class NOX_JOBS_EXPORT TextSanitizer
{
public:
    TextSanitizer() = delete;

    /**
     * @p text on one line, fit for a terminal, a label and a file name: control characters and runs of
     * white space become one blank, marks that turn the writing direction too; the ends are trimmed.
     */
    static QString line(const QString &text);
};

} // namespace Nox
