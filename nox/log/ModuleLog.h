#pragma once

#include <nox/Export.h>

#include <QString>

/**
 * @file
 * A second, simpler log: each call appends a line to a file in the temporary folder that is named after the running
 * application. It is independent of Nox::Logger and not thread-safe.
 */

/** Sets @p name to the full path of the running application's executable. */
NOX_EXPORT void GetModuleName(QString &name);

/**
 * Appends one line to "<temporary folder>/<application>.1.log". From 8192 bytes on, each call also
 * copies the whole file to ".2.log". Errors are not reported.
 * @param fmt printf format of the arguments that follow; the line is cut to 1023 bytes
 * @return 1
 */
NOX_EXPORT int WriteLog(QString fmt, ...);
