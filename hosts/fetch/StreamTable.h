#pragma once

#include <nox/jobs/StreamChoice.h>
#include <nox/jobs/StreamPreference.h>

#include <QString>

namespace NoxFetch {

/** The streams as a table, best first. A star marks the ones that @p preference selects. */
QString streamTable(const Nox::StreamChoice &streams, const Nox::StreamPreference &preference);

} // namespace NoxFetch
