#include <nox/model/MediaList.h>

#include <nox/model/PictureRank.h>
#include <nox/model/RecordAccess.h>

#include <QVector>

#include <algorithm>
#include <iterator>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using Nox::MediaProfile;
using Nox::RecordAccess;
using Index = QList<MediaProfile>::size_type;

bool sharesPicture(const MediaProfile &a, const MediaProfile &b)
{
    return RecordAccess::resolution(a) == RecordAccess::resolution(b) && RecordAccess::is3D(a) == RecordAccess::is3D(b)
        && RecordAccess::format(a) == RecordAccess::format(b);
}

// A video stream whose picture can be compared with its neighbour's.
bool isComparable(const MediaProfile &profile)
{
    const bool isUnknownLarge =
        RecordAccess::resolution(profile).width() <= 0 && Nox::PictureRank::isAbove1080p(RecordAccess::label(profile));
    return RecordAccess::mediaType(profile) == Nox::MEDIA_TYPE_VIDEO && !isUnknownLarge;
}

// Moves an entry to a place whose own entry is no longer needed.
void moveEntry(QList<MediaProfile> &list, Index from, Index to)
{
    // With Qt 5 a list holds pointers: to exchange two of them is faster than to move a profile.
    if constexpr (std::is_same_v<QList<MediaProfile>, QVector<MediaProfile>>)
        list.begin()[to] = std::move(list.begin()[from]);
    else
        list.swapItemsAt(from, to);
}

// Leaves the entries at these positions, which ascend. Of a list that shares its entries with a copy, only what stays
// is copied.
void keepOnly(QList<MediaProfile> &list, const std::vector<Index> &positions)
{
    const auto count = static_cast<Index>(positions.size());
    if (count == list.size())
        return;
    if (list.isDetached()) {
        Index end = 0;
        for (const Index position : positions) {
            if (position != end)
                moveEntry(list, position, end);
            ++end;
        }
        list.erase(list.begin() + end, list.end());
    } else {
        QList<MediaProfile> kept;
        kept.reserve(count);
        for (const Index position : positions)
            kept.append(std::as_const(list).at(position));
        list = std::move(kept);
    }
}

} // namespace

void MediaListRemoveDuplicatedResolutions(QList<MediaProfile> &list)
{
    const QList<MediaProfile> &entries = list;
    const Index last = entries.size() - 1;
    std::vector<Index> kept;
    kept.reserve(static_cast<size_t>(entries.size()));
    for (Index current = 0; current < last;) {
        Index next = current + 1;
        if (isComparable(entries.at(current))) {
            // The last entry takes no part: it is never removed, nor anything on its account.
            for (; next < last && sharesPicture(entries.at(current), entries.at(next)); ++next) {
                if (RecordAccess::isDash(entries.at(current)))
                    current = next;
            }
        }
        kept.push_back(current);
        current = next;
    }
    if (last >= 0)
        kept.push_back(last);
    keepOnly(list, kept);
}

void MediaListRemoveAudio(QList<MediaProfile> &list)
{
    const auto isDropped = [](const MediaProfile &entry) {
        return RecordAccess::mediaType(entry) == Nox::MEDIA_TYPE_AUDIO || RecordAccess::name(entry).isEmpty();
    };
    if (std::none_of(list.cbegin(), list.cend(), isDropped))
        return;
    if (list.isDetached()) {
        list.erase(std::remove_if(list.begin(), list.end(), isDropped), list.end());
    } else {
        QList<MediaProfile> kept;
        kept.reserve(list.size());
        std::remove_copy_if(list.cbegin(), list.cend(), std::back_inserter(kept), isDropped);
        list = std::move(kept);
    }
}

MediaProfile MediaListGetStreamByYdCode(const QList<MediaProfile> &list, const QString &ydCode)
{
    const auto found = std::find_if(list.cbegin(), list.cend(), [&ydCode](const MediaProfile &profile) {
        return RecordAccess::name(profile) == ydCode;
    });
    return found != list.cend() ? *found : MediaProfile();
}
