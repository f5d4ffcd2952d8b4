#pragma once

#include <QString>

/**
 * The paths of the external programs in the folder of the host's executable. Not tested for existence.
 */
namespace Nox::ProgramPaths {

/** The Python interpreter that runs the tool. */
QString interpreter();

/** The program that joins two streams. */
QString ffmpeg();

} // namespace Nox::ProgramPaths
