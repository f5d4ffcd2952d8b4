#pragma once

#include <nox/jobs/StreamChoice.h>

#include <QString>

namespace NoxFetch {

/** The streams as a table, best first, with a star at those that are taken when nobody chooses. */
QString streamTable(const Nox::StreamChoice &streams);

} // namespace NoxFetch
