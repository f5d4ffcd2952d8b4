#pragma once

#include <nox/jobs/JobsExport.h>

#include <QJsonArray>
#include <QLockFile>
#include <QString>

#include <map>
#include <memory>

namespace Nox {

/**
 * Stores the list of a DownloadQueue between two runs of an application, in a file of the user. Each running instance
 * of the application has its own file. A new instance takes over the lists of instances that no longer run.
 */
class NOX_JOBS_EXPORT DownloadStore
{
public:
    /**
     * Selects a file in $XDG_STATE_HOME/noxwebmedia that no other instance uses. If that fails, nothing is stored.
     * @param application name of the application, for the file's name
     */
    explicit DownloadStore(const QString &application);

    /** Reads the stored lists, for DownloadQueue::restore(). To be called once. */
    QJsonArray load();

    /** The error message about files that could not be read and were renamed; empty if there are none. */
    QString errorString() const { return m_error; }

    /** Whether no other instance of the application stores its list. If there is one, paused downloads may be its. */
    bool isAlone() const;

    /** Replaces the stored list. @return whether that succeeded; if not, for example on a full disk, the old one stays
     */
    bool save(const QJsonArray &downloads);

private:
    QString fileOf(int instance) const;
    std::unique_ptr<QLockFile> newLock(int instance) const;
    QJsonArray read(const QString &name);

    QString m_application;
    QString m_file;
    std::unique_ptr<QLockFile> m_lock;                 // of the file
    std::map<int, std::unique_ptr<QLockFile>> m_taken; // of lists of other instances, until they are saved here
    QString m_error;
};

} // namespace Nox
