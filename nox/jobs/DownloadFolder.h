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
 * A private, hidden folder beside a file that is being made. Whatever the external programs leave
 * behind stands in it and goes with it; the finished file is moved out. Being on one file system,
 * that is a rename. The destructor removes the folder; the folder of a program that was killed goes when
 * the next one is made beside it.
 *
 * With parts, what has been fetched stays in it until remove() is called, and open() finds it again.
 *
 * A folder is in use while the process whose number and machine stand in its lock runs a program of the same name. On a
 * folder that several machines share, only the machine that has made it removes it. Where the number belongs to another
 * run of the same program by now, the folder stays.
 */
class DownloadFolder
{
public:
    DownloadFolder() = default;
    DownloadFolder(const DownloadFolder &) = delete;
    DownloadFolder &operator=(const DownloadFolder &) = delete;
    ~DownloadFolder();

    /**
     * Makes the folder, and removes those beside it that nobody uses any more.
     * @param parent folder of the file to make
     * @return whether it was made; errorText() tells why not
     */
    bool create(const QString &parent);

    /**
     * As create(), but with parts for @p download: where they are there already, because of a download of the same
     * streams that did not come to its end, their folder is taken over.
     */
    bool createWithParts(const QString &parent, const DownloadRecord &download);

    /** The records of the folders with parts in @p parent that nobody uses. */
    static QList<DownloadRecord> interrupted(const QString &parent);

    /** Removes the folder with the parts of @p download, unless it is in use. */
    static void discard(const DownloadRecord &download);

    /** Whether the disk of @p folder has no room left. */
    static bool isFull(const QString &folder);

    QString errorText() const { return m_errorText; } ///< Why create() failed, in the system's words.
    QString filePath(const QString &name) const;      ///< Path of a file in the folder.

    /** Whether the merge has begun to write its output. */
    bool isJoining() const;

    /** How many streams have been fetched as a whole. */
    int completeStreams() const;

    /** Bytes of all that has been fetched so far, but for what the merge writes. */
    qint64 fetchedBytes() const;

    /** Bytes that the merge has written so far. */
    qint64 joinedBytes() const;

    /**
     * Moves the file @p name to @p destination, or to a numbered name when that is taken by now; an
     * existing file is never replaced, and a symbolic link never followed.
     * @return the path it has got, or an empty string when it could not be moved
     */
    QString release(const QString &name, const QString &destination);

    /** Whether leave() would leave something. */
    bool hasParts() const;

    /** Removes the folder with all its files. @return whether it is gone */
    bool remove();

    /** As remove(), but parts with something in them stay, for others to take over. @return whether nothing else is
     * left */
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
