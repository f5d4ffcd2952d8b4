#include <nox/model/MediaList.h>

#include <nox/model/PictureRank.h>
#include <nox/model/RecordFields.h>

#include <QVector>

#include <algorithm>
#include <iterator>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using Nox::MediaProfile;
using Nox::RecordFields;
using Index = QList<MediaProfile>::size_type;

bool sharesPicture(const MediaProfile &a, const MediaProfile &b)
{
    return RecordFields::resolution(a) == RecordFields::resolution(b) && RecordFields::is3D(a) == RecordFields::is3D(b)
        && RecordFields::format(a) == RecordFields::format(b);
}

// Whether this is a video stream whose picture size is known.
bool isComparable(const MediaProfile &profile)
{
    const bool isUnknownLarge =
        RecordFields::resolution(profile).width() <= 0 && Nox::PictureRank::isAbove1080p(RecordFields::label(profile));
    return RecordFields::mediaType(profile) == Nox::MEDIA_TYPE_VIDEO && !isUnknownLarge;
}

// Moves an entry to a position whose own entry is no longer needed.
void moveEntry(QList<MediaProfile> &list, Index from, Index to)
{
    // With Qt 5 a list contains pointers: swapping two of them is faster than moving a profile.
    if constexpr (std::is_same_v<QList<MediaProfile>, QVector<MediaProfile>>)
        list.begin()[to] = std::move(list.begin()[from]);
    else
        list.swapItemsAt(from, to);
}

// Removes all entries except the ones at these positions, which ascend. If the list shares its entries with a copy,
// only the remaining ones are copied.
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
            // The last entry is never removed, and it never replaces another one.
            for (; next < last && sharesPicture(entries.at(current), entries.at(next)); ++next) {
                if (RecordFields::isDash(entries.at(current)))
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
        return RecordFields::mediaType(entry) == Nox::MEDIA_TYPE_AUDIO || RecordFields::name(entry).isEmpty();
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
        return RecordFields::name(profile) == ydCode;
    });
    return found != list.cend() ? *found : MediaProfile();
}
