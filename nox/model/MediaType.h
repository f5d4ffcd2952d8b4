#pragma once

namespace Nox {

/**
 * Kind of a media record.
 *
 * The numbers are part of the interface: the text forms of the records print them.
 */
enum MediaType : int {
    MEDIA_TYPE_VIDEO = 0,   ///< A video stream, with or without sound.
    MEDIA_TYPE_AUDIO = 1,   ///< An audio-only stream.
    MEDIA_TYPE_UNKNOWN = 3, ///< The kind has not been set.
};

} // namespace Nox
