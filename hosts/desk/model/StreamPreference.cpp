#include "hosts/desk/model/StreamPreference.h"

namespace NoxDesk {

using Nox::MediaProfile;
using Nox::StreamChoice;

namespace {

bool isVideo(const MediaProfile &stream)
{
    return stream.getMediaType() == Nox::MEDIA_TYPE_VIDEO;
}

bool becomesSilent(const StreamChoice &streams, const MediaProfile &stream)
{
    return StreamChoice::needsAudio(stream) && !streams.audioFor(stream).isValid();
}

} // namespace

MediaProfile StreamPreference::pick(const StreamChoice &streams) const
{
    if (soundOnly && !streams.audio().isEmpty()) {
        const QList<MediaProfile> audio = streams.audio();
        return audio.first();
    }
    MediaProfile best = streams.best();
    const bool isLow = maximumLines == 0 || best.getVResolution().height() <= maximumLines;
    if (isLow && withoutConversion)
        return best;
    // The list begins with the largest picture, and among equals with the one that needs the least work.
    MediaProfile converted;
    const QList<MediaProfile> all = streams.all();
    for (const MediaProfile &stream : all) {
        const int lines = stream.getVResolution().height();
        if (!isVideo(stream) || (maximumLines > 0 && lines > maximumLines) || becomesSilent(streams, stream))
            continue;
        if (!withoutConversion || streams.conversion(stream) == Nox::Conversion::None)
            return stream;
        converted = converted.isValid() ? converted : stream;
    }
    return converted.isValid() ? converted : best;
}

} // namespace NoxDesk
