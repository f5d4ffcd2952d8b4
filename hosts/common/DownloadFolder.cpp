#include "hosts/common/DownloadFolder.h"

#include "hosts/common/Destination.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace NoxHost {

DownloadFolder::~DownloadFolder()
{
    remove();
}

bool DownloadFolder::create(const QString &parent)
{
    QTemporaryDir folder(QDir(parent).absoluteFilePath(QStringLiteral(".nox-XXXXXX")));
    folder.setAutoRemove(false);
    if (!folder.isValid()) {
        m_errorText = folder.errorString();
        return false;
    }
    m_path = folder.path();
    return true;
}

QString DownloadFolder::errorText() const
{
    return m_errorText;
}

QString DownloadFolder::filePath(const QString &name) const
{
    return m_path + QLatin1Char('/') + name;
}

bool DownloadFolder::isJoining() const
{
    return !m_path.isEmpty() && !QDir(m_path).entryList({QStringLiteral("*YDTMP_.*.tmp.mp4")}, QDir::Files).isEmpty();
}

int DownloadFolder::completeStreams() const
{
    if (m_path.isEmpty())
        return 0;
    const QString mark = QStringLiteral("YDTMP_.");
    int count = 0;
    const QStringList names = QDir(m_path).entryList({QLatin1Char('*') + mark + QLatin1Char('*')}, QDir::Files);
    for (const QString &name : names)
        count += name.indexOf(QLatin1Char('.'), name.indexOf(mark) + mark.size()) < 0 ? 1 : 0;
    return count;
}

QString DownloadFolder::release(const QString &name, const QString &destination)
{
    QString path = destination;
    constexpr int attempts = 100; // in case others take the names as they are found
    for (int i = 0; i < attempts; ++i) {
        if (QFile::rename(filePath(name), path))
            return path;
        if (!QFile::exists(path))
            break;
        path = Destination::free(destination);
    }
    return {};
}

bool DownloadFolder::remove()
{
    if (m_path.isEmpty() || QDir(m_path).removeRecursively()) {
        m_path.clear();
        return true;
    }
    return false;
}

} // namespace NoxHost
