#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>

#include <functional>

/**
 * What a program has printed, as text. The length is given to the decoders because Qt 5 ends the text at a zero byte
 * otherwise.
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

/** Discards what @p process has printed to @p channel. Unlike reading, this needs no memory. */
void drop(QProcess *process, QProcess::ProcessChannel channel);

/**
 * Calls @p reader, which reads what @p process has printed to @p channel. If memory does not suffice, the output is
 * dropped and one record at LOG_ERROR is written.
 * @return whether @p reader has returned without an exception
 */
bool read(QProcess *process, QProcess::ProcessChannel channel, const std::function<void()> &reader);

/** What @p process has printed to its current read channel, decoded from UTF-8; empty when memory does not suffice. */
QString readText(QProcess *process);

} // namespace Nox::ProcessOutput
