#pragma once

#include <nox/jobs/JobsExport.h>

#include <QLocale>

namespace Nox {

/**
 * Translates the texts of the jobs for the running application, which keeps the translation until it ends. The
 * translations (German) are part of the library, no file is needed. To be called in the main thread, after the
 * application object has been made; another call replaces the translation.
 * @param locale whose language is taken
 * @return whether the texts are in that language now; otherwise they are English
 */
NOX_JOBS_EXPORT bool installJobsTranslation(const QLocale &locale = QLocale());

} // namespace Nox
