#pragma once

#include <nox/parse/PageDescription.h>

#include <QByteArray>

#include <string>

namespace Nox::JsonPageReader {

/**
 * Reads a page by the JSON reader, which decides what a page says: it also takes comments, text behind the
 * page and much else that is no plain JSON.
 * @param document the tool's text with its character references and escapes replaced, in UTF-8
 * @param[out] page what the document says; left alone when the document cannot be read
 * @param[out] error why it cannot be read, in the JSON reader's words
 * @return whether the document can be read
 */
bool read(const QByteArray &document, PageDescription &page, std::string &error);

} // namespace Nox::JsonPageReader
