#pragma once

namespace Nox {

/** Format of a file that is saved without a picture. */
enum class SoundFormat {
    AsIs, ///< The format of the stream, such as M4A; nothing is encoded.
    Mp3,  ///< Encoded by ffmpeg after the download.
};

} // namespace Nox
