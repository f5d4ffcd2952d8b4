#pragma once

#include <QByteArray>

/** Real numbers for the JSON reader, which reads them by a stream of the host's global C++ locale. */
namespace Nox::RealNumbers {

/** Whether a stream takes a point for what JSON means by it. */
bool isPointUnderstood();

/** @p document with 12.5 as 125e-1, and so on: in another locale a point ends a number or is skipped. */
QByteArray withoutPoints(const QByteArray &document);

} // namespace Nox::RealNumbers
