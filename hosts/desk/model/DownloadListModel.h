#pragma once

#include "hosts/desk/model/Download.h"

#include <QAbstractListModel>
#include <QStringList>

namespace NoxDesk {

/** All downloads since the program began, the newest first. Owns them. */
class DownloadListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        FileRole = Qt::UserRole, ///< Path of the file.
        StateRole,               ///< Download::State.
        PercentRole,             ///< 0 to 100, or -1 when it cannot be told.
        StatusRole,              ///< Phase and figures, or the outcome, in words.
        ProblemRole,             ///< What went wrong, in words.
        ToolWordsRole,           ///< What the external programs said of it.
    };

    /** @param log for what the external programs say; must outlive the model */
    DownloadListModel(const NoxHost::ToolSetup &tools, ProgramLog &log, QObject *parent = nullptr);

    void start(const DownloadRequest &request); ///< Begins a download, in the first row.
    void cancel(int row);
    void cancelAll();
    void remove(int row); ///< Takes a download that has ended off the list.
    void removeEnded();   ///< Takes all that have ended off the list.

    int activeCount() const;
    int endedCount() const;
    QStringList activeFiles() const; ///< What is being made.

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

Q_SIGNALS:
    /** A download has begun or ended, or one has left the list. */
    void countsChanged();

    /** The last active download has ended. */
    void allEnded();

private:
    void onChanged(Download *download);
    void onEnded();

    NoxHost::ToolSetup m_tools;
    ProgramLog &m_log;
    QList<Download *> m_downloads;
};

} // namespace NoxDesk
