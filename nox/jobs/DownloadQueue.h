#pragma once

#include <nox/jobs/DownloadRequest.h>
#include <nox/jobs/JobsExport.h>
#include <nox/jobs/ToolSetup.h>

#include <QAbstractListModel>
#include <QJsonArray>
#include <QList>
#include <QStringList>

#include <functional>
#include <memory>

namespace Nox {

class PageJob;
class QueuedDownload;

/**
 * A list of downloads, of which a limited number runs at the same time, as a model for views and QML. Order: running,
 * then waiting in the order in which they will start, then paused, then ended, newest first.
 *
 * Every download keeps its parts, so a paused, failed or interrupted one can be resumed; see DownloadJob. The
 * destructor stops the running downloads. A DownloadStore keeps the list for the next start of the application.
 *
 * If only the figures of a running download have changed, dataChanged() names the roles. A view with many rows can show
 * them together, for example once per second. Other changes come without roles.
 *
 * Functions ignore a row that does not exist. A queue belongs to one thread, whose event loop must run. Its functions
 * may be called in the chooser and inside countsChanged(), ended() and allEnded(). To delete it there, use
 * deleteLater().
 */
class NOX_JOBS_EXPORT DownloadQueue : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int activeCount READ activeCount NOTIFY countsChanged)
    Q_PROPERTY(int pausedCount READ pausedCount NOTIFY countsChanged)
    Q_PROPERTY(int endedCount READ endedCount NOTIFY countsChanged)

public:
    /** The state of a download. */
    enum State {
        Waiting,    ///< Starts when fewer downloads run.
        Running,    ///< Reads the page, downloads, joins or converts.
        Cancelling, ///< Its processes are ending.
        Finished,   ///< The file is complete.
        Failed,     ///< See ErrorRole.
        Cancelled,  ///< Nothing is left of it.
        Pausing,    ///< Its processes are ending.
        Paused,     ///< Can be resumed.
    };
    Q_ENUM(State)

    /** The data of a row. Qt::DisplayRole is the file's name, or the address while there is none. In QML each role has
     * the name in quotes. */
    enum Role {
        FileRole = Qt::UserRole, ///< "file": path of the file; may be empty at first.
        StateRole,               ///< "state": a value of State.
        PercentRole,             ///< "percent": 0 to 100, or -1 if unknown.
        StatusRole,              ///< "status": phase and figures, or the outcome, as text.
        ErrorRole,               ///< "errorString": the error message; empty unless it failed.
        ErrorDetailsRole,        ///< "errorDetails": messages of the external programs about it.
        AddressRole,             ///< "address": address of the page.
    };
    Q_ENUM(Role)

    /** Makes the request for a page that was read; without a stream if there is nothing to download. */
    using Chooser = std::function<DownloadRequest(const PageJob &page)>;

    /** @param tools see setTools(). @param parent owner of the queue, as usual for QObject */
    explicit DownloadQueue(const ToolSetup &tools = ToolSetup(), QObject *parent = nullptr);
    ~DownloadQueue() override;

    /** Paths of the external programs, for downloads that start from now on. */
    void setTools(const ToolSetup &tools);

    /** Number of downloads that run at the same time; at least 1, which is the default. If it grows, waiting ones start
     * at once. */
    void setLimit(int limit);

    /** Chooses the stream and the file for requests without a stream. Without a stream the download fails. */
    void setChooser(const Chooser &choose);

    void add(const DownloadRequest &request); ///< Starts a download, or puts it at the end of the waiting ones.

    /** Adds several downloads in this order. The time is linear, and countsChanged() comes once, after all. */
    void add(const QList<DownloadRequest> &requests);

    /** Adds stored downloads. @param stored result of toJson(); unfinished downloads are paused */
    void restore(const QJsonArray &stored);

    /** Adds as paused the downloads that killed processes have left in @p folder, if the list does not have them. Those
     * that another running instance of the application has paused are found as well: see DownloadStore::isAlone(). */
    void addInterrupted(const QString &folder);

    QJsonArray toJson() const; ///< A form that can be stored.

    /** Whether a download in the list, not cancelled or failed, is the same. Without a stream: of the same page. */
    bool contains(const DownloadRequest &request) const;

    /** Whether the download in @p row is not active and has parts that it can be resumed from. Looks at the disk. */
    Q_INVOKABLE bool hasParts(int row) const;

    int activeCount() const;  ///< Number of running and waiting downloads.
    int runningCount() const; ///< Number of running downloads.
    int endedCount() const;   ///< Number of finished, failed and cancelled downloads.
    int pausedCount() const { return rowCount() - activeCount() - endedCount(); } ///< Number of paused downloads.
    QStringList activeFiles() const;                                              ///< Files of the active downloads.

    int batchCount() const;      ///< Number of downloads since the last time that none was active: a batch.
    int batchEndedCount() const; ///< How many of the batch are finished, failed or cancelled.
    int batchPercent() const;    ///< Progress of the batch, 0 to 100. Paused ones count with what they have.

    int rowCount(const QModelIndex &parent = {}) const override; ///< Number of downloads in the list.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override; ///< See Role.
    QHash<int, QByteArray> roleNames() const override;                                  ///< The names in QML; see Role.

public Q_SLOTS:
    void pause(int row);        ///< Pauses a running or waiting download.
    void pauseAll();            ///< Pauses all running and waiting downloads.
    void cancel(int row);       ///< Cancels a running, pausing or waiting download and removes its parts.
    void cancelAll();           ///< Cancels all running and waiting downloads.
    void retry(int row);        ///< Resumes a paused, failed or cancelled download; it may have to wait.
    void resumeAll();           ///< Resumes all paused downloads.
    void move(int row, int by); ///< Moves a waiting download up (negative) or down among the waiting.

    /** Removes a download that is not active from the list. Its parts are removed too, unless they belong to another
     * download of the list as well, which can be resumed from them. */
    void remove(int row);

    /** Removes all ended downloads from the list, except failed ones that can be resumed: see hasParts(). */
    void removeEnded();

Q_SIGNALS:
    /** A download was added, started, ended or removed. */
    void countsChanged();

    /** The download in @p row has ended. */
    void ended(int row);

    /** The last active download has ended. */
    void allEnded();

private:
    void insert(int row, const QList<QueuedDownload *> &downloads);
    void watch(QueuedDownload *download);
    void enqueue(const QList<QueuedDownload *> &downloads);
    void startNext();
    void take(int row);
    void place(int row);
    void onChanged(QueuedDownload *download);
    void onEnded(QueuedDownload *download);

    class Private;
    const std::unique_ptr<Private> d;
};

} // namespace Nox
