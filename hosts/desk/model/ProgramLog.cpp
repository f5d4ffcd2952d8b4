#include "hosts/desk/model/ProgramLog.h"

#include <QDir>
#include <QFileInfo>
#include <QLockFile>

namespace NoxDesk {

ProgramLog::ProgramLog(const QString &folder)
{
    constexpr int watchMs = 2000;
    m_watch.setInterval(watchMs);
    QObject::connect(&m_watch, &QTimer::timeout, &m_watch, [this] { rotate(); });
    constexpr auto detail = NoxHost::LibraryLog::Detail::Milestones;
    const bool hasFolder = !folder.isEmpty() && QDir().mkpath(folder);
    if (!hasFolder || !m_log.open(QDir(folder).filePath(QStringLiteral("nox-desk.log")), detail))
        m_log.open({}, detail);
    rotate();
}

void ProgramLog::setWatched(bool isWatched)
{
    if (!isWatched) {
        m_watch.stop();
        rotate();
    } else if (!m_watch.isActive()) {
        m_watch.start();
    }
}

void ProgramLog::rotate()
{
    if (QFileInfo(fileName()).size() <= largestSize)
        return;
    // Only one instance renames the file; the others then find a small one.
    QLockFile lock(fileName() + QStringLiteral(".lock"));
    if (lock.tryLock() && QFileInfo(fileName()).size() > largestSize) {
        const QString old = fileName() + QStringLiteral(".old");
        QFile::remove(old);
        QFile::rename(fileName(), old);
    }
}

} // namespace NoxDesk
