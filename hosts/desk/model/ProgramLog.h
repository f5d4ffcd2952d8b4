#pragma once

#include "hosts/common/LibraryLog.h"

#include <QLockFile>
#include <QString>
#include <QTimer>

#include <memory>

namespace NoxDesk {

/**
 * The library's log: a file for this process alone, which programs that start later go on with. It is cut to a bounded
 * size while it is watched.
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
    bool claim(const QString &folder);

    NoxHost::LibraryLog m_log;
    std::unique_ptr<QLockFile> m_lock;
    QTimer m_watch;
};

} // namespace NoxDesk
