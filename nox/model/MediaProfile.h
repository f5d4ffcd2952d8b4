#pragma once

#include <nox/model/MediaInfo.h>

namespace Nox {

/**
 * One downloadable stream of a web page: a MediaInfo with the tool's format code, the stream's URL
 * and size, a description, and three choice flags that belong to the host.
 *
 * The parser makes profiles, WebMediaInfo lists them, and the host passes one to
 * WebMediaDownloader::download(). A value type.
 */
class NOX_EXPORT MediaProfile final : public MediaInfo
{
public:
    /** An invalid profile: MediaInfo's defaults, empty name and description, null URL, size 0. */
    MediaProfile();

    /**
     * A profile with its description given; DASH, 3D and "same as source" are off, quality label and
     * preferred audio code are empty, the URL is null and the size 0.
     * @param name tool format code
     * @param description free text
     * @param type kind of stream
     * @param format container format
     * @param vResolution picture size in pixels
     * @param vAspect picture aspect
     * @param vCodec video codec name
     * @param vBitRate video bit rate in bits per second
     * @param vFrameRate frames per second
     * @param aCodec audio codec name
     * @param aBitRate audio bit rate in bits per second
     * @param aSampleRate audio sample rate in hertz
     * @param autoResolution host's choice flag
     * @param autoBitRate host's choice flag
     */
    MediaProfile(QString name, QString description, MediaType type, QString format, QSize vResolution, QSize vAspect,
                 QString vCodec, int vBitRate, double vFrameRate, QString aCodec, int aBitRate, int aSampleRate,
                 bool autoResolution, bool autoBitRate);

    /**
     * Whether both describe the same choice. Audio bit rate, URL, size, description, DASH and 3D
     * flags, quality label and preferred audio code are not compared. A NaN frame rate is never equal.
     */
    bool operator==(const MediaProfile &other) const;

    /** One line of text with name, description, kind and technical data, for logs. */
    QString toString() const;

    QString getName() const;                     ///< Tool format code (such as 137); empty by default.
    void setName(QString name);                  ///< Sets the tool format code.
    QString getUrl() const;                      ///< Direct URL of the stream; null by default.
    void setUrl(QString url);                    ///< Sets the stream's URL.
    qint64 getSize() const;                      ///< Size in bytes; 0 until the host sets it.
    void setSize(qint64 size);                   ///< Sets the size in bytes.
    QString getDescription() const;              ///< Free text; the parser stores the page's description.
    void setDescription(QString description);    ///< Sets the free text.
    bool isSameAsSource() const;                 ///< Host's choice flag; off by default.
    void setSameAsSource(bool sameAsSource);     ///< Sets the host's choice flag.
    bool isAutoResolution() const;               ///< Host's choice flag; off by default.
    void setAutoResolution(bool autoResolution); ///< Sets the host's choice flag.
    bool isAutoBitRate() const;                  ///< Host's choice flag; off by default.
    void setAutoBitRate(bool autoBitRate);       ///< Sets the host's choice flag.

private:
    friend class RecordFields;

    QString m_name = QLatin1String("");
    QString m_url;
    qint64 m_size = 0;
    QString m_description = QLatin1String("");
    bool m_sameAsSource = false;
    bool m_autoResolution = false;
    bool m_autoBitRate = false;
};

} // namespace Nox
