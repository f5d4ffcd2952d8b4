#pragma once

#include <QProcess>

#include <functional>

namespace Nox {

/** @class ModifiableProcess
 * A QProcess with Qt 6's setChildProcessModifier(), which sets code that runs in the child before the program starts.
 * Qt 5 has a virtual function for that.
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
