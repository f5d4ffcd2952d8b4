#pragma once

#include <nox/model/ListRearrangement.h>

namespace Nox::BestFirst {

/**
 * The positions of @p profiles, best first by the ordering of MediaInfo. Equal ones keep their order.
 */
std::vector<ListRearrangement::Index> order(const QList<MediaProfile> &profiles);

} // namespace Nox::BestFirst
