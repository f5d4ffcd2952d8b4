#pragma once

#include <nox/jobs/JobsExport.h>

#include <QString>

/** Makes texts from outside safe to show: titles and messages of the tool may contain escape sequences. */
namespace Nox::TextSanitizer {

/**
 * @p text on one line, safe for a terminal, a label and a file name. Control characters, marks that change the writing
 * direction and runs of white space become one blank each; blanks at both ends are removed.
 */
NOX_JOBS_EXPORT QString line(const QString &text);

} // namespace Nox::TextSanitizer
