#pragma once

namespace NoxFetch {

/** What the program's exit code says. */
enum ExitCode : int {
    Done = 0,
    ExtractionFailed = 1,
    UsageError = 2,
    DownloadFailed = 3,
    Interrupted = 130,
};

} // namespace NoxFetch
