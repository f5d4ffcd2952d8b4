#pragma once

#include <QCoreApplication>
#include <QString>

#include <functional>

namespace Nox {

/** Whether the tool is waiting for a server: read from its front's notices on standard error. A value. */
class ServerWait
{
    Q_DECLARE_TR_FUNCTIONS(Nox::ServerWait)

public:
    /**
     * Reads the current state.
     * @param errorOutput standard error of the tool so far, or the last part of it
     * @param countBytes returns the downloaded bytes so far; if they change, the waiting is over. Called only if there
     *        was a notice, since it lists a folder
     * @return whether text() has changed
     */
    bool read(const QString &errorOutput, const std::function<qint64()> &countBytes);

    QString text() const { return m_text; } ///< For the user; empty if the tool is not waiting.

private:
    QString m_text;
    QString m_line;
    int m_count = 0; // number of such lines, since the same line may be repeated
    qint64 m_bytes = 0;
};

} // namespace Nox
