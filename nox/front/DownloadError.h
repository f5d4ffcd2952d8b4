#pragma once

#include <QtGlobal>

namespace Nox {

/**
 * The codes that WebMediaDownloader::error() carries as plain numbers.
 *
 * A crash is reported by two codes, one after the other: DownloadError::ProcessFailed or
 * DownloadError::MergeProcessFailed first, then DownloadError::Crashed.
 */
enum class DownloadError : qint32 {
    ProcessFailed = -1,      ///< The tool could not be started, or it crashed; or there is no format code to ask for.
    ExitedWithError = -4,    ///< The tool or ffmpeg reported failure, or the tool named no files to join.
    Crashed = -5,            ///< The tool or ffmpeg crashed or was killed.
    MergeProcessFailed = -7, ///< ffmpeg could not be started, or it crashed.
    RenameFailed = -8,       ///< The finished file could not get the destination's name.
};

} // namespace Nox
