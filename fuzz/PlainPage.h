#pragma once

#include <nox/model/WebMediaInfo.h>

#include <QString>

/** The reading of a page in the plainest way there is, member by member through the public helpers. */
namespace PlainPage {

/** Fills @p info from the tool's text. Returns false, and leaves it alone, when the JSON reader refuses the text. */
bool parse(const QString &text, Nox::WebMediaInfo &info);

} // namespace PlainPage
