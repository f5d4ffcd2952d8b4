#pragma once

#include <QString>
#include <QTemporaryFile>

namespace NoxHost {

/**
 * The log of the library: a file of the user's choice, or a temporary file. Nothing is written to standard output.
 */
class LibraryLog
{
public:
    enum class Detail { Errors, Milestones, Everything };

    LibraryLog() = default;

    /**
     * Sets the log file of the library.
     * @param file the log file, appended to; empty for a temporary one
     * @return whether the file can be written
     */
    bool open(const QString &file, Detail detail);

    QString fileName() const { return m_fileName; } ///< Path of the log file.

private:
    QTemporaryFile m_temporary;
    QString m_fileName;
};

} // namespace NoxHost
