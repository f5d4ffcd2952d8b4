#pragma once

#include "tests/support/TextTable.h"

namespace Nox {
class WebMediaDownloader;
class WebMediaInfoExtractor;
} // namespace Nox

/**
 * A table of downloads, or of notifying extractions, with fakes; tests/README.md explains the columns. The first one,
 * the setup, holds: two (a DASH video 137 with the audio 140; else only 137), size=BYTES (of the profile), dest=FILE
 * (default clip.mp4 in the sandbox's folder), has=FILE (there before), elsewhere=FILE (there before, in ROOT, and never
 * touched), link=NAME (to ROOT), python= and ffmpeg=, missing or plain (not executable), log=FILE.
 */
template <typename Worker>
class WorkerTable
{
public:
    WorkerTable() = delete;

    static TextTable begin();
    static void run(); ///< runs the current row
};

using DownloadTable = WorkerTable<Nox::WebMediaDownloader>;
using ExtractTable = WorkerTable<Nox::WebMediaInfoExtractor>; ///< without the column "files"
