#pragma once

namespace NoxHost {

/**
 * Makes sure that file names and texts travel as UTF-8, for this program and for those it starts.
 * Call it first in main(): Qt reads the locale once, when the application object is made.
 */
void ensureUtf8Locale();

} // namespace NoxHost
