#pragma once

#include <nox/jobs/TransferFigures.h>

#include <QString>

namespace NoxFetch {

/**
 * A status line of at most @p width columns: what is going on, and once there are figures a bar with
 * percent, amount, speed and time left; until then a mark that turns with @p tick.
 */
QString statusLine(const QString &activity, const Nox::TransferFigures &figures, int width, int tick);

/** The same figures as one plain line for a log. */
QString plainLine(const QString &activity, const Nox::TransferFigures &figures);

} // namespace NoxFetch
