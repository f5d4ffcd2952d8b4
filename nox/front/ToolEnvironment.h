#pragma once

#include <nox/Export.h>

#include <QString>

/**
 * @file
 * The place of the external programs: the folder of the host's executable holds the Python interpreter at
 * "python3.10/bin/python3.10", and "ffmpeg".
 */

/**
 * Path of the interpreter that runs the tool. Does not test whether the file exists. Needs a QCoreApplication.
 * @return an absolute path
 */
NOX_EXPORT QString GetPythonExecPath();
