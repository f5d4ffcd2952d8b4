#pragma once

#include <QCoreApplication>
#include <QString>

namespace Nox {

/** Whether the tool waits for a server, read from what its front prints on standard error meanwhile. A value. */
class ServerWait
{
    Q_DECLARE_TR_FUNCTIONS(Nox::ServerWait)

public:
    /**
     * Takes in news.
     * @param errorOutput what the tool has printed so far, or the end of it
     * @param bytes what has been fetched so far: when it changes, the waiting is over
     * @return whether text() has changed
     */
    bool read(const QString &errorOutput, qint64 bytes);

    QString text() const { return m_text; } ///< For a person; empty when the tool does not wait.

private:
    QString m_text;
    QString m_line;
    int m_count = 0; // of such lines: the same one may come again
    qint64 m_bytes = 0;
};

} // namespace Nox
