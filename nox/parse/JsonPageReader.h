#pragma once

#include <nox/parse/PageDescription.h>

#include <QByteArray>

#include <string>

namespace Nox::JsonPageReader {

/**
 * Reads a page with jsoncpp. Its result counts: it also accepts comments, text behind the page and more that is no
 * standard JSON.
 * @param document the tool's output with its character references and escapes replaced, in UTF-8
 * @param[out] page what was read; unchanged when the document cannot be read
 * @param[out] error jsoncpp's message when the document cannot be read
 * @return whether the document can be read
 */
bool read(const QByteArray &document, PageDescription &page, std::string &error);

} // namespace Nox::JsonPageReader
