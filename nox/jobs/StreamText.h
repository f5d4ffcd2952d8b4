#pragma once

#include <nox/jobs/JobsExport.h>

#include <nox/model/MediaProfile.h>

#include <QCoreApplication>
#include <QList>
#include <QString>
#include <QStringList>

namespace Nox {

/** Texts that describe a stream: its kind, quality, container and size. */
class NOX_JOBS_EXPORT StreamText
{
    Q_DECLARE_TR_FUNCTIONS(Nox::StreamText)

public:
    StreamText() = delete;

    /** "video", "video only", "audio", with "3D" in front of it for a 3D picture. */
    static QString kind(const MediaProfile &stream);

    /** Quality, such as 1080P60, 1280x720 or 128K; empty if unknown. */
    static QString label(const MediaProfile &stream);

    /**
     * The labels of @p streams, one for each. If several streams have the same kind, container and label, the label
     * contains the format code, so that the user can tell them apart; it is then not empty.
     */
    static QStringList labels(const QList<MediaProfile> &streams);

    /** A short description, such as "1080p, with sound", "720p, without sound" or "sound only, 128 kbit/s". */
    static QString description(const MediaProfile &stream);

    /** Container, such as MP4. */
    static QString container(const MediaProfile &stream);

    /** Size in a short form, such as 12M; empty if unknown. */
    static QString size(const MediaProfile &stream);

    /** Marks that apply: "DASH", "3D", or both. */
    static QString marks(const MediaProfile &stream);
};

} // namespace Nox
