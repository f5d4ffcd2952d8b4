#pragma once

#include <nox/parse/FormatEntry.h>

#include <QStringView>

#include <optional>
#include <vector>

namespace Nox {

/** What the library reads of the tool's description of a page. */
struct PageDescription {
    QString title = QLatin1String("");
    QString thumbnail = QLatin1String("");
    QString description = QLatin1String("");
    int duration = 0;
    std::vector<FormatEntry> formats;
};

/** Reading of a page without a tree of values. */
namespace PageScanner {

/**
 * Reads the page where its text is plain JSON from beginning to end, in one pass over it: most of a page
 * are members that nobody needs. The result is what the JSON reader would give.
 * @param text the tool's output, with its character references and escapes
 * @return nothing where the text holds anything that the JSON reader might take in another way, or not
 *         at all: it has to be asked then
 */
std::optional<PageDescription> read(QStringView text);

} // namespace PageScanner

} // namespace Nox
