#pragma once

#include <QString>

#include <cstddef>
#include <cstdint>

/** What the fuzz targets share. */
namespace Check {

/** Ends the program with @p what when @p holds is false, which the fuzzer counts as a finding. */
void that(bool holds, const char *what);

/** The fuzzer's bytes as text, the way the library gets text from the tool. */
QString text(const std::uint8_t *data, size_t size);

/**
 * Whether PCRE and a reading unit by unit agree on what a letter, a digit and a blank is: so they do in the
 * alphabets of two UTF-8 bytes.
 */
bool isComparable(const QString &text);

} // namespace Check
