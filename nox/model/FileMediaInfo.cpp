#include <nox/model/FileMediaInfo.h>

#include <nox/model/RecordText.h>

#include <utility>

namespace Nox {

FileMediaInfo::FileMediaInfo() = default;

bool FileMediaInfo::isValidVideo()
{
    return !getVCodec().isEmpty() || !getACodec().isEmpty();
}

bool FileMediaInfo::analyzeMediaFile()
{
    return true;
}

QString FileMediaInfo::toString() const
{
    // With one arg() after the other, so that a marker inside a path is replaced as well.
    const QString text = QLatin1String("MediaFile = %1, duration = %2, ") + RecordText::streamTemplate;
    return RecordText::withStreamData(text.arg(m_mediaFile).arg(m_duration), *this);
}

QString FileMediaInfo::getMediaFile() const
{
    return m_mediaFile;
}

void FileMediaInfo::setMediaFile(QString file)
{
    m_mediaFile = std::move(file);
}

QString FileMediaInfo::getThumbnailFile() const
{
    return m_thumbnailFile;
}

void FileMediaInfo::setThumbnailFile(QString file)
{
    m_thumbnailFile = std::move(file);
}

qint64 FileMediaInfo::getFileSize() const
{
    return m_fileSize;
}

void FileMediaInfo::setFileSize(qint64 size)
{
    m_fileSize = size;
}

qint64 FileMediaInfo::getDuration() const
{
    return m_duration;
}

void FileMediaInfo::setDuration(qint64 duration)
{
    m_duration = duration;
}

} // namespace Nox
