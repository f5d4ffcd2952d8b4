#pragma once

#include "hosts/common/LibraryLog.h"

#include <QString>
#include <QTimer>

namespace NoxDesk {

/**
 * The library's log: a file that all windows append to. It is kept to a bounded size while it is watched.
 */
class ProgramLog
{
public:
    /** @param folder where log files go; where none can be written, or for an empty text, a temporary file */
    explicit ProgramLog(const QString &folder);

    QString fileName() const { return m_log.fileName(); }

    /** Says whether external programs run, which write to the log. */
    void setWatched(bool isWatched);

    /** Sets the log aside as "<name>.old" when it has become large. */
    void rotate();

    static constexpr qint64 largestSize = 1024LL * 1024; ///< bytes; of a file that is not rotated yet

private:
    NoxHost::LibraryLog m_log;
    QTimer m_watch;
};

} // namespace NoxDesk
