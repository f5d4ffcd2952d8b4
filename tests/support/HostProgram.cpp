#include "tests/support/HostProgram.h"

#include "tests/support/TestSandbox.h"

#include <QFile>

HostProgram::HostProgram(const QString &folder)
    : m_program(folder + QStringLiteral("/host"))
{
    TestSandbox::provide(TestSandbox::Interpreter, TestSandbox::StandIn, folder);
    TestSandbox::provide(TestSandbox::Ffmpeg, TestSandbox::StandIn, folder);
    if (!QFile::copy(QStringLiteral(NOX_TEST_HOST), m_program))
        qFatal("cannot copy the host program to %s", qPrintable(m_program));
    m_process.setProcessChannelMode(QProcess::ForwardedChannels);
}

void HostProgram::start(const QString &job, const QString &tool, const QString &destFile)
{
    m_process.start(m_program, {job, tool, destFile});
}

bool HostProgram::waitForEnd()
{
    return m_process.waitForFinished(TestSandbox::Timeout);
}

void HostProgram::killHard()
{
    m_process.kill();
    m_process.waitForFinished(TestSandbox::Timeout);
}
