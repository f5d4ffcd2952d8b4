#include "hosts/common/FileLock.h"

#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace NoxHost {

FileLock::~FileLock()
{
    release();
}

bool FileLock::take(const QString &path, bool create)
{
    release();
    // Not handed on to the external programs: what they leave running must not hold the lock.
    const int flags = O_RDWR | O_CLOEXEC | O_NOFOLLOW | (create ? O_CREAT : 0);
    m_descriptor = open(QFile::encodeName(path).constData(), flags, S_IRUSR | S_IWUSR);
    if (m_descriptor >= 0 && flock(m_descriptor, LOCK_EX | LOCK_NB) == 0)
        return true;
    release();
    return false;
}

void FileLock::release()
{
    if (m_descriptor >= 0)
        close(m_descriptor);
    m_descriptor = -1;
}

} // namespace NoxHost
