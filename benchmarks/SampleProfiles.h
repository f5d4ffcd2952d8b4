#pragma once

#include <nox/model/MediaProfile.h>

#include <QList>

/** Long lists of profiles such as the parser makes. */
namespace SampleProfiles {

/** @p count profiles of all kinds, a third of them audio, in no order. */
QList<Nox::MediaProfile> shuffled(int count);

} // namespace SampleProfiles
