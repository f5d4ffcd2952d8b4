#pragma once

#include <nox/jobs/JobsExport.h>

#include <nox/model/MediaProfile.h>

#include <QCoreApplication>
#include <QString>

namespace Nox {

/** What ffmpeg has to encode anew when a video is joined with its audio, and what that costs. */
class NOX_JOBS_EXPORT Conversion
{
    Q_DECLARE_TR_FUNCTIONS(Nox::Conversion)

public:
    Conversion() = delete;

    /** In the order of the work. */
    enum Kind {
        None,    ///< The file is saved as it comes, or both streams are copied into it.
        Sound,   ///< The audio is encoded anew, the video copied.
        Picture, ///< The video is encoded anew: this takes long, up to days for a large picture.
    };

    /**
     * What saving a video takes when an audio stream is joined with it.
     * @param video the stream that is saved
     * @param audio an invalid profile when nothing is joined
     */
    static Kind needed(const MediaProfile &video, const MediaProfile &audio);

    /** A short mark for a list of streams; empty for None. */
    static QString mark(Kind kind);

    /**
     * How long it takes, very roughly.
     * @param kind as needed() tells it
     * @param video the stream that is joined
     * @param duration of the video in seconds
     * @param processors cores of the machine
     * @return seconds; -1 when nothing is converted or it cannot be told
     */
    static qint64 roughSeconds(Kind kind, const MediaProfile &video, qint64 duration, int processors);

    /** A sentence for the time before the download: what is converted, and how long it may take; empty for None. */
    static QString warning(Kind kind, const MediaProfile &video, qint64 duration);
};

} // namespace Nox
