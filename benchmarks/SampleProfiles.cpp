#include "benchmarks/SampleProfiles.h"

#include "benchmarks/Numbers.h"

#include <iterator>

using Nox::MediaProfile;

namespace {

constexpr QSize pictures[] = {{3840, 2160}, {2560, 1440}, {1920, 1080}, {1280, 720}, {854, 480},
                              {640, 360},   {426, 240},   {256, 144},   {1920, 800}, {1280, 534}};
constexpr const char *containers[] = {"MP4", "WEBM", "3GP", "FLV"};

MediaProfile profile(int number, const QString &description)
{
    MediaProfile result;
    result.setName(QString::number(number));
    result.setUrl(QStringLiteral("https://rr3.example.org/videoplayback?expire=1710000000&itag=%1").arg(number));
    result.setDescription(description);
    return result;
}

MediaProfile videoProfile(int number, const QString &description, QSize picture, const char *container)
{
    MediaProfile result = profile(number, description);
    result.setMediaType(Nox::MEDIA_TYPE_VIDEO);
    result.setFormat(QString::fromLatin1(container));
    result.setVResolution(picture);
    result.setOriResStr(QString::number(picture.height()) + QLatin1Char('p'));
    return result;
}

MediaProfile audioProfile(int number, const QString &description)
{
    MediaProfile result = profile(number, description);
    result.setMediaType(Nox::MEDIA_TYPE_AUDIO);
    result.setFormat(QStringLiteral("M4A"));
    result.setDash(true);
    result.setOriResStr(QStringLiteral("128K"));
    result.setABitRate(128000);
    return result;
}

} // namespace

QList<MediaProfile> SampleProfiles::shuffled(int count)
{
    const QString description = QStringLiteral("What the page says of its video");
    Numbers random;
    QList<MediaProfile> profiles;
    profiles.reserve(count);
    for (int i = 0; i < count; ++i) {
        if (random.below(3) == 0) {
            profiles.append(audioProfile(i, description));
            continue;
        }
        const QSize picture = pictures[random.below(std::size(pictures))];
        MediaProfile video = videoProfile(i, description, picture, containers[random.below(std::size(containers))]);
        video.setDash(random.below(2) == 0);
        video.set3D(random.below(20) == 0);
        profiles.append(video);
    }
    return profiles;
}
