#pragma once

#include "tests/support/TextTable.h"

namespace Nox {
class WebMediaDownloader;
class WebMediaInfoExtractor;
} // namespace Nox

/**
 * A table of downloads, or of notifying extractions, with fakes. Columns, all texts:
 *   setup          items: two (a DASH video 137 with the audio 140; else only 137), size=BYTES (of the
 *                  profile), dest=FILE (default clip.mp4 in the sandbox's folder), has=FILE (there before),
 *                  elsewhere=FILE (there before, in ROOT, and never touched), link=NAME (to ROOT),
 *                  python=, ffmpeg= missing or plain (not executable), log=FILE
 *   scenario       what the fakes play; ROOT is the folder around the destination's
 *   action         "", or cancel@, clear@ or delete@ with the key of the fake that hangs then, or with
 *                  "end": after all notifications
 *   notifications  all of them, in order
 *   files          of a download: left in the folder; behind " -> ", where it differs: when the downloader is gone
 *   errors         log records from LOG_ERROR up, "|" between them; a last "*" means any text
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
