#pragma once

#include <QString>

namespace NoxHost {

/**
 * A file that is locked as long as this object lives: against other programs that ask for the same lock,
 * not against reading and writing. The lock goes with the process, however that ends.
 */
class FileLock
{
public:
    FileLock() = default;
    FileLock(const FileLock &) = delete;
    FileLock &operator=(const FileLock &) = delete;
    ~FileLock();

    /** Locks the file at @p path, which is made when @p create is set; whether nobody else had it locked. */
    bool take(const QString &path, bool create);

    void release();

private:
    int m_descriptor = -1;
};

} // namespace NoxHost
