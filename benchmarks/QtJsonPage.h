#pragma once

#include <nox/model/WebMediaInfo.h>

#include <QByteArray>

/** The same reading of a page with Qt's own JSON classes, for comparison. */
namespace QtJsonPage {

/** Fills @p info as the library's parser does. Returns whether the document could be read. */
bool parse(const QByteArray &document, Nox::WebMediaInfo &info);

} // namespace QtJsonPage
