#pragma once

#include <nox/Export.h>

#include <QString>

/**
 * @file
 * A second, simpler log: one line a call into a file in the temporary folder that is named after the
 * running application. It shares nothing with Nox::Logger and takes no lock.
 */

/** Sets @p name to the full path of the running application's executable. */
NOX_EXPORT void GetModuleName(QString &name);

/**
 * Appends one line to "<temporary folder>/<application>.1.log". From 8192 bytes on, each call also
 * refreshes a copy of the whole file under ".2.log". Failures are silent.
 * @param fmt printf format for the arguments behind it; the line is cut to 1023 bytes
 * @return 1
 */
NOX_EXPORT int WriteLog(QString fmt, ...);
