#pragma once

#include <QJsonArray>
#include <QLockFile>
#include <QString>

#include <memory>

namespace NoxDesk {

/**
 * Stores the list of downloads between two runs, in a file of the user. Each running instance has its own file. A new
 * instance takes over the lists of instances that no longer run.
 */
class DownloadStore
{
public:
    /** Selects a file that no other instance uses. If that fails, nothing is stored. */
    DownloadStore();

    /** Reads the stored lists, for DownloadListModel::restore(). To be called once. */
    QJsonArray load();

    /** The error message about files that could not be read and were renamed; empty if there are none. */
    QString errorString() const { return m_error; }

    void save(const QJsonArray &downloads); ///< Replaces the stored list; the old one is kept if that fails.

private:
    QJsonArray read(const QString &name);

    QString m_file;
    std::unique_ptr<QLockFile> m_lock; // of the file
    QString m_error;
};

} // namespace NoxDesk
