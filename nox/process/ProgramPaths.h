#pragma once

#include <QString>

/**
 * Where the external programs are: all stand in the folder of the host's executable. The paths are
 * worked out anew on every call, and whether a file is there is not tested.
 */
namespace Nox::ProgramPaths {

/** The Python interpreter that runs the tool. */
QString interpreter();

/** The program that joins two streams. */
QString ffmpeg();

} // namespace Nox::ProgramPaths
