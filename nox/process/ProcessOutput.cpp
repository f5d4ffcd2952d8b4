#include <nox/process/ProcessOutput.h>

#include <nox/log/LogText.h>

#include <exception>

namespace Nox {

void ProcessOutput::drop(QProcess *process, QProcess::ProcessChannel channel)
{
    const QProcess::ProcessChannel before = process->readChannel();
    process->setReadChannel(channel);
    if (const qint64 size = process->bytesAvailable(); size > 0)
        process->skip(size);
    process->setReadChannel(before);
}

bool ProcessOutput::read(QProcess *process, QProcess::ProcessChannel channel, const std::function<void()> &reader)
{
    try {
        reader();
        return true;
    } catch (const std::exception &exception) { // mostly std::bad_alloc
        drop(process, channel);
        NOX_LOG_ERROR("Output of a program is lost, it cannot be held in memory: %s", exception.what());
        return false;
    }
}

QString ProcessOutput::readText(QProcess *process)
{
    QString text;
    read(process, process->readChannel(), [&] { text = fromUtf8(process->readAll()); });
    return text;
}

} // namespace Nox
