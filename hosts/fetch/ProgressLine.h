#pragma once

#include <nox/jobs/TransferFigures.h>

#include <QString>

namespace NoxFetch {

/**
 * A status line of at most @p width columns: the activity, and a bar with percent, amount, speed and time left. Without
 * figures it shows a rotating mark instead, by @p tick.
 */
QString statusLine(const QString &activity, const Nox::TransferFigures &figures, int width, int tick);

/** The same information as a plain line for a log. */
QString plainLine(const QString &activity, const Nox::TransferFigures &figures);

} // namespace NoxFetch
