#include <nox/model/MediaList.h>

#include <nox/model/ListRearrangement.h>
#include <nox/model/PictureRank.h>

#include <algorithm>
#include <vector>

namespace {

using Nox::MediaProfile;
using Nox::ListRearrangement::Index;

bool sharesPicture(const MediaProfile &a, const MediaProfile &b)
{
    return a.getVResolution() == b.getVResolution() && a.is3D() == b.is3D() && a.getFormat() == b.getFormat();
}

// A video stream whose picture can be compared with its neighbour's.
bool isComparable(const MediaProfile &profile)
{
    const bool isUnknownLarge =
        profile.getVResolution().width() <= 0 && Nox::PictureRank::isAbove1080p(profile.getOriResStr());
    return profile.getMediaType() == Nox::MEDIA_TYPE_VIDEO && !isUnknownLarge;
}

} // namespace

void MediaListRemoveDuplicatedResolutions(QList<MediaProfile> &list)
{
    const QList<MediaProfile> &entries = list;
    const Index count = entries.size();
    if (count < 2)
        return;

    std::vector<Index> kept;
    kept.reserve(static_cast<size_t>(count));
    Index current = 0;
    for (Index next = 1; next < count; ++next) {
        // The last entry takes no part: it is never removed, nor anything on its account.
        if (isComparable(entries.at(current))) {
            for (; next < count - 1 && sharesPicture(entries.at(current), entries.at(next)); ++next) {
                if (entries.at(current).isDash())
                    current = next;
            }
        }
        kept.push_back(current);
        current = next;
    }
    kept.push_back(current);
    Nox::ListRearrangement::keepOnly(list, kept);
}

void MediaListRemoveAudio(QList<MediaProfile> &list)
{
    const QList<MediaProfile> &entries = list;
    std::vector<Index> kept;
    kept.reserve(static_cast<size_t>(entries.size()));
    for (Index i = 0; i < entries.size(); ++i) {
        const MediaProfile &entry = entries.at(i);
        if (entry.getMediaType() != Nox::MEDIA_TYPE_AUDIO && !entry.getName().isEmpty())
            kept.push_back(i);
    }
    Nox::ListRearrangement::keepOnly(list, kept);
}

MediaProfile MediaListGetStreamByYdCode(const QList<MediaProfile> &list, const QString &ydCode)
{
    const auto found = std::find_if(list.cbegin(), list.cend(),
                                    [&ydCode](const MediaProfile &profile) { return profile.getName() == ydCode; });
    return found != list.cend() ? *found : MediaProfile();
}
