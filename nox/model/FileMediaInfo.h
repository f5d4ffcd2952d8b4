#pragma once

#include <nox/model/MediaInfo.h>

namespace Nox {

/**
 * Description of a media file on the local disk, for the host's own use. The library does not use it. A value type.
 */
class NOX_EXPORT FileMediaInfo final : public MediaInfo
{
public:
    /** An empty record: MediaInfo's defaults, null paths, size and duration 0. */
    FileMediaInfo();

    /** Whether at least one stream kind is known: the video or the audio codec is not empty. */
    bool isValidVideo();

    /** Does nothing and returns true. The host describes files itself. */
    bool analyzeMediaFile();

    /** One line of text with path, duration, kind and technical data, for logs. */
    QString toString() const;

    QString getMediaFile() const;        ///< Path of the media file; null by default.
    void setMediaFile(QString file);     ///< Sets the path of the media file.
    QString getThumbnailFile() const;    ///< Path of a thumbnail picture; null by default.
    void setThumbnailFile(QString file); ///< Sets the path of the thumbnail picture.
    qint64 getFileSize() const;          ///< Size of the file in bytes; 0 by default.
    void setFileSize(qint64 size);       ///< Sets the size in bytes.
    qint64 getDuration() const;          ///< Duration as the host measures it; 0 by default.
    void setDuration(qint64 duration);   ///< Sets the duration.

private:
    QString m_mediaFile;
    QString m_thumbnailFile;
    qint64 m_fileSize = 0;
    qint64 m_duration = 0;
};

} // namespace Nox
