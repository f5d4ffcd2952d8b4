#pragma once

#include <QString>

namespace NoxHost {

/**
 * @p text on one line, fit for a terminal, a label and a file name: control characters and runs of
 * white space become one blank, the ends are trimmed. Titles and the tool's words come from outside
 * and may hold escape sequences.
 */
QString printableLine(const QString &text);

/**
 * The part of the tool's error output that a person needs: its last lines, printable, without the
 * warnings unless there is nothing else.
 */
QString toolWords(const QString &errorOutput);

} // namespace NoxHost
