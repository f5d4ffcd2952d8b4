#pragma once

#include <nox/model/MediaProfile.h>

#include <QList>

#include <vector>

/**
 * Moves profiles about within a list, touching each only once. A list that shares its entries with a
 * copy is not detached first: the entries that stay are copied straight to their new places.
 */
namespace Nox::ListRearrangement {

using Index = QList<MediaProfile>::size_type;

/** Keeps the entries at the positions @p kept, which rise, and drops the others. */
void keepOnly(QList<MediaProfile> &list, const std::vector<Index> &kept);

/** Brings the list into a new order: the entry at `order[i]` goes to position i. */
void reorder(QList<MediaProfile> &list, std::vector<Index> order);

} // namespace Nox::ListRearrangement
