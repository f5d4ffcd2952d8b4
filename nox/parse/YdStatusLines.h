#pragma once

#include <QStringView>

#include <optional>

namespace Nox {

/**
 * The three kinds of status line that the tool prints while it downloads, found in what was read from
 * it at once. The first line of a kind counts.
 *
 * Each search stands for a regular expression (letter case counts, "." crosses line breaks) and finds
 * what that finds, but in linear time, whatever the tool prints: backtracking over a large read that
 * never completes a match would take the square of it.
 */
namespace YdStatusLines {

/** The figures of a progress line, as written. */
struct Progress {
    QStringView percentage; ///< 45.3
    QStringView size;       ///< 12.34MiB
    QStringView speed;      ///< 1.23MiB/s
};

// \[download\]\s*(\d+(\.\d+)?)%\s*of\s*((\d+(\.\d+)?)\w*)\s*at\s*([^\s\n\r]*/s)\s*ETA
/** A line such as "[download]  45.3% of 12.34MiB at 1.23MiB/s ETA 00:05". */
std::optional<Progress> findProgress(QStringView text);

/** `\[download\] Destination: (([^\r\n]+)\.([^\r\n]*))`: the name of the file being written. */
std::optional<QStringView> findDestination(QStringView text);

/** `\[download\] (.*) has already been downloaded\s`: the name of a file that is complete already. */
std::optional<QStringView> findAlreadyDownloaded(QStringView text);

} // namespace YdStatusLines

} // namespace Nox
