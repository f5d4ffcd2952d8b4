#pragma once

#include <QString>
#include <QTemporaryFile>

namespace NoxHost {

/**
 * The library's log: where it goes, and what the external programs complained about in it. The
 * library reports no words for a failed download; they stand in the log alone, so there is always
 * one. Without a file of the user's choice it is a temporary one. Nothing goes to standard output.
 */
class LibraryLog
{
public:
    enum class Detail { Errors, Milestones, Everything };

    LibraryLog() = default;

    /**
     * Directs the library's log.
     * @param file the log file, appended to; empty for a temporary one
     * @return whether the file can be written
     */
    bool open(const QString &file, Detail detail);

    QString fileName() const; ///< Path of the log file.

    /** Forgets the complaints so far. */
    void mark();

    /**
     * What the external programs have written to their standard error since mark(), fit for display.
     * Downloads that run side by side share the log.
     */
    QString complaints() const;

private:
    QTemporaryFile m_temporary;
    QString m_fileName;
    qint64 m_mark = 0;
};

} // namespace NoxHost
