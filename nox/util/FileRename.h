#pragma once

#include <QString>

/**
 * Renaming that never replaces a file and never follows a symbolic link. This source is also compiled into what is
 * built on the library, since it belongs to no public interface.
 */
namespace Nox::FileRename {

/**
 * Gives the file @p from the name @p to. A link is renamed itself. Nothing happens when there is anything at @p to,
 * also a symbolic link that leads nowhere.
 *
 * The system tests and renames in one step. Only where a file system can neither do that nor has hard links, or where
 * the two names are on different file systems, the test comes first and Qt renames or copies.
 * @return whether the file has the new name
 */
bool withoutReplacing(const QString &from, const QString &to);

} // namespace Nox::FileRename
