#pragma once

#include <nox/jobs/JobsExport.h>

#include <nox/model/MediaProfile.h>

#include <QCoreApplication>
#include <QList>
#include <QString>
#include <QStringList>

namespace Nox {

/** What a stream is, in words for a table. */
class NOX_JOBS_EXPORT StreamText
{
    Q_DECLARE_TR_FUNCTIONS(Nox::StreamText)

public:
    StreamText() = delete;

    /** "video", "video only", "audio", with "3D" in front where it applies. */
    static QString kind(const MediaProfile &stream);

    /** Quality for display, such as 1080P60, 1280x720 or 128K; empty when nothing is known of it. */
    static QString label(const MediaProfile &stream);

    /**
     * The labels of @p streams, one for each. Streams that stand in the same words (kind, container and
     * label) have their format code in them, so that a person can tell them apart.
     */
    static QStringList labels(const QList<MediaProfile> &streams);

    /** The stream in plain words, such as "1080p, with sound", "720p, without sound" or "sound only, 128 kbit/s". */
    static QString plainWords(const MediaProfile &stream);

    /** Container such as MP4. */
    static QString container(const MediaProfile &stream);

    /** Size in a short form such as 12M; empty when it is not known. */
    static QString size(const MediaProfile &stream);

    /** Marks that apply: "DASH", "3D", or both. */
    static QString marks(const MediaProfile &stream);
};

} // namespace Nox
