#pragma once

#include <nox/jobs/StreamPreference.h>

#include <QString>

namespace NoxDesk {

/** How the user wants the program to work. */
struct Preferences {
    static constexpr int leastParallel = 1;
    static constexpr int mostParallel = 10;

    Nox::StreamPreference stream;
    int parallelDownloads = 3; ///< at a time, from leastParallel to mostParallel
    bool offersClipboard = true;
    bool goesOnAtStart = false; ///< with downloads that were not finished
    bool makesMp3 = false;      ///< of sound that is saved without a picture
    QString toolFile;           ///< the tool's archive; empty for the usual one
};

} // namespace NoxDesk
