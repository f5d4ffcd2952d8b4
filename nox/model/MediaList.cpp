#include <nox/model/MediaList.h>

#include <nox/model/PictureRank.h>
#include <nox/model/RecordFields.h>

#include <algorithm>
#include <iterator>
#include <utility>

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

} // namespace

void MediaListRemoveDuplicatedResolutions(QList<MediaProfile> &list)
{
    const QList<MediaProfile> entries = list;
    const Index last = entries.size() - 1;
    QList<MediaProfile> kept;
    kept.reserve(entries.size());
    for (Index current = 0; current < last;) {
        Index next = current + 1;
        if (isComparable(entries.at(current))) {
            // The last entry is never removed, and it never replaces another one.
            for (; next < last && sharesPicture(entries.at(current), entries.at(next)); ++next) {
                if (RecordFields::isDash(entries.at(current)))
                    current = next;
            }
        }
        kept.append(entries.at(current));
        current = next;
    }
    if (last >= 0)
        kept.append(entries.at(last));
    list = std::move(kept);
}

void MediaListRemoveAudio(QList<MediaProfile> &list)
{
    const auto isDropped = [](const MediaProfile &entry) {
        return RecordFields::mediaType(entry) == Nox::MEDIA_TYPE_AUDIO || RecordFields::name(entry).isEmpty();
    };
    QList<MediaProfile> kept;
    kept.reserve(list.size());
    std::remove_copy_if(list.cbegin(), list.cend(), std::back_inserter(kept), isDropped);
    list = std::move(kept);
}

MediaProfile MediaListGetStreamByYdCode(const QList<MediaProfile> &list, const QString &ydCode)
{
    const auto found = std::find_if(list.cbegin(), list.cend(), [&ydCode](const MediaProfile &profile) {
        return RecordFields::name(profile) == ydCode;
    });
    return found != list.cend() ? *found : MediaProfile();
}
