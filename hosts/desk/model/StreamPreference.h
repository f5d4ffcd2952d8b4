#pragma once

#include <nox/jobs/StreamChoice.h>

namespace NoxDesk {

/** Which stream the user wants when none is picked by hand. A value. */
struct StreamPreference {
    int maximumLines = 0;          ///< of the picture; 0 for no ceiling
    bool withoutConversion = true; ///< nothing that ffmpeg would have to encode anew, where there is anything else
    bool soundOnly = false;

    /** The stream of @p streams that suits best; an invalid profile when there is none at all. */
    Nox::MediaProfile pick(const Nox::StreamChoice &streams) const;
};

} // namespace NoxDesk
