#pragma once

#include <nox/model/MediaProfile.h>
#include <nox/model/WebMediaInfo.h>

#include <QList>
#include <QString>

namespace NoxHost {

/**
 * The streams of a page in the order in which a person wants to see them, and the ones to take when
 * nobody chooses. Streams whose format code could not go on a command line are left out. A value.
 */
class StreamChoice
{
public:
    /** No streams. */
    StreamChoice() = default;

    /** The streams of @p page, as the extractor delivered it. */
    explicit StreamChoice(const Nox::WebMediaInfo &page);

    /** Every usable stream, best first; among equals the tool's own preference stands. */
    QList<Nox::MediaProfile> all() const;

    /**
     * all() without streams that differ from a kept one in nothing a person sees: of equal picture
     * size, 3D and container one stays, one with sound of its own if there is any.
     */
    QList<Nox::MediaProfile> thinned() const;

    /** The audio streams, highest bit rate first. */
    QList<Nox::MediaProfile> audio() const;

    /**
     * The stream to take when nobody chooses: of the best picture the one with sound of its own, or
     * the one that can be joined without encoding it again. On a page without video the best audio
     * stream; on an empty page an invalid profile.
     */
    Nox::MediaProfile best() const;

    /**
     * The audio stream to join with @p video: the one of highest bit rate, M4A before all others for
     * an MP4 video. An invalid profile when the video needs none or there is none.
     */
    Nox::MediaProfile companionFor(const Nox::MediaProfile &video) const;

    /** The stream with format code @p code, or an invalid profile. */
    Nox::MediaProfile find(const QString &code) const;

    /** Whether a stream is a picture without sound that an audio stream can be joined to. */
    static bool needsCompanion(const Nox::MediaProfile &stream);

    /** Whether @p code is one argument of a command line that is no option. */
    static bool isUsableCode(const QString &code);

private:
    QList<Nox::MediaProfile> m_all;
    QList<Nox::MediaProfile> m_thinned;
    QList<Nox::MediaProfile> m_audio;
};

} // namespace NoxHost
