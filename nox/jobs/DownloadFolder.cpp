#include <nox/jobs/DownloadFolder.h>

#include <nox/jobs/Destination.h>
#include <nox/jobs/PartsFolder.h>
#include <nox/util/FileRename.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <numeric>

#include <sys/stat.h>
#include <unistd.h>

namespace Nox {

namespace {

const QLatin1String joinedPattern("*YDTMP_.*.tmp.mp4");

qint64 bytes(const QFileInfoList &files)
{
    return std::accumulate(files.cbegin(), files.cend(), qint64(0),
                           [](qint64 sum, const QFileInfo &file) { return sum + file.size(); });
}

/** The lock file of the folder @p path. */
QString lockFile(const QString &path)
{
    return path + QStringLiteral("/.lock");
}

/**
 * The lock of the folder @p path. It does not expire, since downloads may take days. After a power cut the lock file
 * can be empty, because its text is written just after it was created.
 */
std::unique_ptr<QLockFile> lockOf(const QString &path)
{
    constexpr int writingSeconds = 60;
    auto lock = std::make_unique<QLockFile>(lockFile(path));
    lock->setStaleLockTime(0);
    const QFileInfo file(lockFile(path));
    const bool isOld = file.exists() && file.lastModified().secsTo(QDateTime::currentDateTime()) > writingSeconds;
    qint64 process = 0;
    QString host;
    QString program;
    if (isOld && !lock->getLockInfo(&process, &host, &program))
        QFile::remove(file.filePath());
    return lock;
}

/** The private folders in @p parent that belong to the user. */
QFileInfoList ownFolders(const QString &parent)
{
    QFileInfoList folders =
        QDir(parent).entryInfoList({QStringLiteral(".nox-??????")}, QDir::Dirs | QDir::Hidden | QDir::NoSymLinks);
    folders.erase(std::remove_if(folders.begin(), folders.end(),
                                 [](const QFileInfo &folder) { return folder.ownerId() != ::geteuid(); }),
                  folders.end());
    return folders;
}

/** Removes the content of the folder @p path, except its lock and the entry @p kept. @return whether all is removed */
bool empty(const QString &path, const QString &kept)
{
    const auto entries = [&path] {
        return QDir(path).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    };
    const auto stays = [&](const QFileInfo &entry) {
        return entry.filePath() == lockFile(path) || entry.fileName() == kept;
    };
    const QFileInfoList found = entries();
    for (const QFileInfo &entry : found) {
        if (stays(entry))
            continue;
        if (entry.isDir() && !entry.isSymLink())
            QDir(entry.filePath()).removeRecursively();
        else
            QFile::remove(entry.filePath());
    }
    const QFileInfoList left = entries();
    return std::all_of(left.cbegin(), left.cend(), stays);
}

/**
 * Removes the folder @p path, its lock last: if this program is killed meanwhile, the next one can still remove the
 * rest. QLockFile prints a warning if its file is removed before it is unlocked.
 */
bool removeFolder(const QString &path, QLockFile &lock)
{
    empty(path, {});
    lock.unlock();
    if (QDir().rmdir(path) || !QFileInfo::exists(path))
        return true;
    static_cast<void>(lock.tryLock(0));
    return false;
}

/** Whether a download can be resumed from @p parts. */
bool isUsable(const PartsFolder &parts)
{
    return parts.exists() && parts.bytes() > 0 && parts.record().isComplete();
}

} // namespace

DownloadFolder::~DownloadFolder()
{
    leave();
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
    // Without a lock the folder still works; but after a crash nobody removes it.
    m_lock = lockOf(m_path);
    static_cast<void>(m_lock->tryLock(0));
    return true;
}

bool DownloadFolder::createWithParts(const QString &parent, const DownloadRecord &download)
{
    removeStale(parent);
    if (!adopt(parent, download) && !create(parent))
        return false;
    m_errorText = PartsFolder(m_path).write(download);
    m_hasParts = m_errorText.isEmpty() || isUsable(PartsFolder(m_path)); // a full disk leaves old parts unchanged
    if (!m_errorText.isEmpty())
        leave();
    return m_errorText.isEmpty();
}

/** Uses existing parts of the same streams; parts for the same file are preferred. */
bool DownloadFolder::adopt(const QString &parent, const DownloadRecord &download)
{
    const QFileInfoList folders = ownFolders(parent);
    for (const bool forSameFile : {true, false}) {
        const auto suits = [&](const DownloadRecord &found) {
            return found.hasSameStreams(download) && (!forSameFile || found.destination == download.destination);
        };
        for (const QFileInfo &folder : folders)
            if (take(folder.filePath(), suits))
                return true;
    }
    return false;
}

/** Uses the folder @p path if it is not in use and the record of its parts @p suits. */
bool DownloadFolder::take(const QString &path, const std::function<bool(const DownloadRecord &)> &suits)
{
    const PartsFolder parts(path);
    const auto isSuitable = [&] { return isUsable(parts) && suits(parts.record()); };
    if (!isSuitable())
        return false;
    std::unique_ptr<QLockFile> lock = lockOf(path);
    // Another process may have changed the folder before it was locked here.
    if (!lock->tryLock(0) || !isSuitable())
        return false;
    m_path = path;
    m_lock = std::move(lock);
    m_hasParts = true;
    empty(m_path, PartsFolder::folderName());
    return true;
}

QList<DownloadRecord> DownloadFolder::interrupted(const QString &parent)
{
    QList<DownloadRecord> records;
    const QFileInfoList folders = ownFolders(parent);
    for (const QFileInfo &entry : folders) {
        DownloadFolder folder; // its destructor keeps the parts
        if (folder.take(entry.filePath(), [](const DownloadRecord &) { return true; }))
            records += PartsFolder(entry.filePath()).record();
    }
    return records;
}

void DownloadFolder::discard(const DownloadRecord &download)
{
    const QFileInfoList folders = ownFolders(QFileInfo(download.destination).absolutePath());
    for (const QFileInfo &entry : folders) {
        DownloadFolder folder;
        if (folder.take(entry.filePath(), [&](const DownloadRecord &found) { return found.key() == download.key(); }))
            folder.remove();
    }
}

/** Removes the folders of killed programs (the process in the lock no longer exists) and expired parts. */
void DownloadFolder::removeStale(const QString &parent)
{
    const QFileInfoList folders = ownFolders(parent);
    for (const QFileInfo &folder : folders) {
        const QString path = folder.filePath();
        const PartsFolder parts(path);
        const bool hasLock = QFileInfo::exists(lockFile(path));
        // Without a lock it is either just being created, or it was left with parts.
        if (!hasLock && !parts.exists())
            continue;
        const std::unique_ptr<QLockFile> lock = lockOf(path);
        if (!lock->tryLock(0))
            continue;
        if (!isUsable(parts) || parts.isExpired())
            removeFolder(path, *lock);
        else
            empty(path, PartsFolder::folderName());
    }
}

bool DownloadFolder::isFull(const QString &folder)
{
    constexpr qint64 leastRoom = 64LL * 1024; // some file systems reserve a little
    const qint64 room = Destination::availableBytes(folder);
    return room >= 0 && room < leastRoom;
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
    if (!m_hasParts)
        return bytes(files(QStringLiteral("*"))) - joinedBytes();
    // A complete stream is one file with two names: one here, one among the parts. Count it once.
    qint64 sum = PartsFolder(m_path).bytes();
    for (const QFileInfo &file : files(QStringLiteral("*YDTMP_.*"))) {
        struct stat status = {};
        if (::stat(QFile::encodeName(file.filePath()).constData(), &status) == 0 && status.st_nlink == 1)
            sum += file.size();
    }
    return sum - joinedBytes();
}

qint64 DownloadFolder::joinedBytes() const
{
    return bytes(files(joinedPattern));
}

QString DownloadFolder::release(const QString &name, const QString &destination)
{
    QString path = destination;
    QStringList taken;            // Destination::free() does not see a dangling link
    constexpr int attempts = 100; // other programs may create a file of the same name meanwhile
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

bool DownloadFolder::hasParts() const
{
    return m_hasParts && PartsFolder(m_path).bytes() > 0;
}

bool DownloadFolder::remove()
{
    if (m_path.isEmpty())
        return true;
    if (!removeFolder(m_path, *m_lock))
        return false;
    close();
    return true;
}

bool DownloadFolder::leave()
{
    if (!hasParts())
        return remove();
    if (!empty(m_path, PartsFolder::folderName()))
        return false;
    close();
    return true;
}

void DownloadFolder::close()
{
    m_path.clear();
    m_lock.reset(); // unlocks
    m_hasParts = false;
}

} // namespace Nox
