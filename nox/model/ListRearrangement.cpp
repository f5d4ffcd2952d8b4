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
        list = copyOf(list, order);
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
