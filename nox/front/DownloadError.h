#pragma once

#include <QtGlobal>

namespace Nox {

/**
 * The values of WebMediaDownloader::error().
 *
 * A crash gives two of them: first DownloadError::ProcessFailed or DownloadError::MergeProcessFailed, then
 * DownloadError::Crashed.
 */
enum class DownloadError : qint32 {
    ProcessFailed = -1, ///< The tool could not be started, or it crashed; or the profile has no format code.
    ExitedWithError =
        -4,       ///< The tool or ffmpeg reported failure, or the tool did not name both files that are to be joined.
    Crashed = -5, ///< The tool or ffmpeg crashed or was killed.
    MergeProcessFailed = -7, ///< ffmpeg could not be started, or it crashed.
    RenameFailed = -8,       ///< The finished file could not get the destination's name.
};

} // namespace Nox
