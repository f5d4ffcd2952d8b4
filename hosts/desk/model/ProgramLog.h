#pragma once

#include "hosts/common/LibraryLog.h"

#include <QString>
#include <QTimer>

namespace NoxDesk {

/**
 * The log file of the library, to which all instances append. Its size is limited.
 */
class ProgramLog
{
public:
    /** @param folder for log files; if it is empty or no file can be written there, a temporary file is used */
    explicit ProgramLog(const QString &folder);

    QString fileName() const { return m_log.fileName(); }

    /** Whether external programs are running, which write to the log. */
    void setWatched(bool isWatched);

    /** Renames the log to "<name>.old" if it is too large. */
    void rotate();

    static constexpr qint64 largestSize = 1024LL * 1024; ///< in bytes; a larger file is renamed

private:
    NoxHost::LibraryLog m_log;
    QTimer m_watch;
};

} // namespace NoxDesk
