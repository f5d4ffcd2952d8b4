#pragma once

#include <nox/Export.h>
#include <nox/model/MediaProfile.h>

#include <QList>
#include <QString>

namespace Nox {

/**
 * Description of one web page: title, duration, thumbnail, streams, and the tool's error message.
 *
 * A value type: copies are cheap (the profile list is shared until one side changes it) and independent.
 * The type is not registered with Qt's meta-type system. For a queued connection with Qt 5 the host has to register it.
 */
class NOX_EXPORT WebMediaInfo
{
public:
    /** An empty record. */
    WebMediaInfo();

    /** An empty record for the page at @p url. */
    WebMediaInfo(QString url);

    /** Whether the record has a URL, a title and at least one profile. */
    bool isValid() const;

    /** Appends a copy of @p profile to the list. @return true */
    bool addMediaProfile(MediaProfile profile);

    /** Puts a copy of @p profile in front of the list. @return true */
    bool addMediaProfileToHead(MediaProfile profile);

    /**
     * Sorts the streams best first: larger picture, then format in reverse code-unit order, then 2D
     * before 3D. Audio streams and streams of unknown size come last; streams that are equal in all
     * three have no defined order.
     */
    void sortProfileDesc();

    /**
     * Records the size of a stream.
     * @param url the stream's URL; the first profile with exactly this URL is changed
     * @param size size in bytes
     * @return whether a profile has that URL
     */
    bool setProfileSize(QString url, qint64 size);

    /** Size in bytes of the first profile whose stream URL is exactly @p url, or -1 if none has it. */
    qint64 getProfileSize(QString url) const;

    QString getUrl() const;                          ///< The page's URL; null by default.
    void setUrl(QString url);                        ///< Sets the page's URL.
    QString getTitle() const;                        ///< The page's title; null by default.
    void setTitle(QString title);                    ///< Sets the title.
    QString getFileName() const;                     ///< File name made from the title, without a suffix.
    void setFileName(QString fileName);              ///< Sets the file name.
    qint64 getDuration() const;                      ///< Duration in seconds; 0 when unknown.
    void setDuration(qint64 seconds);                ///< Sets the duration in seconds.
    QString getThumbnailUrl() const;                 ///< URL of the thumbnail picture; null by default.
    void setThumbnailUrl(QString url);               ///< Sets the thumbnail's URL.
    QString getThumbnailFile() const;                ///< Local thumbnail file; only the host sets it.
    void setThumbnailFile(QString file);             ///< Sets the local thumbnail file.
    MediaType getMediaType() const;                  ///< Always #MEDIA_TYPE_UNKNOWN.
    QList<MediaProfile> getMediaProfileList() const; ///< A copy of the list of streams.
    QString errorDetail() const;                     ///< The tool's error text; null by default.
    void setErrorDetail(const QString &detail);      ///< Sets the tool's error text.

private:
    QString m_url;
    QString m_title;
    QString m_fileName;
    qint64 m_duration = 0;
    QString m_thumbnailUrl;
    QString m_thumbnailFile;
    MediaType m_mediaType = MEDIA_TYPE_UNKNOWN;
    QList<MediaProfile> m_profiles;
    QString m_errorDetail;
};

} // namespace Nox
