#pragma once

#include <nox/jobs/DownloadRecord.h>

#include <QFileInfo>
#include <QList>
#include <QLockFile>
#include <QString>

#include <functional>
#include <memory>

namespace Nox {

/**
 * A private, hidden folder beside the file to make. All files of the external programs stand in it and are removed with
 * it. The finished file is moved out, which is a rename, since the folder is on the same file system. The destructor
 * removes the folder. The folder of a program that was killed is removed when the next one is created beside it.
 *
 * A folder with parts is kept until remove() is called, and createWithParts() finds it again.
 *
 * The lock file names a process and a machine. The folder is in use while that process exists and runs a program of the
 * same name. If several machines share the parent folder, only the machine that created a private folder removes it. If
 * the process number now belongs to another run of the same program, the folder stays.
 */
class DownloadFolder
{
public:
    DownloadFolder() = default;
    DownloadFolder(const DownloadFolder &) = delete;
    DownloadFolder &operator=(const DownloadFolder &) = delete;
    ~DownloadFolder();

    /**
     * Creates the folder, and removes the ones beside it that are not in use.
     * @param parent folder of the file to make
     * @return whether it was created; if not, errorText() has the reason
     */
    bool create(const QString &parent);

    /**
     * As create(), but with parts for @p download. If an earlier download of the same streams was not completed, its
     * folder is used again.
     */
    bool createWithParts(const QString &parent, const DownloadRecord &download);

    /** The records of all folders with parts in @p parent that are not in use. */
    static QList<DownloadRecord> interrupted(const QString &parent);

    /** Removes the folder with the parts of @p download, unless it is in use. */
    static void discard(const DownloadRecord &download);

    /** Whether the disk of @p folder is full. */
    static bool isFull(const QString &folder);

    QString errorText() const { return m_errorText; } ///< Why create() failed: the system's message.
    QString filePath(const QString &name) const;      ///< Path of a file in the folder.

    /** Whether the merge has begun to write its output. */
    bool isJoining() const;

    /** How many streams are complete. */
    int completeStreams() const;

    /** Downloaded bytes so far, without the output of the merge. */
    qint64 fetchedBytes() const;

    /** Size of the merge's output so far. */
    qint64 joinedBytes() const;

    /**
     * Moves the file @p name to @p destination, or to a numbered name if @p destination exists by now. Never replaces a
     * file and never follows a symbolic link.
     * @return the file's new path; empty if it could not be moved
     */
    QString release(const QString &name, const QString &destination);

    /** Whether leave() would keep something. */
    bool hasParts() const;

    /** Removes the folder with all its files. @return whether that succeeded */
    bool remove();

    /** As remove(), but keeps parts that are not empty, for a later download. @return whether all else is removed */
    bool leave();

private:
    bool adopt(const QString &parent, const DownloadRecord &download);
    bool take(const QString &path, const std::function<bool(const DownloadRecord &)> &suits);
    void close();
    QFileInfoList files(const QString &pattern) const;

    static void removeStale(const QString &parent);

    QString m_path;
    std::unique_ptr<QLockFile> m_lock; // while the folder is in use
    bool m_hasParts = false;
    QString m_errorText;
};

} // namespace Nox
