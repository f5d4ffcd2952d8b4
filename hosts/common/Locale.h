#pragma once

namespace NoxHost {

/**
 * Selects UTF-8 for file names and texts, for this program and its child processes. Call it first in main(): Qt reads
 * the locale once, when the application object is created.
 */
void ensureUtf8Locale();

} // namespace NoxHost
