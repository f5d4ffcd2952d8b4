#pragma once

namespace NoxFetch {

/** The exit codes of the program. */
enum ExitCode : int {
    Done = 0,
    ExtractionFailed = 1,
    UsageError = 2,
    DownloadFailed = 3,
    Interrupted = 130,
};

} // namespace NoxFetch
