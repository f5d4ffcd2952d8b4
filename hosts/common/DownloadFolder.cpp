#include "hosts/common/DownloadFolder.h"

#include "hosts/common/Destination.h"

#include <nox/util/FileRename.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <numeric>

#include <unistd.h>

namespace NoxHost {

namespace {

const QLatin1String lockName(".lock");
const QLatin1String joinedPattern("*YDTMP_.*.tmp.mp4");

qint64 bytes(const QFileInfoList &files)
{
    return std::accumulate(files.cbegin(), files.cend(), qint64(0),
                           [](qint64 sum, const QFileInfo &file) { return sum + file.size(); });
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
    // Locked before it gets the name that others look at. Where that cannot be, only the later clearing up is lost.
    const QString newLock = filePath(QStringLiteral(".lock.new"));
    if (m_lock.take(newLock, true))
        QFile::rename(newLock, filePath(lockName));
    return true;
}

/** Removes folders of runs that were killed: those with a lock that nobody holds. */
void DownloadFolder::removeStale(const QString &parent)
{
    const QFileInfoList folders = QDir(parent).entryInfoList(
        {QStringLiteral(".nox-??????")}, QDir::Dirs | QDir::Hidden | QDir::NoSymLinks | QDir::NoDotAndDotDot);
    for (const QFileInfo &folder : folders) {
        FileLock lock;
        if (folder.ownerId() == geteuid() && lock.take(folder.filePath() + QLatin1Char('/') + lockName, false))
            QDir(folder.filePath()).removeRecursively();
    }
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
        if (Nox::FileRename::withoutReplacing(filePath(name), path))
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
    if (m_path.isEmpty() || QDir(m_path).removeRecursively()) {
        m_path.clear();
        m_lock.release();
        return true;
    }
    return false;
}

} // namespace NoxHost
