#pragma once

#include <nox/model/FormatNumbers.h>
#include <nox/model/ListRearrangement.h>
#include <nox/model/MediaProfile.h>

#include <QSize>

#include <array>
#include <vector>

namespace Nox {

/**
 * Finds the order in which profiles stand best first, by the ordering of MediaInfo; equal ones keep
 * their order. The profiles must stay where they are meanwhile.
 *
 * What decides about a profile is packed into one number, since sorting the records themselves would
 * move every field of them again and again.
 */
class BestFirst
{
public:
    using Index = ListRearrangement::Index;

    /** For @p count profiles. */
    explicit BestFirst(Index count);

    /** Takes the next profile into account. */
    void add(const MediaProfile &profile);

    /** The positions of the profiles, in the order in which they were added, best first. */
    std::vector<Index> order();

private:
    // What is read of a profile as soon as it is added, and weighed later: the processor fetches the
    // fields of one profile while it waits for those of another as long as no decision hangs on them.
    struct Look {
        const MediaProfile *profile;
        QSize picture;
        QStringView format;
        bool is3D;
    };

    void weigh();
    int placeFormats();

    FormatNumbers m_formats;
    std::array<Look, 32> m_looks{};
    size_t m_pending = 0;
    std::vector<quint64> m_keys;
};

} // namespace Nox
