#pragma once

#include <nox/jobs/JobsExport.h>

#include <nox/jobs/Conversion.h>

#include <nox/model/MediaProfile.h>
#include <nox/model/WebMediaInfo.h>

#include <QList>
#include <QString>

namespace Nox {

/**
 * The streams of a page in the order for the user, and the default choice among them. A stream whose format code cannot
 * be an argument of a command line is left out. A value.
 *
 * If streams are equal in all known properties, the tool's order decides: the tool also knows frame rate, bit rate,
 * language and the site's preference.
 */
class NOX_JOBS_EXPORT StreamChoice
{
public:
    /** No streams. */
    StreamChoice() = default;

    /** The streams of @p page, as the extractor delivered it. */
    explicit StreamChoice(const WebMediaInfo &page);

    /**
     * All usable streams: videos before audio, larger pictures first, 2D before 3D. Among equal pictures, the ones that
     * need the least conversion come first.
     */
    QList<MediaProfile> all() const { return m_all; }

    /**
     * all() without streams that look the same to the user: of streams with equal picture size, 3D, container and label
     * only the first is kept.
     */
    QList<MediaProfile> thinned() const { return m_thinned; }

    /** The audio streams in the tool's order, the best first. */
    QList<MediaProfile> audio() const { return m_audio; }

    /**
     * The default stream: the best picture that becomes a file with sound without a conversion. A stream that must be
     * converted is chosen only if no other has a picture of at least 360 lines, and one without sound only if no other
     * has sound. On a page without video it is the best audio stream, on an empty page an invalid profile.
     */
    MediaProfile best() const;

    /** The default video to join with @p audio, chosen as in best(); an invalid profile if there is none. */
    MediaProfile bestFor(const MediaProfile &audio) const;

    /**
     * The audio stream to join with @p video: the tool's best, and for an MP4 video its best in M4A if there is one. An
     * invalid profile if the video needs no audio or there is none.
     */
    MediaProfile audioFor(const MediaProfile &video) const;

    /** @p stream, with the code of audioFor() set as its preferred audio. */
    MediaProfile withAudio(MediaProfile stream) const;

    /** What must be converted to save @p stream with its preferred audio, or else with audioFor(). */
    Conversion::Kind conversion(const MediaProfile &stream) const;

    /** The stream with format code @p code, or an invalid profile. */
    MediaProfile find(const QString &code) const;

    /** Whether @p stream has no sound and an audio stream can be joined to it. */
    static bool needsAudio(const MediaProfile &stream);

    /** Whether @p code can be an argument of a command line and is not an option. */
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
