#pragma once

#include <nox/jobs/JobsExport.h>

#include <nox/jobs/Conversion.h>

#include <nox/model/MediaProfile.h>
#include <nox/model/WebMediaInfo.h>

#include <QList>
#include <QString>

namespace Nox {

/**
 * The streams of a page in the order in which a person wants to see them, and the ones to take when
 * nobody chooses. Streams whose format code could not go on a command line are left out. A value.
 *
 * Where streams are equal in what is known of them, the tool's own order decides: it knows frame rate,
 * bit rate, language and the site's preference.
 */
class NOX_JOBS_EXPORT StreamChoice
{
public:
    /** No streams. */
    StreamChoice() = default;

    /** The streams of @p page, as the extractor delivered it. */
    explicit StreamChoice(const WebMediaInfo &page);

    /**
     * Every usable stream: videos before audio, the larger picture first, 2D before 3D, and of equal
     * pictures those first that need the least work.
     */
    QList<MediaProfile> all() const { return m_all; }

    /**
     * all() without streams that differ from a kept one in nothing a person sees: of equal picture
     * size, 3D, container and label the first one stays.
     */
    QList<MediaProfile> thinned() const { return m_thinned; }

    /** The audio streams in the tool's order, its best first. */
    QList<MediaProfile> audio() const { return m_audio; }

    /**
     * The stream to take when nobody chooses: the best picture that becomes a file with sound without
     * anything being encoded. Streams that must be converted come first only where nothing else has a
     * picture of at least 360 lines, and silent ones where nothing else has sound. On a page without
     * video it is the best audio stream, on an empty page an invalid profile.
     */
    MediaProfile best() const;

    /** The video to take with @p audio when nobody chooses, as best() does; an invalid profile when there is none. */
    MediaProfile bestFor(const MediaProfile &audio) const;

    /**
     * The audio stream to join with @p video: the tool's best, for an MP4 video its best in M4A before
     * all others. An invalid profile when the video needs none or there is none.
     */
    MediaProfile audioFor(const MediaProfile &video) const;

    /** @p stream, with audioFor() named in it as the audio to join. */
    MediaProfile withAudio(MediaProfile stream) const;

    /** What must be converted when @p stream is saved: with the audio named in it, or else with audioFor(). */
    Conversion::Kind conversion(const MediaProfile &stream) const;

    /** The stream with format code @p code, or an invalid profile. */
    MediaProfile find(const QString &code) const;

    /** Whether a stream is a picture without sound that an audio stream can be joined to. */
    static bool needsAudio(const MediaProfile &stream);

    /** Whether @p code is one argument of a command line that is no option. */
    static bool isUsableCode(const QString &code);

private:
    void sort();
    void thin();
    bool isSilent(const MediaProfile &stream) const;

    QList<MediaProfile> m_all;
    QList<MediaProfile> m_thinned;
    QList<MediaProfile> m_audio;
    MediaProfile m_audioForMp4; // invalid on a page without audio
};

} // namespace Nox
