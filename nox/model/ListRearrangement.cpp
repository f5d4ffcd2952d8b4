#include <nox/model/ListRearrangement.h>

#include <utility>

namespace Nox {

namespace {

QList<MediaProfile> copyOf(const QList<MediaProfile> &list, const std::vector<ListRearrangement::Index> &positions)
{
    QList<MediaProfile> copy;
    copy.reserve(static_cast<ListRearrangement::Index>(positions.size()));
    for (const auto position : positions)
        copy.append(list.at(position));
    return copy;
}

QList<MediaProfile> blankList(ListRearrangement::Index size)
{
    QList<MediaProfile> list;
    list.reserve(size);
    for (ListRearrangement::Index i = 0; i < size; ++i)
        list.append(MediaProfile());
    return list;
}

// Reads the list from its first entry to its last: each entry's texts lie near those of the entry before.
QList<MediaProfile> scatteredCopyOf(const QList<MediaProfile> &list, const std::vector<ListRearrangement::Index> &order)
{
    std::vector<ListRearrangement::Index> places(order.size());
    for (size_t place = 0; place < order.size(); ++place)
        places[static_cast<size_t>(order[place])] = static_cast<ListRearrangement::Index>(place);

    QList<MediaProfile> copy = blankList(list.size());
    const auto entries = copy.begin();
    for (ListRearrangement::Index i = 0; i < list.size(); ++i)
        entries[places[static_cast<size_t>(i)]] = list.at(i);
    return copy;
}

} // namespace

void ListRearrangement::keepOnly(QList<MediaProfile> &list, const std::vector<Index> &kept)
{
    if (static_cast<Index>(kept.size()) == list.size())
        return;
    if (!list.isDetached()) {
        list = copyOf(list, kept);
        return;
    }
    const auto entries = list.begin();
    Index end = 0;
    for (const Index position : kept) {
        if (position != end)
            entries[end] = std::move(entries[position]);
        ++end;
    }
    list.erase(list.begin() + end, list.end());
}

void ListRearrangement::reorder(QList<MediaProfile> &list, std::vector<Index> order)
{
    if (!list.isDetached()) {
        list = scatteredCopyOf(list, order);
        return;
    }
    const auto entries = list.begin();
    // Follows each cycle of the permutation; a position that is done points to itself.
    for (Index start = 0; start < list.size(); ++start) {
        if (order[static_cast<size_t>(start)] == start)
            continue;
        MediaProfile first = std::move(entries[start]);
        Index hole = start;
        for (Index source = order[static_cast<size_t>(hole)]; source != start;
             source = order[static_cast<size_t>(hole)]) {
            entries[hole] = std::move(entries[source]);
            order[static_cast<size_t>(hole)] = hole;
            hole = source;
        }
        entries[hole] = std::move(first);
        order[static_cast<size_t>(hole)] = hole;
    }
}

} // namespace Nox
