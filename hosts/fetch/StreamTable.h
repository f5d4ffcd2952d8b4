#pragma once

#include <nox/jobs/StreamChoice.h>
#include <nox/jobs/StreamPreference.h>

#include <QString>

namespace NoxFetch {

/** The streams as a table, best first, with a star at those that @p preference picks. */
QString streamTable(const Nox::StreamChoice &streams, const Nox::StreamPreference &preference);

} // namespace NoxFetch
