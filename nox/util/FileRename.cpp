#include <nox/util/FileRename.h>

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace Nox {

bool FileRename::withoutReplacing(const QString &from, const QString &to)
{
    // The system reads a name up to its first zero character, which names another file.
    if (from.contains(QChar::Null) || to.contains(QChar::Null))
        return false;
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
#if defined(RENAME_NOREPLACE)
    if (::renameat2(AT_FDCWD, source.constData(), AT_FDCWD, target.constData(), RENAME_NOREPLACE) == 0)
        return true;
    // Not every file system supports this call.
    if (errno != EINVAL && errno != ENOSYS && errno != EXDEV)
        return false;
#endif
    if (::link(source.constData(), target.constData()) == 0) {
        const bool isGone = ::unlink(source.constData()) == 0;
        if (!isGone)
            ::unlink(target.constData());
        return isGone;
    }
    const QFileInfo existing(to);
    return !existing.exists() && !existing.isSymLink() && QFile::rename(from, to);
}

} // namespace Nox
