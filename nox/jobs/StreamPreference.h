#pragma once

#include <nox/jobs/JobsExport.h>

#include <nox/jobs/StreamChoice.h>
#include <nox/model/MediaProfile.h>

namespace Nox {

/** Which stream a person wants when none is picked by hand. A value. */
struct NOX_JOBS_EXPORT StreamPreference {
    int maximumHeight = 0;         ///< of the picture, in lines; 0 for no limit
    bool withoutConversion = true; ///< nothing that ffmpeg would have to encode anew, where there is anything else
    bool soundOnly = false;        ///< the best audio stream, without a picture

    /**
     * The stream of @p streams that suits best. Where no picture is within the limit, it is
     * StreamChoice::best() again.
     * @param streams the streams of a page
     * @param audio the audio to join with the video; invalid for the one that suits each video. Where it is valid, only
     *        videos without sound are taken
     * @return an invalid profile when there is none at all
     */
    MediaProfile pick(const StreamChoice &streams, const MediaProfile &audio = {}) const;

private:
    bool isWithinLimit(const MediaProfile &stream) const;
};

} // namespace Nox
