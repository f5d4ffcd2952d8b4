#pragma once

#include <nox/Export.h>

#include <QString>

/**
 * @file
 * Where the external programs are: both stand in the folder of the host's executable, the Python
 * interpreter at "python3.10/bin/python3.10" and "ffmpeg" directly in it.
 */

/**
 * Path of the interpreter that runs the tool. Whether a file is there is not tested.
 * @return an absolute path; needs a QCoreApplication, which knows the folder
 */
NOX_EXPORT QString GetPythonExecPath();
