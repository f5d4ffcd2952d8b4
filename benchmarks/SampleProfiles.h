#pragma once

#include <nox/model/MediaProfile.h>

#include <QList>

/** Long lists of profiles such as the parser makes. */
namespace SampleProfiles {

/** @p count profiles of all kinds, a third of them audio, in no order. */
QList<Nox::MediaProfile> shuffled(int count);

/** The same, best first. */
QList<Nox::MediaProfile> sorted(int count);

/** @p count video profiles, best first, of which each picture size stands twice in a row. */
QList<Nox::MediaProfile> twins(int count);

/** A new list with a copy of every profile. */
QList<Nox::MediaProfile> deepCopy(const QList<Nox::MediaProfile> &profiles);

} // namespace SampleProfiles
