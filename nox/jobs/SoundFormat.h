#pragma once

namespace Nox {

/** What the sound of a page becomes when it is saved without a picture. */
enum class SoundFormat {
    AsIs, ///< The stream as the server has it, such as M4A: nothing is encoded.
    Mp3,  ///< Encoded by ffmpeg after the download.
};

} // namespace Nox
