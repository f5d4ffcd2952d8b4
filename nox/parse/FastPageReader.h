#pragma once

#include <nox/parse/PageDescription.h>

#include <QByteArray>

#include <optional>

namespace Nox::FastPageReader {

/**
 * Reads a page with simdjson, which is many times as fast as jsoncpp.
 * @param document the tool's output with its character references and escapes replaced, in UTF-8; it gets spare
 *        capacity and keeps its content
 * @return the result that jsoncpp would give; nothing if the result could differ from jsoncpp's, or if the document is
 *         not standard JSON. JsonPageReader then has to read it
 */
std::optional<PageDescription> read(QByteArray &document);

} // namespace Nox::FastPageReader
