#pragma once

#include <nox/jobs/JobsExport.h>

#include <QLocale>

namespace Nox {

/**
 * Installs the translation of this library's texts in the application, until the application ends. The translations
 * (German) are part of the library; no file is needed. To be called in the main thread, after the application object
 * was created. Another call replaces the translation.
 * @param locale selects the language
 * @return whether there is a translation for this language; if not, the texts are English
 */
NOX_JOBS_EXPORT bool installJobsTranslation(const QLocale &locale = QLocale());

} // namespace Nox
