#pragma once

#include <nox/model/MediaProfile.h>

#include <QList>
#include <QVector>

#include <type_traits>
#include <vector>

/**
 * Moves profiles about within a list, touching each only once. An array that shares its entries with a
 * copy is not detached first: the entries are copied straight to their new places.
 */
namespace Nox::ListRearrangement {

using Index = QList<MediaProfile>::size_type;

/**
 * Whether a list is one block that holds the profiles themselves (as with Qt 6): what moves is best
 * moved once, straight to its place. Otherwise (as with Qt 5) each profile stays where it was
 * allocated, and only pointers change places.
 */
constexpr bool isArray = std::is_same_v<QList<MediaProfile>, QVector<MediaProfile>>;

/** Brings the list into a new order: the entry at `order[i]` goes to position i. */
void reorder(QList<MediaProfile> &list, std::vector<Index> order);

} // namespace Nox::ListRearrangement
