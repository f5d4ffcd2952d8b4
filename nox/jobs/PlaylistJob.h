#pragma once

#include <nox/jobs/Job.h>
#include <nox/jobs/PlaylistEntry.h>
#include <nox/jobs/ToolSetup.h>

#include <QList>

namespace Nox {

/**
 * Lists the videos of a page with several, without reading each of them. A job lists one range of them, so that a
 * page with thousands is listed step by step; each further range is a job of its own.
 */
class NOX_JOBS_EXPORT PlaylistJob : public Job
{
    Q_OBJECT
    Q_PROPERTY(QString url READ url CONSTANT)
    Q_PROPERTY(QList<Nox::PlaylistEntry> entries READ entries NOTIFY entryFound)
    Q_PROPERTY(bool hasMore READ hasMore NOTIFY stateChanged)
    Q_PROPERTY(int total READ total NOTIFY stateChanged)

public:
    static constexpr int maximumCount = 200; ///< entries that one job lists at most

    /**
     * @param url address of the page
     * @param tools where the programs are that the job runs
     * @param parent deletes the job, if nobody else does
     */
    explicit PlaylistJob(const QString &url, const ToolSetup &tools = ToolSetup(), QObject *parent = nullptr);
    ~PlaylistJob() override;

    /**
     * Which entries are listed. To be called before start().
     * @param first number of the first one, from 1, which is the default
     * @param count how many, from 1 to maximumCount, which is the default; other numbers become the nearest of these
     */
    void setRange(int first, int count = maximumCount);

    QString url() const;                  ///< Address of the page.
    QList<PlaylistEntry> entries() const; ///< Those found so far, in the page's order. They stay after a failure.

    /** Whether the page has entries behind those that were listed; false before the end. */
    bool hasMore() const;

    /** How many entries the page has in all, or -1 where that is not known. */
    int total() const;

    /** Whether the entries are the parts of one video. */
    bool isInParts() const;

Q_SIGNALS:
    /** One more has been found. @param entry the last one of entries() */
    void entryFound(const Nox::PlaylistEntry &entry);

private:
    class Private;
    Private *d() const;
};

} // namespace Nox
