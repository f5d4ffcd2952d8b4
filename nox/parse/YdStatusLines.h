#pragma once

#include <QStringView>

#include <optional>

namespace Nox {

/**
 * Finds the three kinds of status line in the output of a download. The first line of each kind counts.
 *
 * Each function gives the same result as its regular expression (letter case counts, "." matches line breaks), but in
 * linear time. Backtracking takes quadratic time on long output without a match.
 */
namespace YdStatusLines {

/** The figures of a progress line as text. */
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
