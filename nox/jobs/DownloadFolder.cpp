#include <nox/jobs/DownloadFolder.h>

#include <nox/jobs/Destination.h>
#include <nox/util/FileRename.h>

#include <QDir>
#include <QFile>
#include <QStorageInfo>
#include <QTemporaryDir>

#include <numeric>

#include <unistd.h>

namespace Nox {

namespace {

const QLatin1String joinedPattern("*YDTMP_.*.tmp.mp4");

qint64 bytes(const QFileInfoList &files)
{
    return std::accumulate(files.cbegin(), files.cend(), qint64(0),
                           [](qint64 sum, const QFileInfo &file) { return sum + file.size(); });
}

/** The file of the lock of the folder @p path. */
QString lockFile(const QString &path)
{
    return path + QStringLiteral("/.lock");
}

/** The lock of the folder @p path. It does not become free by age: downloads may take days. */
std::unique_ptr<QLockFile> lockOf(const QString &path)
{
    auto lock = std::make_unique<QLockFile>(lockFile(path));
    lock->setStaleLockTime(0);
    return lock;
}

/**
 * Removes the folder @p path, its lock last: what a program leaves that is killed meanwhile is found by the next one.
 * QLockFile complains when its file goes before it is unlocked.
 */
bool removeFolder(const QString &path, QLockFile &lock)
{
    const QFileInfoList entries =
        QDir(path).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QFileInfo &entry : entries) {
        if (entry.isDir() && !entry.isSymLink())
            QDir(entry.filePath()).removeRecursively();
        else if (entry.filePath() != lockFile(path))
            QFile::remove(entry.filePath());
    }
    lock.unlock();
    if (QDir().rmdir(path) || !QFileInfo::exists(path))
        return true;
    static_cast<void>(lock.tryLock(0));
    return false;
}

} // namespace

DownloadFolder::~DownloadFolder()
{
    remove();
}

bool DownloadFolder::create(const QString &parent)
{
    removeStale(parent);
    QTemporaryDir folder(QDir(parent).absoluteFilePath(QStringLiteral(".nox-XXXXXX")));
    folder.setAutoRemove(false);
    if (!folder.isValid()) {
        m_errorText = folder.errorString();
        return false;
    }
    m_path = folder.path();
    // Where there can be no lock, only the later clearing up is lost.
    m_lock = lockOf(m_path);
    static_cast<void>(m_lock->tryLock(0));
    return true;
}

/** Removes folders of runs that were killed: those with a lock whose process is gone. */
void DownloadFolder::removeStale(const QString &parent)
{
    const QFileInfoList folders = QDir(parent).entryInfoList(
        {QStringLiteral(".nox-??????")}, QDir::Dirs | QDir::Hidden | QDir::NoSymLinks | QDir::NoDotAndDotDot);
    for (const QFileInfo &folder : folders) {
        const std::unique_ptr<QLockFile> lock = lockOf(folder.filePath());
        // One without a lock may just be coming into being.
        if (folder.ownerId() == geteuid() && QFileInfo::exists(lockFile(folder.filePath())) && lock->tryLock(0))
            removeFolder(folder.filePath(), *lock);
    }
}

bool DownloadFolder::isFull(const QString &folder)
{
    constexpr qint64 leastRoom = 64LL * 1024; // some file systems keep a little back
    const QStorageInfo disk(folder);
    return disk.isValid() && disk.bytesAvailable() < leastRoom;
}

QString DownloadFolder::filePath(const QString &name) const
{
    return m_path + QLatin1Char('/') + name;
}

QFileInfoList DownloadFolder::files(const QString &pattern) const
{
    return m_path.isEmpty() ? QFileInfoList() : QDir(m_path).entryInfoList({pattern}, QDir::Files);
}

bool DownloadFolder::isJoining() const
{
    return !files(joinedPattern).isEmpty();
}

int DownloadFolder::completeStreams() const
{
    const QString mark = QStringLiteral("YDTMP_.");
    int count = 0;
    for (const QFileInfo &file : files(QLatin1Char('*') + mark + QLatin1Char('*'))) {
        const QString name = file.fileName();
        count += name.indexOf(QLatin1Char('.'), name.indexOf(mark) + mark.size()) < 0 ? 1 : 0;
    }
    return count;
}

qint64 DownloadFolder::fetchedBytes() const
{
    return bytes(files(QStringLiteral("*"))) - joinedBytes();
}

qint64 DownloadFolder::joinedBytes() const
{
    return bytes(files(joinedPattern));
}

QString DownloadFolder::release(const QString &name, const QString &destination)
{
    QString path = destination;
    QStringList taken;            // a link that leads nowhere does not look taken
    constexpr int attempts = 100; // in case others take the names as they are found
    for (int i = 0; i < attempts; ++i) {
        if (FileRename::withoutReplacing(filePath(name), path))
            return path;
        const QFileInfo existing(path);
        if (!existing.exists() && !existing.isSymLink())
            break;
        taken += existing.absoluteFilePath();
        path = Destination::free(destination, taken);
    }
    return {};
}

bool DownloadFolder::remove()
{
    if (m_path.isEmpty())
        return true;
    if (!removeFolder(m_path, *m_lock))
        return false;
    m_path.clear();
    m_lock.reset();
    return true;
}

} // namespace Nox
