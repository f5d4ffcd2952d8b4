#pragma once

#include <QStringView>
#include <QtGlobal>

/** Reads the figures that the tool prints, without copying the text. */
namespace Nox::ByteCount {

/** A number such as 45.3 in single precision; 0 for other text, infinite beyond the range. */
float toFloat(QStringView number);

/** @see Utilities::getBytes() */
qint64 find(QStringView text);

} // namespace Nox::ByteCount
