#include "tests/support/Processes.h"

#include "tests/util/Files.h"

#include <csignal>
#include <unistd.h>

namespace {

/** State and parent of a process; empty when there is none. */
QList<QByteArray> statFields(qint64 pid)
{
    const QByteArray text = Files::content(QStringLiteral("/proc/%1/stat").arg(pid));
    return text.isEmpty() ? QList<QByteArray>() : text.mid(text.lastIndexOf(')') + 2).split(' ');
}

} // namespace

bool Processes::isRunning(qint64 pid)
{
    const QList<QByteArray> fields = statFields(pid);
    return !fields.isEmpty() && fields.first() != "Z" && fields.first() != "X";
}

QList<qint64> Processes::children()
{
    QList<qint64> pids;
    const QStringList entries = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
    for (const QString &entry : entries) {
        const QList<QByteArray> fields = statFields(entry.toLongLong());
        if (fields.size() > 1 && fields.at(1).toLongLong() == getpid())
            pids.append(entry.toLongLong());
    }
    return pids;
}

void Processes::end(qint64 pid)
{
    if (isRunning(pid))
        ::kill(static_cast<pid_t>(pid), SIGKILL);
}

qint64 Processes::residentBytes()
{
    return Files::content(QStringLiteral("/proc/self/statm")).split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
}
