#include "hosts/desk/model/ProgramLog.h"

#include <QDir>
#include <QFileInfo>

namespace NoxDesk {

namespace {

constexpr int watchMs = 2000;
constexpr int maximumFiles = 100; // that many programs at once

} // namespace

ProgramLog::ProgramLog(const QString &folder)
{
    m_watch.setInterval(watchMs);
    QObject::connect(&m_watch, &QTimer::timeout, &m_watch, [this] { rotate(); });
    if (folder.isEmpty() || !claim(folder))
        m_log.open({}, NoxHost::LibraryLog::Detail::Milestones);
    rotate();
}

/** Takes the first file that no running program has. */
bool ProgramLog::claim(const QString &folder)
{
    const QDir files(folder);
    if (!files.mkpath(QStringLiteral(".")))
        return false;
    for (int number = 1; number <= maximumFiles; ++number) {
        const QString name =
            number == 1 ? QStringLiteral("nox-desk.log") : QStringLiteral("nox-desk-%1.log").arg(number);
        m_lock = std::make_unique<QLockFile>(files.filePath(name + QStringLiteral(".lock")));
        m_lock->setStaleLockTime(0); // a program may run for days
        if (m_lock->tryLock() && m_log.open(files.filePath(name), NoxHost::LibraryLog::Detail::Milestones))
            return true;
    }
    m_lock.reset();
    return false;
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
    if (QFileInfo(fileName()).size() > largestSize) {
        const QString old = fileName() + QStringLiteral(".old");
        QFile::remove(old);
        QFile::rename(fileName(), old);
    }
}

} // namespace NoxDesk
