#include <nox/model/MediaProfile.h>

#include <nox/model/RecordText.h>

#include <utility>

namespace Nox {

MediaProfile::MediaProfile() = default;

MediaProfile::MediaProfile(QString name, QString description, MediaType type, QString format, QSize vResolution,
                           QSize vAspect, QString vCodec, int vBitRate, double vFrameRate, QString aCodec, int aBitRate,
                           int aSampleRate, bool autoResolution, bool autoBitRate)
    : MediaInfo(type, std::move(format), vResolution, vAspect, std::move(vCodec), vBitRate, vFrameRate,
                std::move(aCodec), aBitRate, aSampleRate, false, false, QLatin1String(""), QLatin1String(""))
    , m_name(std::move(name))
    , m_description(std::move(description))
    , m_autoResolution(autoResolution)
    , m_autoBitRate(autoBitRate)
{
}

bool MediaProfile::operator==(const MediaProfile &other) const
{
    return m_name == other.m_name && getMediaType() == other.getMediaType() && getFormat() == other.getFormat()
        && getVResolution() == other.getVResolution() && getVAspect() == other.getVAspect()
        && getVCodec() == other.getVCodec() && getVBitRate() == other.getVBitRate()
        && getVFrameRate() == other.getVFrameRate() && getACodec() == other.getACodec()
        && getASampleRate() == other.getASampleRate() && m_autoBitRate == other.m_autoBitRate
        && m_autoResolution == other.m_autoResolution && m_sameAsSource == other.m_sameAsSource;
}

QString MediaProfile::toString() const
{
    // With one arg() after the other, so that a marker inside a name is replaced as well.
    const QString text = QLatin1String("Name = %1, description = %2, ") + RecordText::streamTemplate;
    return RecordText::withStreamData(text.arg(m_name).arg(m_description), *this);
}

QString MediaProfile::getName() const
{
    return m_name;
}

void MediaProfile::setName(QString name)
{
    m_name = std::move(name);
}

QString MediaProfile::getUrl() const
{
    return m_url;
}

void MediaProfile::setUrl(QString url)
{
    m_url = std::move(url);
}

qint64 MediaProfile::getSize() const
{
    return m_size;
}

void MediaProfile::setSize(qint64 size)
{
    m_size = size;
}

QString MediaProfile::getDescription() const
{
    return m_description;
}

void MediaProfile::setDescription(QString description)
{
    m_description = std::move(description);
}

bool MediaProfile::isSameAsSource() const
{
    return m_sameAsSource;
}

void MediaProfile::setSameAsSource(bool sameAsSource)
{
    m_sameAsSource = sameAsSource;
}

bool MediaProfile::isAutoResolution() const
{
    return m_autoResolution;
}

void MediaProfile::setAutoResolution(bool autoResolution)
{
    m_autoResolution = autoResolution;
}

bool MediaProfile::isAutoBitRate() const
{
    return m_autoBitRate;
}

void MediaProfile::setAutoBitRate(bool autoBitRate)
{
    m_autoBitRate = autoBitRate;
}

} // namespace Nox
