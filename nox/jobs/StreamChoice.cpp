#include <nox/jobs/StreamChoice.h>

#include <nox/model/MediaList.h>

#include <QSet>

#include <algorithm>
#include <iterator>
#include <tuple>
#include <utility>
#include <vector>

namespace Nox {

namespace {

using Profiles = QList<MediaProfile>;

constexpr int enoughLines = 360; // lines of a picture that is good enough to avoid a conversion

bool isAudio(const MediaProfile &stream)
{
    return stream.getMediaType() == MEDIA_TYPE_AUDIO;
}

bool isVideo(const MediaProfile &stream)
{
    return stream.getMediaType() == MEDIA_TYPE_VIDEO;
}

bool isSized(const MediaProfile &stream)
{
    return stream.getVResolution().isValid();
}

bool isAbove1080p(const MediaProfile &stream)
{
    return stream.getOriResStr().compare(QLatin1String(">1080p"), Qt::CaseInsensitive) == 0;
}

/** Size of the picture; also for a stream that is only known to be larger than 1080p. */
qint64 pixels(const MediaProfile &stream)
{
    const QSize size = stream.getVResolution();
    if (size.isValid())
        return static_cast<qint64>(size.width()) * size.height();
    return isAbove1080p(stream) ? 1920 * 1080 + 1 : 0;
}

/** A picture of unknown size counts as large enough: otherwise it might be converted for hours without need. */
bool hasEnoughLines(const MediaProfile &stream)
{
    return !isSized(stream) || stream.getVResolution().height() >= enoughLines;
}

/** The first of @p streams for which @p suits is true; an invalid profile if there is none. */
template <typename Predicate>
MediaProfile first(const Profiles &streams, Predicate suits)
{
    const auto found = std::find_if(streams.cbegin(), streams.cend(), suits);
    return found == streams.cend() ? MediaProfile() : *found;
}

/** The first of @p streams with a good picture and the least conversion. */
template <typename ConversionOf>
MediaProfile leastWork(const Profiles &streams, ConversionOf conversionOf)
{
    for (const Conversion::Kind most : {Conversion::None, Conversion::Sound}) {
        MediaProfile found = first(streams, [&](const MediaProfile &stream) {
            return hasEnoughLines(stream) && conversionOf(stream) <= most;
        });
        if (found.isValid())
            return found;
    }
    return streams.value(0);
}

} // namespace

StreamChoice::StreamChoice(const WebMediaInfo &page)
{
    // In the record, the tool's best stream is first.
    const Profiles streams = page.getMediaProfileList();
    for (const MediaProfile &stream : streams) {
        if (!stream.isValid() || !isUsableCode(stream.getName()))
            continue;
        m_all += stream;
        if (isAudio(stream))
            m_audio += stream;
    }
    m_audioForMp4 =
        first(m_audio, [](const MediaProfile &stream) { return stream.getFormat() == QLatin1String("M4A"); });
    if (!m_audioForMp4.isValid())
        m_audioForMp4 = m_audio.value(0);
    sort();
    thin();
}

void StreamChoice::sort()
{
    using Key = std::tuple<bool, qint64, bool, bool, int>;
    std::vector<std::pair<Key, MediaProfile>> keyed;
    keyed.reserve(static_cast<std::size_t>(m_all.size()));
    for (const MediaProfile &stream : std::as_const(m_all)) {
        const Key key(isAudio(stream), -pixels(stream), stream.is3D(), isSilent(stream), conversion(stream));
        keyed.emplace_back(key, stream);
    }
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const auto &left, const auto &right) { return left.first < right.first; });
    std::transform(keyed.cbegin(), keyed.cend(), m_all.begin(), [](const auto &entry) { return entry.second; });
}

/** Audio streams and videos of unknown size are never dropped: they may differ in ways that matter to the user. */
void StreamChoice::thin()
{
    QSet<QString> seen;
    for (const MediaProfile &stream : std::as_const(m_all)) {
        if (isVideo(stream) && isSized(stream)) {
            const QSize size = stream.getVResolution();
            const QString look = QStringLiteral("%1x%2 %3 %4 %5")
                                     .arg(size.width())
                                     .arg(size.height())
                                     .arg(stream.is3D())
                                     .arg(stream.getFormat(), stream.getOriResStr().toUpper());
            if (seen.contains(look))
                continue;
            seen.insert(look);
        }
        m_thinned += stream;
    }
}

MediaProfile StreamChoice::best() const
{
    Profiles withSound;
    std::copy_if(m_all.cbegin(), m_all.cend(), std::back_inserter(withSound),
                 [this](const MediaProfile &stream) { return isVideo(stream) && !isSilent(stream); });
    if (!withSound.isEmpty())
        return leastWork(withSound, [this](const MediaProfile &stream) { return conversion(stream); });
    MediaProfile silent = first(m_all, isVideo);
    if (silent.isValid())
        return silent;
    return m_audio.isEmpty() ? m_all.value(0) : m_audio.first();
}

MediaProfile StreamChoice::bestFor(const MediaProfile &audio) const
{
    Profiles videos;
    std::copy_if(m_all.cbegin(), m_all.cend(), std::back_inserter(videos), needsAudio);
    return leastWork(videos, [&audio](const MediaProfile &stream) { return Conversion::needed(stream, audio); });
}

MediaProfile StreamChoice::audioFor(const MediaProfile &video) const
{
    if (!needsAudio(video))
        return {};
    return video.getFormat() == QLatin1String("MP4") ? m_audioForMp4 : m_audio.value(0);
}

MediaProfile StreamChoice::withAudio(MediaProfile stream) const
{
    stream.setPreferredDashAudioYdCode(audioFor(stream).getName());
    return stream;
}

Conversion::Kind StreamChoice::conversion(const MediaProfile &stream) const
{
    const QString code = stream.getPreferredDashAudioYdCode();
    return Conversion::needed(stream, code.isEmpty() ? audioFor(stream) : find(code));
}

bool StreamChoice::isSilent(const MediaProfile &stream) const
{
    return needsAudio(stream) && m_audio.isEmpty();
}

MediaProfile StreamChoice::find(const QString &code) const
{
    return MediaListGetStreamByYdCode(m_all, code);
}

bool StreamChoice::needsAudio(const MediaProfile &stream)
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

} // namespace Nox
