#include <nox/model/WebMediaInfo.h>

#include <nox/model/ListRearrangement.h>
#include <nox/model/PictureRank.h>

#include <QSet>

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>
#include <vector>

namespace Nox {

using ListRearrangement::Index;

namespace {

// Position of the first profile with this stream URL, or -1.
Index findByUrl(const QList<MediaProfile> &profiles, const QString &url)
{
    const auto found = std::find_if(profiles.cbegin(), profiles.cend(),
                                    [&url](const MediaProfile &profile) { return profile.getUrl() == url; });
    return found != profiles.cend() ? static_cast<Index>(found - profiles.cbegin()) : -1;
}

// The distinct formats of a list, in the order of their code units.
std::vector<QString> sortedFormats(const QList<MediaProfile> &profiles)
{
    QSet<QString> distinct;
    for (const MediaProfile &profile : profiles)
        distinct.insert(profile.getFormat());
    std::vector<QString> formats(distinct.cbegin(), distinct.cend());
    std::sort(formats.begin(), formats.end());
    return formats;
}

/*
 * The positions of the profiles, best first by the ordering of MediaInfo. What decides is packed into
 * one number for each profile, since sorting the records themselves would move every field of them
 * again and again. Equal profiles keep their order.
 */
std::vector<Index> bestFirstOrder(const QList<MediaProfile> &profiles)
{
    struct Entry {
        quint64 key;
        Index position;
    };
    const std::vector<QString> formats = sortedFormats(profiles);
    std::vector<Entry> entries;
    entries.reserve(static_cast<size_t>(profiles.size()));
    for (const MediaProfile &profile : profiles) {
        const auto format = std::lower_bound(formats.begin(), formats.end(), profile.getFormat()) - formats.begin();
        const auto rank = static_cast<quint64>(PictureRank::of(profile) - std::numeric_limits<qint32>::min());
        const quint64 flat = profile.is3D() ? 0 : 1;
        entries.push_back({rank << 32 | static_cast<quint64>(format) << 1 | flat, static_cast<Index>(entries.size())});
    }
    std::sort(entries.begin(), entries.end(),
              [](const Entry &a, const Entry &b) { return a.key != b.key ? a.key > b.key : a.position < b.position; });

    std::vector<Index> order;
    order.reserve(entries.size());
    std::transform(entries.begin(), entries.end(), std::back_inserter(order),
                   [](const Entry &entry) { return entry.position; });
    return order;
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
    ListRearrangement::reorder(m_profiles, bestFirstOrder(std::as_const(m_profiles)));
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
