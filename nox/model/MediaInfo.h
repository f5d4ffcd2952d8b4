#pragma once

#include <nox/Export.h>
#include <nox/model/MediaType.h>

#include <QMap>
#include <QSize>
#include <QString>

namespace Nox {

/**
 * Description of one media stream: kind, container, picture, sound and quality label.
 *
 * A value type, the common base of MediaProfile and FileMediaInfo. A text that has not been set is a
 * null string. Copies are independent. A record must not be shared between threads without a lock.
 *
 * The destructor is not virtual: destroy a record through its own type.
 */
class NOX_EXPORT MediaInfo
{
public:
    /** An empty record: unknown kind, no format, picture size -1 × -1, aspect 0 × 0, all rates 0. */
    MediaInfo();

    /**
     * A record with every field given.
     * @param type kind of stream
     * @param format container format, upper case in the library's own records (MP4, WEBM)
     * @param vResolution picture size in pixels, `QSize()` when unknown
     * @param vAspect picture aspect as a width and height pair
     * @param vCodec video codec name
     * @param vBitRate video bit rate in bits per second
     * @param vFrameRate frames per second
     * @param aCodec audio codec name
     * @param aBitRate audio bit rate in bits per second
     * @param aSampleRate audio sample rate in hertz
     * @param isDash whether the stream holds only video or only audio
     * @param is3D whether the picture is stereoscopic
     * @param oriResStr quality label
     * @param preferredDashAudioYdCode tool format code of the audio stream to join with this one
     */
    MediaInfo(MediaType type, QString format, QSize vResolution, QSize vAspect, QString vCodec, int vBitRate,
              double vFrameRate, QString aCodec, int aBitRate, int aSampleRate, bool isDash, bool is3D,
              QString oriResStr, QString preferredDashAudioYdCode);

    /**
     * Copies the stream's technical description from @p other: kind, format, resolution, aspect, and
     * the codecs and rates of video and audio. DASH flag, 3D flag, quality label and preferred audio
     * code of this record stay as they are.
     * @param other record to read; not owned. A null pointer changes nothing.
     */
    virtual void copyFrom(MediaInfo *other);

    /** Whether the record describes a stream at all: its format is not empty. */
    virtual bool isValid() const;

    /** Label "WxH" of @p size, such as 1280x720; -1x-1 for an unknown size. */
    static QString resolutionStringX(QSize size);

    /** Label "HP" of @p size, such as 720P. */
    static QString resolutionStringP(QSize size);

    /** The P form for a standard 16:9 size (heights 144 to 1080), else the X form. */
    static QString resolutionStringMix(QSize size);

    /**
     * Label for display: the quality label in upper case, or the Mix form of the picture size when
     * there is none; " (3D)" follows for a stereoscopic stream.
     */
    QString resolutionStringEx();

    /** Fills #FILE_FORMAT_SUFFIX_MAP with the library's entries. Not thread-safe. */
    static void loadFormatSuffixMap();

    /**
     * File-name suffix for a container format.
     * @param format the key; letter case counts
     * @return the suffix without a dot, or an empty string for an unknown format
     *
     * Fills #FILE_FORMAT_SUFFIX_MAP when it is empty. Not thread-safe.
     */
    static QString fileSuffix(QString format);

    /**
     * Orders records by the size of their picture, then by format in code-unit order; at equal format a 3D stream is
     * less than a 2D one. No other field is compared.
     *
     * A stream labelled ">1080p" without a known width ranks just above 1920 × 1080. This is a strict
     * weak ordering.
     */
    bool operator<(const MediaInfo &other) const;

    MediaType getMediaType() const;          ///< Kind of stream; #MEDIA_TYPE_UNKNOWN by default.
    void setMediaType(MediaType type);       ///< Sets the kind of stream.
    QString getFormat() const;               ///< Container format such as MP4; null by default.
    void setFormat(QString format);          ///< Sets the container format.
    QSize getVResolution() const;            ///< Picture size in pixels; -1 × -1 when unknown.
    void setVResolution(QSize size);         ///< Sets the picture size in pixels.
    QSize getVAspect() const;                ///< Picture aspect as width and height; 0 × 0 by default.
    void setAspect(QSize aspect);            ///< Sets the picture aspect.
    QString getVCodec() const;               ///< Video codec name; null by default.
    void setVCodec(QString codec);           ///< Sets the video codec name.
    int getVBitRate() const;                 ///< Video bit rate in bits per second; 0 by default.
    void setVBitRate(int bitRate);           ///< Sets the video bit rate in bits per second.
    double getVFrameRate() const;            ///< Frames per second; 0 by default.
    void setVFrameRate(double rate);         ///< Sets the frames per second.
    QString getACodec() const;               ///< Audio codec name; null by default.
    void setACodec(QString codec);           ///< Sets the audio codec name.
    int getABitRate() const;                 ///< Audio bit rate in bits per second; 0 by default.
    void setABitRate(int bitRate);           ///< Sets the audio bit rate in bits per second.
    int getASampleRate() const;              ///< Audio sample rate in hertz; 0 by default.
    void setASampleRate(int sampleRate);     ///< Sets the audio sample rate in hertz.
    bool isDash() const;                     ///< Whether the stream holds only video or only audio.
    void setDash(bool dash);                 ///< Sets the DASH flag.
    bool is3D() const;                       ///< Whether the picture is stereoscopic.
    void set3D(bool stereoscopic);           ///< Sets the 3D flag.
    QString getOriResStr() const;            ///< Quality label as derived from the tool; null by default.
    void setOriResStr(const QString &label); ///< Sets the quality label.
    /** Tool format code of the audio stream to join with this DASH video; empty by default. */
    QString getPreferredDashAudioYdCode() const;
    /** Names the audio stream to join with this DASH video. Only hosts do this, never the library. */
    void setPreferredDashAudioYdCode(QString ydCode);

    /**
     * Container format to file-name suffix. Filled on first use. Not thread-safe.
     */
    static QMap<QString, QString> FILE_FORMAT_SUFFIX_MAP;

private:
    friend class RecordFields;

    MediaType m_mediaType = MEDIA_TYPE_UNKNOWN;
    QString m_format;
    QSize m_vResolution;
    QSize m_vAspect{0, 0};
    QString m_vCodec;
    int m_vBitRate = 0;
    double m_vFrameRate = 0.0;
    QString m_aCodec;
    int m_aBitRate = 0;
    int m_aSampleRate = 0;
    bool m_isDash = false;
    bool m_is3D = false;
    QString m_oriResStr;
    QString m_preferredDashAudioYdCode = QLatin1String("");
};

} // namespace Nox
