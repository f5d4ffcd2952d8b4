#include <nox/parse/YdFormat.h>

#include <nox/util/ByteNumber.h>
#include <nox/util/Saturation.h>

namespace Nox {

namespace {

struct NamedSize {
    QLatin1String name;
    int width;
    int height;
};

// clang-format off
// Sizes that the tool means by a resolution text. They replace the width and height of the entry.
const NamedSize namedSizes[] = {
    {QLatin1String("1080p"), 1920, 1080},
    {QLatin1String("720p"), 1280, 720},
    {QLatin1String("480p"), 720, 480},
    {QLatin1String("360p"), 640, 360},
    {QLatin1String("240p"), 320, 240},
    {QLatin1String("144p"), 176, 144},
};
// clang-format on

bool equalsIgnoringCase(const QString &text, QLatin1String other)
{
    return text.compare(other, Qt::CaseInsensitive) == 0;
}

bool isAudioOnly(const QString &note, const QString &audioCodec, const QString &videoCodec)
{
    if (note.contains(QLatin1String("dash audio")))
        return true;
    const QString audio = audioCodec.toLower();
    const QString video = videoCodec.toLower();
    return !audio.isEmpty() && audio != QLatin1String("none") && (video.isEmpty() || video == QLatin1String("none"));
}

// Bit rate in kbit/s: from the number, or from a text such as 128k.
int audioKilobits(const FormatEntry &entry)
{
    if (const int kilobits = Saturation::fromDouble<int>(entry.audioRate); kilobits != 0)
        return kilobits;
    const qint64 bytes = ByteNumber(entry.audioRateText).value();
    return static_cast<qint32>(static_cast<quint64>(bytes) & 0xffffffffU) / 1000;
}

void describeAudio(MediaProfile &profile, const FormatEntry &entry)
{
    const int kilobits = audioKilobits(entry);
    profile.setDash(true);
    profile.setOriResStr(QStringLiteral("%1K").arg(kilobits));
    profile.setMediaType(MEDIA_TYPE_AUDIO);
    profile.setABitRate(Saturation::product(kilobits, 1000));
}

QSize pictureSize(const FormatEntry &entry)
{
    for (const NamedSize &named : namedSizes) {
        if (equalsIgnoringCase(entry.resolution, named.name))
            return {named.width, named.height};
    }
    return {entry.width < 0 ? Saturation::product(entry.height / 9, 16) : entry.width, entry.height};
}

void describeVideo(MediaProfile &profile, const FormatEntry &entry, const QString &note)
{
    const bool isDashVideo = note.contains(QLatin1String("dash video"));
    const bool isLabelled = isDashVideo || equalsIgnoringCase(entry.resolution, QLatin1String(">1080p"));

    const QSize size = pictureSize(entry);
    if (size.width() > 0 && size.height() > 0)
        profile.setVResolution(size);
    // A stream without sound is a DASH stream, even if its note does not say so.
    profile.setDash(isDashVideo || entry.audioCodec == QLatin1String("none"));
    profile.set3D(!isDashVideo && note.contains(QLatin1String("3d")));
    profile.setOriResStr(isLabelled ? entry.resolution : QString(QLatin1String("")));
    profile.setMediaType(MEDIA_TYPE_VIDEO);
    profile.setABitRate(0);
}

} // namespace

std::optional<MediaProfile> YdFormat::toProfile(const FormatEntry &entry, const QString &description)
{
    const QString note = entry.note.toLower();
    if (note.contains(QLatin1String("dash webm audio")))
        return std::nullopt;

    const bool isAudio = isAudioOnly(note, entry.audioCodec, entry.videoCodec);
    // AV1 is not offered: too many players cannot show it.
    if (!isAudio && entry.videoCodec.startsWith(QLatin1String("av01."), Qt::CaseInsensitive))
        return std::nullopt;

    MediaProfile profile;
    profile.setName(entry.code);
    profile.setFormat(entry.extension.toUpper());
    profile.setUrl(entry.url);
    profile.setDescription(description);
    if (!profile.isValid())
        return std::nullopt;

    if (isAudio)
        describeAudio(profile, entry);
    else
        describeVideo(profile, entry, note);
    return profile;
}

} // namespace Nox
