#pragma once

#include "hosts/desk/model/Download.h"

#include <QAbstractListModel>
#include <QJsonArray>
#include <QStringList>

namespace NoxDesk {

/**
 * The list of downloads, which it owns. Order: running, then waiting in the order in which they will start, then
 * paused, then ended, newest first.
 */
class DownloadListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        FileRole = Qt::UserRole, ///< Path of the file.
        StateRole,               ///< Download::State.
        PercentRole,             ///< 0 to 100, or -1 if unknown.
        StatusRole,              ///< Phase and figures, or the outcome, as text.
        ErrorRole,               ///< The error message.
        ErrorDetailsRole,        ///< Messages of the external programs about it.
        AddressRole,             ///< Address of the page.
    };

    explicit DownloadListModel(const Nox::ToolSetup &tools, QObject *parent = nullptr);

    /** Used by downloads that start from now on. */
    void setTools(const Nox::ToolSetup &tools) { m_tools = tools; }

    /** Number of downloads that run at the same time, at least 1. If it grows, waiting ones start at once. */
    void setLimit(int limit);

    /** Chooses the stream of a page that is read before its download. */
    void setChooser(const Download::Chooser &choose) { m_choose = choose; }

    void add(const DownloadRequest &request); ///< Starts a download, or puts it at the end of the waiting ones.

    /** Adds stored downloads. @param stored result of toJson(); unfinished downloads are paused */
    void restore(const QJsonArray &stored);

    /** Adds as paused the downloads that killed programs have left in @p folder, if the list does not have them. */
    void addInterrupted(const QString &folder);

    QJsonArray toJson() const; ///< A form that can be stored.

    void pause(int row);
    void pauseAll();
    void cancel(int row);
    void cancelAll();
    void retry(int row);        ///< Resumes a paused, failed or cancelled download; it may have to wait.
    void resumeAll();           ///< Resumes all paused downloads.
    void move(int row, int by); ///< Moves a waiting download up (negative) or down among the waiting.
    void remove(int row);       ///< Removes an ended download from the list.
    void removeEnded();         ///< Removes all ended downloads from the list.

    int activeCount() const; ///< Number of running and waiting downloads.
    int runningCount() const;
    int endedCount() const;
    int pausedCount() const { return rowCount() - activeCount() - endedCount(); }
    /** Whether a download in the list, not cancelled or failed, is the same. Without a stream: of the same page. */
    bool contains(const DownloadRequest &request) const;
    QStringList activeFiles() const; ///< Files of running and waiting downloads.

    /** Downloads since the last time that none was active: their number, and how many of them have ended. */
    int batchCount() const { return static_cast<int>(m_batch.size()); }
    int batchEndedCount() const;

    /** Progress of these downloads together, 0 to 100. */
    int batchPercent() const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

Q_SIGNALS:
    /** A download was added, started, ended or removed. */
    void countsChanged();

    /** The download in @p row has ended. */
    void ended(int row);

    /** The last active download has ended. */
    void allEnded();

private:
    void insert(int row, Download *download);
    void enqueue(Download *download);
    void startNext();
    void place(int row);
    void onChanged(Download *download);
    void onEnded(Download *download);

    Nox::ToolSetup m_tools;
    Download::Chooser m_choose;
    QList<Download *> m_downloads;
    QList<Download *> m_batch;
    int m_limit = 1;
};

} // namespace NoxDesk
