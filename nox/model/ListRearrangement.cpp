#include <nox/model/ListRearrangement.h>

#include <utility>

namespace Nox {

namespace {

using ListRearrangement::Index;

size_t at(Index position)
{
    return static_cast<size_t>(position);
}

// Reads the list from its first entry to its last: each entry's texts lie near those of the entry before.
[[maybe_unused]] QList<MediaProfile> scatteredCopyOf(const QList<MediaProfile> &list, const std::vector<Index> &order)
{
    std::vector<Index> places(order.size());
    for (size_t place = 0; place < order.size(); ++place)
        places[at(order[place])] = static_cast<Index>(place);

    QList<MediaProfile> copy;
    copy.reserve(list.size());
    for (Index i = 0; i < list.size(); ++i)
        copy.append(MediaProfile());
    const auto entries = copy.begin();
    for (Index i = 0; i < list.size(); ++i)
        entries[places[at(i)]] = list.at(i);
    return copy;
}

// Both follow each cycle of the permutation; a position that is done points to itself. Which of them serves depends on
// what a list is.
[[maybe_unused]] void permutePointers(QList<MediaProfile> &list, std::vector<Index> &order)
{
    for (Index start = 0; start < list.size(); ++start) {
        Index current = start;
        for (Index source = order[at(current)]; source != start; source = order[at(current)]) {
            list.swapItemsAt(current, source);
            order[at(current)] = current;
            current = source;
        }
        order[at(current)] = current;
    }
}

[[maybe_unused]] void permuteEntries(QList<MediaProfile> &list, std::vector<Index> &order)
{
    const auto entries = list.begin();
    for (Index start = 0; start < list.size(); ++start) {
        if (order[at(start)] == start)
            continue;
        MediaProfile first = std::move(entries[start]);
        Index hole = start;
        for (Index source = order[at(hole)]; source != start; source = order[at(hole)]) {
            entries[hole] = std::move(entries[source]);
            order[at(hole)] = hole;
            hole = source;
        }
        entries[hole] = std::move(first);
        order[at(hole)] = hole;
    }
}

} // namespace

void ListRearrangement::reorder(QList<MediaProfile> &list, std::vector<Index> order)
{
    if constexpr (!isArray)
        permutePointers(list, order);
    else if (list.isDetached())
        permuteEntries(list, order);
    else
        list = scatteredCopyOf(list, order);
}

} // namespace Nox
