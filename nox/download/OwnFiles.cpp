#include <nox/download/OwnFiles.h>

#include <QFileInfo>

namespace Nox {

OwnFiles::OwnFiles(const QString &folder)
    : m_folder(folder)
    , m_begin(QDateTime::currentDateTimeUtc())
{
}

bool OwnFiles::contain(const QString &file) const
{
    // The system would take a name up to its first zero character, and so another file.
    if (file.contains(QChar::Null))
        return false;
    const QFileInfo info(file);
    if ((!info.exists() && !info.isSymLink()) || isInside(info))
        return true;
    // Of a link, only its target's time is known. The clock of the file system proceeds in steps of some
    // milliseconds: what it stamps now is never later than this clock's time, and the first file of the tool comes
    // later than one step. A time still to come is that of a clock that was wrong.
    const QDateTime birth = info.birthTime();
    return !info.isSymLink() && birth.isValid() && birth > m_begin && birth <= QDateTime::currentDateTimeUtc();
}

// With all links on the way resolved, as the system does it when the file is renamed or removed.
bool OwnFiles::isInside(const QFileInfo &info) const
{
    const QString name = info.fileName();
    if (name.isEmpty() || name == QLatin1String(".") || name == QLatin1String(".."))
        return false; // another way to write a folder
    const QString home = QFileInfo(m_folder).canonicalFilePath();
    const QString place = QFileInfo(info.path()).canonicalFilePath();
    return !home.isEmpty()
        && (place == home || place.startsWith(home.endsWith(QLatin1Char('/')) ? home : home + QLatin1Char('/')));
}

} // namespace Nox
