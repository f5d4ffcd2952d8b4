#include <nox/jobs/DownloadRecord.h>

#include <QStringList>

#include <cmath>

namespace Nox {

namespace {

constexpr int version = 1;
const QLatin1String versionKey("version");
const QLatin1String urlKey("url");
const QLatin1String destinationKey("destination");
const QLatin1String durationKey("duration");
const QLatin1String soundKey("sound");
const QLatin1String streamKey("stream");
const QLatin1String codeKey("code");
const QLatin1String audioCodeKey("audioCode");
const QLatin1String kindKey("kind");
const QLatin1String containerKey("container");
const QLatin1String labelKey("label");
const QLatin1String widthKey("width");
const QLatin1String heightKey("height");
const QLatin1String audioBitRateKey("audioBitRate");
const QLatin1String sizeKey("size");
const QLatin1String dashKey("dash");
const QLatin1String stereoKey("3d");
const QLatin1String videoKind("video");
const QLatin1String audioKind("audio");
const QLatin1String mp3("mp3");

/** The number @p key of @p object if it is from 0 to @p most; else 0. */
qint64 number(const QJsonObject &object, QLatin1String key, qint64 most)
{
    const double value = object.value(key).toDouble();
    return std::isfinite(value) && value >= 0 && value <= static_cast<double>(most) ? static_cast<qint64>(value) : 0;
}

QJsonObject streamObject(const MediaProfile &stream)
{
    const QSize size = stream.getVResolution();
    const bool isVideo = stream.getMediaType() == MEDIA_TYPE_VIDEO;
    const bool isAudio = stream.getMediaType() == MEDIA_TYPE_AUDIO;
    return {
        {codeKey, stream.getName()},
        {audioCodeKey, stream.getPreferredDashAudioYdCode()},
        {kindKey,
         isVideo       ? QString(videoKind)
             : isAudio ? QString(audioKind)
                       : QString()},
        {containerKey, stream.getFormat()},
        {labelKey, stream.getOriResStr()},
        {widthKey, size.isValid() ? size.width() : 0},
        {heightKey, size.isValid() ? size.height() : 0},
        {audioBitRateKey, stream.getABitRate()},
        {sizeKey, static_cast<double>(stream.getSize())},
        {dashKey, stream.isDash()},
        {stereoKey, stream.is3D()},
    };
}

MediaProfile streamOf(const QJsonObject &object)
{
    constexpr int most = 1000000000;
    MediaProfile stream;
    stream.setName(object.value(codeKey).toString());
    stream.setPreferredDashAudioYdCode(object.value(audioCodeKey).toString());
    const QString kind = object.value(kindKey).toString();
    stream.setMediaType(kind == videoKind       ? MEDIA_TYPE_VIDEO
                            : kind == audioKind ? MEDIA_TYPE_AUDIO
                                                : MEDIA_TYPE_UNKNOWN);
    stream.setFormat(object.value(containerKey).toString());
    stream.setOriResStr(object.value(labelKey).toString());
    const QSize size(static_cast<int>(number(object, widthKey, most)),
                     static_cast<int>(number(object, heightKey, most)));
    if (!size.isEmpty())
        stream.setVResolution(size);
    stream.setABitRate(static_cast<int>(number(object, audioBitRateKey, most)));
    stream.setSize(number(object, sizeKey, 1LL << 53));
    stream.setDash(object.value(dashKey).toBool());
    stream.set3D(object.value(stereoKey).toBool());
    return stream;
}

} // namespace

DownloadRecord DownloadRecord::fromJson(const QJsonObject &object)
{
    if (object.value(versionKey).toInt() != version)
        return {};
    DownloadRecord record;
    record.url = object.value(urlKey).toString();
    record.stream = streamOf(object.value(streamKey).toObject());
    record.destination = object.value(destinationKey).toString();
    constexpr qint64 longest = 1000000000;
    record.duration = number(object, durationKey, longest);
    record.sound = object.value(soundKey).toString() == mp3 ? SoundFormat::Mp3 : SoundFormat::AsIs;
    return record;
}

QJsonObject DownloadRecord::toJson() const
{
    return {
        {versionKey, version},
        {urlKey, url},
        {streamKey, streamObject(stream)},
        {destinationKey, destination},
        {durationKey, static_cast<double>(duration)},
        {soundKey, sound == SoundFormat::Mp3 ? QString(mp3) : QString()},
    };
}

bool DownloadRecord::isComplete() const
{
    return !url.isEmpty() && !stream.getName().isEmpty() && destination.startsWith(QLatin1Char('/'));
}

bool DownloadRecord::hasSameStreams(const DownloadRecord &other) const
{
    return url == other.url && stream.getName() == other.stream.getName()
        && stream.getPreferredDashAudioYdCode() == other.stream.getPreferredDashAudioYdCode();
}

QString DownloadRecord::key() const
{
    return QStringList{url, stream.getName(), stream.getPreferredDashAudioYdCode(), destination}.join(
        QLatin1Char('\n'));
}

} // namespace Nox
