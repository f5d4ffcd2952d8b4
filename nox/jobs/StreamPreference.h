#pragma once

#include <nox/jobs/JobsExport.h>

#include <nox/jobs/StreamChoice.h>
#include <nox/model/MediaProfile.h>

namespace Nox {

/** The user's preferences for the default stream. A value. */
struct NOX_JOBS_EXPORT StreamPreference {
    int maximumHeight = 0;         ///< of the picture in lines; 0 for no limit
    bool withoutConversion = true; ///< avoids streams that ffmpeg must encode, if there are others
    bool soundOnly = false;        ///< the best audio stream, without a picture

    /**
     * The best of @p streams by these preferences; StreamChoice::best() if every picture is above the limit.
     * @param streams the streams of a page
     * @param audio the audio to join with the video: then only videos without sound are considered. An invalid profile
     *        selects the default audio of each video
     * @return an invalid profile if there is no such stream
     */
    MediaProfile pick(const StreamChoice &streams, const MediaProfile &audio = {}) const;

private:
    bool isWithinLimit(const MediaProfile &stream) const;
};

} // namespace Nox
