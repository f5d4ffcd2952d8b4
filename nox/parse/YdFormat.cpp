#include <nox/parse/YdFormat.h>

#include <nox/parse/JsonMembers.h>
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
// What the tool means by a resolution text; these replace the entry's own width and height.
constexpr NamedSize namedSizes[] = {
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

template <size_t Size>
QString text(const Json::Value &entry, const char (&name)[Size])
{
    return JsonMembers::toString(JsonMembers::find(entry, name), QLatin1String(""));
}

bool isAudioOnly(const QString &note, const QString &audioCodec, const QString &videoCodec)
{
    if (note.contains(QLatin1String("dash audio")))
        return true;
    const QString audio = audioCodec.toLower();
    const QString video = videoCodec.toLower();
    return !audio.isEmpty() && audio != QLatin1String("none") && (video.isEmpty() || video == QLatin1String("none"));
}

// Bit rate in kbit/s: a whole number, else a real one, else a text such as 128k.
int audioKilobits(const Json::Value &entry)
{
    const Json::Value *rate = JsonMembers::find(entry, "abr");
    if (const int whole = JsonMembers::toInt(rate, 0); whole != 0)
        return whole;
    if (const int real = Saturation::fromDouble<int>(JsonMembers::toDouble(rate, 0.0)); real != 0)
        return real;
    const qint64 bytes = ByteNumber(JsonMembers::toString(rate, QLatin1String(""))).value();
    return static_cast<qint32>(static_cast<quint64>(bytes) & 0xffffffffU) / 1000;
}

void describeAudio(MediaProfile &profile, const Json::Value &entry)
{
    const int kilobits = audioKilobits(entry);
    profile.setDash(true);
    profile.setOriResStr(QStringLiteral("%1K").arg(kilobits));
    profile.setMediaType(MEDIA_TYPE_AUDIO);
    profile.setABitRate(Saturation::product(kilobits, 1000));
}

QSize pictureSize(const Json::Value &entry, const QString &resolution)
{
    for (const NamedSize &named : namedSizes) {
        if (equalsIgnoringCase(resolution, named.name))
            return {named.width, named.height};
    }
    const int height = JsonMembers::toInt(JsonMembers::find(entry, "height"), -1);
    const int width = JsonMembers::toInt(JsonMembers::find(entry, "width"), -1);
    return {width < 0 ? Saturation::product(height / 9, 16) : width, height};
}

void describeVideo(MediaProfile &profile, const Json::Value &entry, const QString &note, const QString &audioCodec)
{
    const QString resolution = text(entry, "resolution");
    const bool isDashVideo = note.contains(QLatin1String("dash video"));
    const bool isLabelled = isDashVideo || equalsIgnoringCase(resolution, QLatin1String(">1080p"));

    const QSize size = pictureSize(entry, resolution);
    if (size.width() > 0 && size.height() > 0)
        profile.setVResolution(size);
    // A stream without sound is a DASH stream even where its note does not say so.
    profile.setDash(isDashVideo || audioCodec == QLatin1String("none"));
    profile.set3D(!isDashVideo && note.contains(QLatin1String("3d")));
    profile.setOriResStr(isLabelled ? resolution : QString(QLatin1String("")));
    profile.setMediaType(MEDIA_TYPE_VIDEO);
    profile.setABitRate(0);
}

} // namespace

std::optional<MediaProfile> YdFormat::toProfile(const Json::Value &entry, const QString &description)
{
    const QString note = text(entry, "format_note").toLower();
    if (note.contains(QLatin1String("dash webm audio")))
        return std::nullopt;

    const QString audioCodec = text(entry, "acodec");
    const QString videoCodec = text(entry, "vcodec");
    const bool isAudio = isAudioOnly(note, audioCodec, videoCodec);
    // AV1 is not offered: too many players cannot show it.
    if (!isAudio && videoCodec.startsWith(QLatin1String("av01."), Qt::CaseInsensitive))
        return std::nullopt;

    MediaProfile profile;
    profile.setName(text(entry, "format_id"));
    profile.setFormat(text(entry, "ext").toUpper());
    profile.setUrl(text(entry, "url"));
    profile.setDescription(description);
    if (!profile.isValid())
        return std::nullopt;

    if (isAudio)
        describeAudio(profile, entry);
    else
        describeVideo(profile, entry, note, audioCodec);
    return profile;
}

} // namespace Nox
