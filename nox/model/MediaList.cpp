#include <nox/model/MediaList.h>

#include <nox/model/ListCompaction.h>
#include <nox/model/PictureRank.h>
#include <nox/model/RecordAccess.h>

#include <algorithm>

namespace {

using Nox::ListCompaction;
using Nox::MediaProfile;
using Nox::RecordAccess;
using Index = ListCompaction::Index;

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

} // namespace

void MediaListRemoveDuplicatedResolutions(QList<MediaProfile> &list)
{
    const QList<MediaProfile> &entries = list;
    const Index count = entries.size();
    if (count < 2)
        return;

    ListCompaction kept(list);
    Index current = 0;
    for (Index next = 1; next < count; ++next) {
        // The last entry takes no part: it is never removed, nor anything on its account.
        if (isComparable(entries.at(current))) {
            for (; next < count - 1 && sharesPicture(entries.at(current), entries.at(next)); ++next) {
                if (RecordAccess::isDash(entries.at(current)))
                    current = next;
            }
        }
        kept.keep(current);
        current = next;
    }
    kept.keep(current);
    kept.finish();
}

void MediaListRemoveAudio(QList<MediaProfile> &list)
{
    const QList<MediaProfile> &entries = list;
    ListCompaction kept(list);
    for (Index i = 0; i < entries.size(); ++i) {
        const MediaProfile &entry = entries.at(i);
        if (RecordAccess::mediaType(entry) != Nox::MEDIA_TYPE_AUDIO && !RecordAccess::name(entry).isEmpty())
            kept.keep(i);
    }
    kept.finish();
}

MediaProfile MediaListGetStreamByYdCode(const QList<MediaProfile> &list, const QString &ydCode)
{
    const auto found = std::find_if(list.cbegin(), list.cend(), [&ydCode](const MediaProfile &profile) {
        return RecordAccess::name(profile) == ydCode;
    });
    return found != list.cend() ? *found : MediaProfile();
}
