#pragma once

#include "hosts/desk/model/Download.h"

#include <QAbstractListModel>
#include <QJsonArray>
#include <QStringList>

namespace NoxDesk {

/**
 * All downloads that have not been taken off the list. Owns them. First come those that run, then those that wait, in
 * the order in which they will begin, then those that are paused, then those that have ended, the last one first.
 */
class DownloadListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        FileRole = Qt::UserRole, ///< Path of the file.
        StateRole,               ///< Download::State.
        PercentRole,             ///< 0 to 100, or -1 when it cannot be told.
        StatusRole,              ///< Phase and figures, or the outcome, in words.
        ErrorRole,               ///< What went wrong, in words.
        ErrorDetailsRole,        ///< What the external programs said of it.
        AddressRole,             ///< Address of the page.
    };

    explicit DownloadListModel(const Nox::ToolSetup &tools, QObject *parent = nullptr);

    /** For downloads that begin from now on. */
    void setTools(const Nox::ToolSetup &tools) { m_tools = tools; }

    /** How many run at a time, at least one. More begin at once where there is room. */
    void setLimit(int limit);

    /** For pages that are read before their download. */
    void setChooser(const Download::Chooser &choose) { m_choose = choose; }

    void add(const DownloadRequest &request); ///< Begins a download, or lets it wait behind the others.

    /** Adds the downloads of an earlier time. @param stored what toJson() told; whatever is unfinished is paused */
    void restore(const QJsonArray &stored);

    /** Adds, paused, what killed programs have left in @p folder and is not in the list. */
    void addInterrupted(const QString &folder);

    QJsonArray toJson() const; ///< In a form to be stored.

    void pause(int row);
    void pauseAll();
    void cancel(int row);
    void cancelAll();
    void retry(int row); ///< Goes on with a download that is paused, has failed or been cancelled, or lets it wait.
    void resumeAll();    ///< Goes on with all that are paused.
    void move(int row, int by); ///< Moves a download that waits up (below 0) or down among those that wait.
    void remove(int row);       ///< Takes a download that has ended off the list.
    void removeEnded();         ///< Takes all that have ended off the list.

    int activeCount() const; ///< Those that run or wait.
    int runningCount() const;
    int endedCount() const;
    int pausedCount() const { return rowCount() - activeCount() - endedCount(); }
    bool contains(const DownloadRequest &request) const; ///< Whether one that has not been given up asks for the same.
    QStringList activeFiles() const;                     ///< What is being made, or will be.

    /** Of the downloads asked for since none was active last: how many there are, and how many have ended. */
    int batchCount() const { return static_cast<int>(m_batch.size()); }
    int batchEndedCount() const;

    /** How far these are, 0 to 100. */
    int batchPercent() const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

Q_SIGNALS:
    /** A download has been asked for, has begun or ended, or has come to the list or left it. */
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
