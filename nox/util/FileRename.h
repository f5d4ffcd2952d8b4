#pragma once

#include <QString>

/**
 * Renaming that never replaces a file and never follows a symbolic link. The second library compiles this source, too,
 * because the first one does not export it.
 */
namespace Nox::FileRename {

/**
 * Renames @p from to @p to. A symbolic link is renamed itself. Does nothing when @p to exists, even as a dangling
 * symbolic link.
 *
 * The system tests and renames in one step. If the file system supports neither that nor hard links, or if the names
 * are on different file systems, the test comes first, and Qt renames or copies.
 * @return whether the file has been renamed
 */
bool withoutReplacing(const QString &from, const QString &to);

} // namespace Nox::FileRename
