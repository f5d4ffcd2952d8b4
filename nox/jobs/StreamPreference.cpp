#include <nox/jobs/StreamPreference.h>

namespace Nox {

bool StreamPreference::isWithinLimit(const MediaProfile &stream) const
{
    constexpr int knownHeight = 1080; // of a stream of which the tool tells nothing but that it is above that
    const bool isAbove = stream.getOriResStr().startsWith(QLatin1Char('>'));
    const int height = isAbove ? knownHeight + 1 : stream.getVResolution().height();
    return maximumHeight <= 0 || height <= maximumHeight;
}

MediaProfile StreamPreference::pick(const StreamChoice &streams, const MediaProfile &audio) const
{
    if (soundOnly && !audio.isValid() && !streams.audio().isEmpty())
        return streams.audio().constFirst();
    MediaProfile best = audio.isValid() ? streams.bestFor(audio) : streams.best();
    if (withoutConversion && isWithinLimit(best))
        return best;
    // The list begins with the largest picture, and among equals with the one that needs the least work.
    MediaProfile converted;
    const QList<MediaProfile> all = streams.all();
    for (MediaProfile stream : all) {
        const bool isSilent = StreamChoice::needsAudio(stream);
        const bool isSuitable = audio.isValid() ? isSilent : !isSilent || streams.audioFor(stream).isValid();
        if (stream.getMediaType() != MEDIA_TYPE_VIDEO || !isSuitable || !isWithinLimit(stream))
            continue;
        const Conversion::Kind conversion =
            audio.isValid() ? Conversion::needed(stream, audio) : streams.conversion(stream);
        if (!withoutConversion || conversion == Conversion::None)
            return stream;
        converted = converted.isValid() ? converted : stream;
    }
    return converted.isValid() ? converted : best;
}

} // namespace Nox
