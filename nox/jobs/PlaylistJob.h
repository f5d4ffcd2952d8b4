#pragma once

#include <nox/jobs/Job.h>
#include <nox/jobs/PlaylistEntry.h>
#include <nox/jobs/ToolSetup.h>

#include <QList>

namespace Nox {

/**
 * Lists the videos of a page that has several, without reading each of them. One job lists one range. For a page with
 * thousands of videos, use one job after the other.
 */
class NOX_JOBS_EXPORT PlaylistJob : public Job
{
    Q_OBJECT
    Q_PROPERTY(QString url READ url CONSTANT)
    Q_PROPERTY(QList<Nox::PlaylistEntry> entries READ entries NOTIFY entryFound)
    Q_PROPERTY(bool hasMore READ hasMore NOTIFY stateChanged)
    Q_PROPERTY(int total READ total NOTIFY stateChanged)

public:
    static constexpr int maximumCount = 200; ///< largest number of entries in one job

    /**
     * @param url address of the page
     * @param tools paths of the external programs
     * @param parent owner of the job, as usual for QObject
     */
    explicit PlaylistJob(const QString &url, const ToolSetup &tools = ToolSetup(), QObject *parent = nullptr);
    ~PlaylistJob() override;

    /**
     * Selects the range. To be called before start().
     * @param first number of the first entry; at least 1, which is the default
     * @param count number of entries, from 1 to #maximumCount, which is the default. A value outside is limited
     */
    void setRange(int first, int count = maximumCount);

    QString url() const;                  ///< Address of the page.
    QList<PlaylistEntry> entries() const; ///< The entries so far, in the page's order; also after a failure.

    /** Whether the page has more entries after this range; false before the end. */
    bool hasMore() const;

    /** Total number of entries on the page; -1 if unknown. */
    int total() const;

    /** Whether the entries are the parts of one video. */
    bool isInParts() const;

Q_SIGNALS:
    /** Another entry was found. @param entry the last of entries() */
    void entryFound(const Nox::PlaylistEntry &entry);

private:
    class Private;
    Private *d() const;
};

} // namespace Nox
