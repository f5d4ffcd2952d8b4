#include <nox/model/WebMediaInfo.h>

#include <nox/model/BestFirst.h>
#include <nox/model/ListRearrangement.h>
#include <nox/model/RecordAccess.h>

#include <algorithm>
#include <utility>

namespace Nox {

using ListRearrangement::Index;

namespace {

// Position of the first profile with this stream URL, or -1.
Index findByUrl(const QList<MediaProfile> &profiles, const QString &url)
{
    const auto found = std::find_if(profiles.cbegin(), profiles.cend(),
                                    [&url](const MediaProfile &profile) { return RecordAccess::url(profile) == url; });
    return found != profiles.cend() ? static_cast<Index>(found - profiles.cbegin()) : -1;
}

} // namespace

WebMediaInfo::WebMediaInfo() = default;

WebMediaInfo::WebMediaInfo(QString url)
    : m_url(std::move(url))
{
}

bool WebMediaInfo::isValid() const
{
    return !m_url.isEmpty() && !m_title.isEmpty() && !m_profiles.isEmpty();
}

bool WebMediaInfo::addMediaProfile(MediaProfile profile)
{
    m_profiles.append(std::move(profile));
    return true;
}

bool WebMediaInfo::addMediaProfileToHead(MediaProfile profile)
{
    m_profiles.prepend(std::move(profile));
    return true;
}

void WebMediaInfo::sortProfileDesc()
{
    const QList<MediaProfile> &profiles = m_profiles;
    BestFirst bestFirst(profiles.size());
    if (ListRearrangement::isArray || m_profiles.isDetached()) {
        for (const MediaProfile &profile : profiles)
            bestFirst.add(profile);
    } else {
        // Profiles that have to be copied anyway are looked at on the way.
        QList<MediaProfile> copy;
        copy.reserve(profiles.size());
        for (const MediaProfile &profile : profiles) {
            copy.append(profile);
            bestFirst.add(copy.constLast());
        }
        m_profiles = copy;
    }
    ListRearrangement::reorder(m_profiles, bestFirst.order());
}

bool WebMediaInfo::setProfileSize(QString url, qint64 size)
{
    const Index position = findByUrl(m_profiles, url);
    if (position < 0)
        return false;
    m_profiles[position].setSize(size);
    return true;
}

qint64 WebMediaInfo::getProfileSize(QString url) const
{
    const Index position = findByUrl(m_profiles, url);
    return position < 0 ? -1 : m_profiles.at(position).getSize();
}

QString WebMediaInfo::getUrl() const
{
    return m_url;
}

void WebMediaInfo::setUrl(QString url)
{
    m_url = std::move(url);
}

QString WebMediaInfo::getTitle() const
{
    return m_title;
}

void WebMediaInfo::setTitle(QString title)
{
    m_title = std::move(title);
}

QString WebMediaInfo::getFileName() const
{
    return m_fileName;
}

void WebMediaInfo::setFileName(QString fileName)
{
    m_fileName = std::move(fileName);
}

qint64 WebMediaInfo::getDuration() const
{
    return m_duration;
}

void WebMediaInfo::setDuration(qint64 seconds)
{
    m_duration = seconds;
}

QString WebMediaInfo::getThumbnailUrl() const
{
    return m_thumbnailUrl;
}

void WebMediaInfo::setThumbnailUrl(QString url)
{
    m_thumbnailUrl = std::move(url);
}

QString WebMediaInfo::getThumbnailFile() const
{
    return m_thumbnailFile;
}

void WebMediaInfo::setThumbnailFile(QString file)
{
    m_thumbnailFile = std::move(file);
}

MediaType WebMediaInfo::getMediaType() const
{
    return m_mediaType;
}

QList<MediaProfile> WebMediaInfo::getMediaProfileList() const
{
    return m_profiles;
}

QString WebMediaInfo::errorDetail() const
{
    return m_errorDetail;
}

void WebMediaInfo::setErrorDetail(const QString &detail)
{
    m_errorDetail = detail;
}

} // namespace Nox
