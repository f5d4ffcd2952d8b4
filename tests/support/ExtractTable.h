#pragma once

#include "tests/support/TextTable.h"

/**
 * A table of notifying extractions with stand-ins. Columns, all texts:
 *   setup          words: python=missing, python=plain (not executable), log=FILE
 *   scenario       what the stand-ins play
 *   action         "", or cancel or delete, done once the stand-in hangs
 *   notifications  all of them, in order
 *   errors         log records from LOG_ERROR up, "|" between them
 */
class ExtractTable
{
public:
    ExtractTable() = delete;

    static TextTable begin();
    static void run(); ///< runs the current row
};
