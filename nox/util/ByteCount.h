#pragma once

#include <QStringView>
#include <QtGlobal>

/** Reading of the figures that the tool prints, in place and without a copy of the text. */
namespace Nox::ByteCount {

/** A number such as 45.3 in single precision; 0 when it is none, infinite beyond the range. */
float toFloat(QStringView number);

/** @see Utilities::getBytes() */
qint64 find(QStringView text);

} // namespace Nox::ByteCount
