#include "hosts/common/StreamChoice.h"

#include <nox/model/MediaList.h>

#include <algorithm>
#include <functional>
#include <iterator>

namespace NoxHost {

namespace {

using Nox::MediaProfile;
using Profiles = QList<MediaProfile>;

bool isVideo(const MediaProfile &stream)
{
    return stream.getMediaType() == Nox::MEDIA_TYPE_VIDEO;
}

bool isSized(const MediaProfile &stream)
{
    return stream.getVResolution().isValid();
}

// The library's own sort leaves equals in no particular order; the tool lists them by preference.
template <typename Before>
void sortStably(Profiles &streams, Before before)
{
    std::stable_sort(streams.begin(), streams.end(), before);
}

bool isBetter(const MediaProfile &left, const MediaProfile &right)
{
    return right < left;
}

/**
 * Thins streams of known size. The library keeps the first stream with sound of a run of equals, or
 * else the run's last, and never touches the list's last entry. So DASH streams go first, the
 * preferred one at their end, and an entry that equals nothing closes the list.
 */
Profiles thinnedRun(const Profiles &run)
{
    Profiles streams;
    std::copy_if(run.crbegin(), run.crend(), std::back_inserter(streams), std::mem_fn(&MediaProfile::isDash));
    std::copy_if(run.cbegin(), run.cend(), std::back_inserter(streams), std::not_fn(&MediaProfile::isDash));
    sortStably(streams, isBetter);
    streams.append(MediaProfile());
    MediaListRemoveDuplicatedResolutions(streams);
    streams.removeLast();
    return streams;
}

/** Streams of unknown size may differ in all a person cares for: they stay. */
Profiles thin(const Profiles &streams)
{
    Profiles result;
    Profiles run;
    for (const MediaProfile &stream : streams) {
        if (isVideo(stream) && isSized(stream)) {
            run += stream;
            continue;
        }
        result += thinnedRun(run);
        run.clear();
        result += stream;
    }
    return result + thinnedRun(run);
}

bool isSamePicture(const MediaProfile &left, const MediaProfile &right)
{
    return left.getVResolution() == right.getVResolution() && left.is3D() == right.is3D()
        && (isSized(left) || left.getOriResStr().compare(right.getOriResStr(), Qt::CaseInsensitive) == 0);
}

/** How little has to happen to a stream until it is a file with picture and sound. */
int effort(const MediaProfile &stream)
{
    if (!stream.isDash())
        return 0;
    return stream.getFormat() == QLatin1String("MP4") ? 1 : 2;
}

} // namespace

StreamChoice::StreamChoice(const Nox::WebMediaInfo &page)
{
    const Profiles streams = page.getMediaProfileList();
    for (const MediaProfile &stream : streams) {
        if (!stream.isValid() || !isUsableCode(stream.getName()))
            continue;
        m_all += stream;
        if (stream.getMediaType() == Nox::MEDIA_TYPE_AUDIO)
            m_audio += stream;
    }
    sortStably(m_all, isBetter);
    sortStably(m_audio, [](const MediaProfile &left, const MediaProfile &right) {
        return left.getABitRate() > right.getABitRate();
    });
    m_thinned = thin(m_all);
}

Profiles StreamChoice::all() const
{
    return m_all;
}

Profiles StreamChoice::thinned() const
{
    return m_thinned;
}

Profiles StreamChoice::audio() const
{
    return m_audio;
}

MediaProfile StreamChoice::best() const
{
    const auto first = std::find_if(m_thinned.cbegin(), m_thinned.cend(), isVideo);
    if (first == m_thinned.cend())
        return m_audio.isEmpty() ? m_all.value(0) : m_audio.first();
    MediaProfile result = *first;
    for (auto it = first; it != m_thinned.cend(); ++it)
        if (isVideo(*it) && isSamePicture(*it, *first) && effort(*it) < effort(result))
            result = *it;
    return result;
}

MediaProfile StreamChoice::companionFor(const MediaProfile &video) const
{
    if (!needsCompanion(video))
        return {};
    if (video.getFormat() == QLatin1String("MP4")) {
        const auto m4a = std::find_if(m_audio.cbegin(), m_audio.cend(), [](const MediaProfile &stream) {
            return stream.getFormat() == QLatin1String("M4A");
        });
        if (m4a != m_audio.cend())
            return *m4a;
    }
    return m_audio.value(0);
}

MediaProfile StreamChoice::find(const QString &code) const
{
    return MediaListGetStreamByYdCode(m_all, code);
}

bool StreamChoice::needsCompanion(const MediaProfile &stream)
{
    return isVideo(stream) && stream.isDash();
}

bool StreamChoice::isUsableCode(const QString &code)
{
    return !code.isEmpty() && !code.startsWith(QLatin1Char('-'))
        && std::none_of(code.cbegin(), code.cend(), [](QChar character) {
               return character.isSpace() || character == QLatin1Char('"')
                   || character.category() == QChar::Other_Control;
           });
}

} // namespace NoxHost
