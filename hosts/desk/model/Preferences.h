#pragma once

#include <nox/jobs/StreamPreference.h>

#include <QString>

namespace NoxDesk {

/** The user's preferences. */
struct Preferences {
    static constexpr int leastParallel = 1;
    static constexpr int mostParallel = 10;

    Nox::StreamPreference stream;
    int parallelDownloads = 3; ///< at the same time, from #leastParallel to #mostParallel
    bool offersClipboard = true;
    bool resumesAtStart = false; ///< resumes unfinished downloads at start
    bool makesMp3 = false;       ///< saves sound without a picture as MP3
    QString toolFile;            ///< the tool's archive; empty for the default
};

} // namespace NoxDesk
