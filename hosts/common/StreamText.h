#pragma once

#include <nox/model/MediaProfile.h>

#include <QCoreApplication>
#include <QString>

namespace NoxHost {

/** What a stream is, in words for a table. */
class StreamText
{
    Q_DECLARE_TR_FUNCTIONS(NoxHost::StreamText)

public:
    StreamText() = delete;

    /** "video", "video only", "audio", with "3D" in front where it applies. */
    static QString kind(const Nox::MediaProfile &stream);

    /** Quality for display, such as 1080P or 128K; empty when nothing is known of it. */
    static QString label(const Nox::MediaProfile &stream);

    /** Container such as MP4. */
    static QString container(const Nox::MediaProfile &stream);

    /** Size in a short form such as 12M; empty when it is not known. */
    static QString size(const Nox::MediaProfile &stream);

    /** Marks that apply: "DASH", "3D", or both. */
    static QString marks(const Nox::MediaProfile &stream);
};

} // namespace NoxHost
