#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>

#include <functional>

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

/** Drops what @p process has printed to @p channel. Unlike reading, this needs no memory. */
void drop(QProcess *process, QProcess::ProcessChannel channel);

/**
 * Calls @p reader, which reads and treats what @p process has printed to @p channel. Where memory does not
 * suffice for that, what was printed is dropped, and one record at LOG_ERROR says so.
 * @return whether @p reader has come to its end
 */
bool read(QProcess *process, QProcess::ProcessChannel channel, const std::function<void()> &reader);

} // namespace Nox::ProcessOutput
