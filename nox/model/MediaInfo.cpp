#include <nox/model/MediaInfo.h>

#include <nox/model/PictureRank.h>

#include <algorithm>
#include <array>
#include <utility>

namespace Nox {

QMap<QString, QString> MediaInfo::FILE_FORMAT_SUFFIX_MAP;

namespace {

constexpr std::array standardHeights{1080, 720, 540, 480, 360, 240, 144};

} // namespace

MediaInfo::MediaInfo() = default;

MediaInfo::MediaInfo(MediaType type, QString format, QSize vResolution, QSize vAspect, QString vCodec, int vBitRate,
                     double vFrameRate, QString aCodec, int aBitRate, int aSampleRate, bool isDash, bool is3D,
                     QString oriResStr, QString preferredDashAudioYdCode)
    : m_mediaType(type)
    , m_format(std::move(format))
    , m_vResolution(vResolution)
    , m_vAspect(vAspect)
    , m_vCodec(std::move(vCodec))
    , m_vBitRate(vBitRate)
    , m_vFrameRate(vFrameRate)
    , m_aCodec(std::move(aCodec))
    , m_aBitRate(aBitRate)
    , m_aSampleRate(aSampleRate)
    , m_isDash(isDash)
    , m_is3D(is3D)
    , m_oriResStr(std::move(oriResStr))
    , m_preferredDashAudioYdCode(std::move(preferredDashAudioYdCode))
{
}

void MediaInfo::copyFrom(MediaInfo *other)
{
    if (other == nullptr)
        return;
    m_mediaType = other->m_mediaType;
    m_format = other->m_format;
    m_vResolution = other->m_vResolution;
    m_vAspect = other->m_vAspect;
    m_vCodec = other->m_vCodec;
    m_vBitRate = other->m_vBitRate;
    m_vFrameRate = other->m_vFrameRate;
    m_aCodec = other->m_aCodec;
    m_aBitRate = other->m_aBitRate;
    m_aSampleRate = other->m_aSampleRate;
}

bool MediaInfo::isValid() const
{
    return !m_format.isEmpty();
}

QString MediaInfo::resolutionStringX(QSize size)
{
    return QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
}

QString MediaInfo::resolutionStringP(QSize size)
{
    return QStringLiteral("%1P").arg(size.height());
}

QString MediaInfo::resolutionStringMix(QSize size)
{
    // Truncating divisions: 854 × 480 and 426 × 240 count as 16:9.
    const bool isStandard =
        std::find(standardHeights.begin(), standardHeights.end(), size.height()) != standardHeights.end();
    return isStandard && size.width() / 16 == size.height() / 9 ? resolutionStringP(size) : resolutionStringX(size);
}

QString MediaInfo::resolutionStringEx()
{
    QString label = m_oriResStr.toUpper();
    if (label.isEmpty())
        label = resolutionStringMix(m_vResolution);
    return m_is3D ? label + QLatin1String(" (3D)") : label;
}

void MediaInfo::loadFormatSuffixMap()
{
    FILE_FORMAT_SUFFIX_MAP.insert(QStringLiteral("mp4"), QStringLiteral("mp4"));
}

QString MediaInfo::fileSuffix(QString format)
{
    if (FILE_FORMAT_SUFFIX_MAP.isEmpty())
        loadFormatSuffixMap();
    return FILE_FORMAT_SUFFIX_MAP.value(format, QLatin1String(""));
}

bool MediaInfo::operator<(const MediaInfo &other) const
{
    const qint64 rank = PictureRank::sizeKey(*this);
    const qint64 otherRank = PictureRank::sizeKey(other);
    if (rank != otherRank)
        return rank < otherRank;
    if (m_format == other.m_format)
        return m_is3D && !other.m_is3D;
    return m_format < other.m_format;
}

MediaType MediaInfo::getMediaType() const
{
    return m_mediaType;
}

void MediaInfo::setMediaType(MediaType type)
{
    m_mediaType = type;
}

QString MediaInfo::getFormat() const
{
    return m_format;
}

void MediaInfo::setFormat(QString format)
{
    m_format = std::move(format);
}

QSize MediaInfo::getVResolution() const
{
    return m_vResolution;
}

void MediaInfo::setVResolution(QSize size)
{
    m_vResolution = size;
}

QSize MediaInfo::getVAspect() const
{
    return m_vAspect;
}

void MediaInfo::setAspect(QSize aspect)
{
    m_vAspect = aspect;
}

QString MediaInfo::getVCodec() const
{
    return m_vCodec;
}

void MediaInfo::setVCodec(QString codec)
{
    m_vCodec = std::move(codec);
}

int MediaInfo::getVBitRate() const
{
    return m_vBitRate;
}

void MediaInfo::setVBitRate(int bitRate)
{
    m_vBitRate = bitRate;
}

double MediaInfo::getVFrameRate() const
{
    return m_vFrameRate;
}

void MediaInfo::setVFrameRate(double rate)
{
    m_vFrameRate = rate;
}

QString MediaInfo::getACodec() const
{
    return m_aCodec;
}

void MediaInfo::setACodec(QString codec)
{
    m_aCodec = std::move(codec);
}

int MediaInfo::getABitRate() const
{
    return m_aBitRate;
}

void MediaInfo::setABitRate(int bitRate)
{
    m_aBitRate = bitRate;
}

int MediaInfo::getASampleRate() const
{
    return m_aSampleRate;
}

void MediaInfo::setASampleRate(int sampleRate)
{
    m_aSampleRate = sampleRate;
}

bool MediaInfo::isDash() const
{
    return m_isDash;
}

void MediaInfo::setDash(bool dash)
{
    m_isDash = dash;
}

bool MediaInfo::is3D() const
{
    return m_is3D;
}

void MediaInfo::set3D(bool stereoscopic)
{
    m_is3D = stereoscopic;
}

QString MediaInfo::getOriResStr() const
{
    return m_oriResStr;
}

void MediaInfo::setOriResStr(const QString &label)
{
    m_oriResStr = label;
}

QString MediaInfo::getPreferredDashAudioYdCode() const
{
    return m_preferredDashAudioYdCode;
}

void MediaInfo::setPreferredDashAudioYdCode(QString ydCode)
{
    m_preferredDashAudioYdCode = std::move(ydCode);
}

} // namespace Nox
