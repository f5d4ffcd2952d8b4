#include <nox/download/OwnFiles.h>

#include <QFileInfo>

namespace Nox {

OwnFiles::OwnFiles(const QString &folder)
    : m_folder(folder)
    , m_begin(QDateTime::currentDateTimeUtc())
{
}

bool OwnFiles::mayModify(const QString &file) const
{
    // The system reads a name up to its first zero character, which names another file.
    if (file.contains(QChar::Null))
        return false;
    const QFileInfo info(file);
    if ((!info.exists() && !info.isSymLink()) || isInside(info))
        return true;
    // For a link, birthTime() gives the time of its target. The file system's clock lags behind ours by some
    // milliseconds, so a file from before the download never counts as new. The tool takes longer than that for its
    // first file. A time in the future comes from a clock that was wrong.
    const QDateTime birth = info.birthTime();
    return !info.isSymLink() && birth.isValid() && birth > m_begin && birth <= QDateTime::currentDateTimeUtc();
}

// Resolves links in the path, as the system does when the file is renamed or removed.
bool OwnFiles::isInside(const QFileInfo &info) const
{
    const QString name = info.fileName();
    if (name.isEmpty() || name == QLatin1String(".") || name == QLatin1String(".."))
        return false; // a folder
    const QString home = QFileInfo(m_folder).canonicalFilePath();
    const QString place = QFileInfo(info.path()).canonicalFilePath();
    return !home.isEmpty()
        && (place == home || place.startsWith(home.endsWith(QLatin1Char('/')) ? home : home + QLatin1Char('/')));
}

} // namespace Nox
