#include <nox/model/WebMediaInfo.h>

#include <nox/model/PictureRank.h>
#include <nox/model/RecordFields.h>

#include <QStringView>

#include <algorithm>
#include <utility>
#include <vector>

namespace Nox {

namespace {

using Index = QList<MediaProfile>::size_type;

// What the order of profiles depends on, and the present position of the profile.
struct SortKey {
    qint64 size;
    quint64 formatHead;
    const QString *format;
    bool isHeadEnough;
    bool is3D;
    Index position;
};

// The first code units of a format as one number. Most formats have no more than that, and comparing numbers is faster
// than reading the texts, above all with Qt 5.
constexpr qsizetype headLength = 4;

quint64 headOf(const QString &format)
{
    quint64 head = 0;
    for (QString::size_type i = 0; i < headLength; ++i)
        head = head << 16 | (i < format.size() ? format.at(i).unicode() : 0U);
    return head;
}

std::vector<SortKey> sortKeys(const QList<MediaProfile> &profiles)
{
    std::vector<SortKey> keys;
    keys.reserve(static_cast<size_t>(profiles.size()));
    for (const MediaProfile &profile : profiles) {
        const QString &format = RecordFields::format(profile);
        const bool isHeadEnough = format.size() <= headLength && !format.contains(QChar(QChar::Null));
        keys.push_back({PictureRank::sizeKey(profile), headOf(format), &format, isHeadEnough,
                        RecordFields::is3D(profile), static_cast<Index>(keys.size())});
    }
    return keys;
}

// MediaInfo's order in reverse.
bool isBetter(const SortKey &a, const SortKey &b)
{
    if (a.size != b.size)
        return a.size > b.size;
    if (a.formatHead != b.formatHead)
        return a.formatHead > b.formatHead;
    if (const int order = a.isHeadEnough && b.isHeadEnough ? 0 : a.format->compare(*b.format); order != 0)
        return order > 0;
    return !a.is3D && b.is3D;
}

// Position of the first profile with this stream URL, or -1.
Index findByUrl(const QList<MediaProfile> &profiles, const QString &url)
{
    const auto found = std::find_if(profiles.cbegin(), profiles.cend(),
                                    [&url](const MediaProfile &profile) { return RecordFields::url(profile) == url; });
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
    std::vector<SortKey> keys = sortKeys(m_profiles);
    std::stable_sort(keys.begin(), keys.end(), isBetter);

    std::vector<Index> places(keys.size()); // of each profile as they stand
    for (size_t place = 0; place < keys.size(); ++place)
        places[static_cast<size_t>(keys[place].position)] = static_cast<Index>(place);
    // Each swap brings one profile to its place, where it stays.
    for (Index i = 0; i < m_profiles.size(); ++i) {
        Index &place = places[static_cast<size_t>(i)];
        while (place != i) {
            m_profiles.swapItemsAt(i, place);
            std::swap(place, places[static_cast<size_t>(place)]);
        }
    }
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
