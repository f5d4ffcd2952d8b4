#pragma once

#include <QJsonArray>
#include <QLockFile>
#include <QString>

#include <memory>

namespace NoxDesk {

/**
 * Keeps the list of downloads from one start of the program to the next, in a file of the user. Each running program
 * has a file of its own; the lists of programs that do not run any more are taken over.
 */
class DownloadStore
{
public:
    /** Takes a file that no other program has; without one nothing is kept. */
    DownloadStore();

    /** Takes over what is stored: see DownloadListModel::restore(). To be called once. */
    QJsonArray load();

    /** Which files could not be read and have been set aside, in words; empty when there is none. */
    QString errorString() const { return m_error; }

    void save(const QJsonArray &downloads); ///< Replaces what is stored; the old list stays whole if that fails.

private:
    QJsonArray read(const QString &name);

    QString m_file;
    std::unique_ptr<QLockFile> m_lock; // of the file
    QString m_error;
};

} // namespace NoxDesk
