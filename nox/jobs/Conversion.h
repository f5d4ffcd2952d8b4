#pragma once

#include <nox/jobs/JobsExport.h>

#include <nox/model/MediaProfile.h>

#include <QCoreApplication>
#include <QString>

namespace Nox {

/** Which streams ffmpeg must encode when it joins a video with its audio, and how long that takes. */
class NOX_JOBS_EXPORT Conversion
{
    Q_DECLARE_TR_FUNCTIONS(Nox::Conversion)

public:
    Conversion() = delete;

    /** In ascending order of the work. */
    enum Kind {
        None,    ///< Nothing is encoded.
        Sound,   ///< The audio is encoded, the video is copied.
        Picture, ///< The video is encoded. For a large picture this can take days.
    };

    /**
     * What must be encoded when a video is joined with an audio stream.
     * @param video the stream to save
     * @param audio the stream to join; an invalid profile for none
     */
    static Kind needed(const MediaProfile &video, const MediaProfile &audio);

    /** A short mark for a list of streams; empty for None. */
    static QString mark(Kind kind);

    /**
     * A very rough estimate of the time.
     * @param kind result of needed()
     * @param video the stream to join
     * @param duration of the video in seconds
     * @param processors cores of the machine
     * @return seconds; -1 if nothing is converted or the time is unknown
     */
    static qint64 roughSeconds(Kind kind, const MediaProfile &video, qint64 duration, int processors);

    /** A sentence to show before the download: what is converted, and how long it may take. Empty for None. */
    static QString warning(Kind kind, const MediaProfile &video, qint64 duration);
};

} // namespace Nox
