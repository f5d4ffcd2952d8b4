#pragma once

#include <QProcess>

#include <functional>

namespace Nox {

/** @class ModifiableProcess
 * A QProcess with setChildProcessModifier(), under which name Qt 6 has what Qt 5 has as a virtual
 * function: code that runs in the child between its birth and the start of the program.
 */
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)

using ModifiableProcess = QProcess;

#else

class ModifiableProcess : public QProcess
{
public:
    using QProcess::QProcess;

    void setChildProcessModifier(const std::function<void()> &modifier) { m_modifier = modifier; }

protected:
    void setupChildProcess() override
    {
        if (m_modifier)
            m_modifier();
    }

private:
    std::function<void()> m_modifier;
};

#endif

} // namespace Nox
