#pragma once

#include <QByteArray>
#include <QString>

/**
 * What a program has printed, as text. With the length given, since Qt 5 would otherwise end the text
 * at a zero byte and lose the rest.
 */
namespace Nox::ProcessOutput {

inline QString fromUtf8(const QByteArray &output)
{
    return QString::fromUtf8(output.constData(), output.size());
}

inline QString fromLocal8Bit(const QByteArray &output)
{
    return QString::fromLocal8Bit(output.constData(), output.size());
}

} // namespace Nox::ProcessOutput
