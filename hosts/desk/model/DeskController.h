#pragma once

#include "hosts/desk/model/DeskSettings.h"
#include "hosts/desk/model/DownloadListModel.h"
#include "hosts/desk/model/DownloadPlan.h"
#include "hosts/desk/model/DownloadStore.h"
#include "hosts/desk/model/PageReader.h"
#include "hosts/desk/model/ProgramLog.h"
#include "hosts/desk/model/StreamTableModel.h"
#include "hosts/desk/network/StreamSizeProbe.h"
#include "hosts/desk/network/ThumbnailLoader.h"

#include <nox/jobs/ToolSetup.h>

#include <QNetworkAccessManager>
#include <QObject>
#include <QTimer>

namespace NoxDesk {

/** Everything behind the window: reads pages, keeps the choices, runs the downloads. */
class Desk : public QObject
{
    Q_OBJECT

public:
    /** @param logFolder where the library's log goes; empty for a temporary file */
    explicit Desk(const QString &logFolder = {}, QObject *parent = nullptr);
    ~Desk() override; ///< Stores the list of downloads; those that run are stopped and can be gone on with.

    PageReader &reader() { return m_reader; }
    StreamTableModel &streams() { return m_streams; }
    DownloadPlan &plan() { return m_plan; }
    DownloadListModel &downloads() { return m_downloads; }
    ThumbnailLoader &thumbnail() { return m_thumbnail; }
    DeskSettings &settings() { return m_settings; }
    QString storeError() const { return m_store.errorString(); } ///< See DownloadStore::errorString().
    QString logFile() const { return m_log.fileName(); }
    Nox::ToolSetup tools() const { return m_tools; }

    /** Takes up what has changed in the settings. */
    void applySettings();

    /** How far all downloads are together, for a title; empty when none is active. */
    QString progressText() const;

    /** Chooses the stream in a row of streams(); no stream for a row that does not exist. */
    void chooseStream(int row);

    /** Begins the download that the plan describes, if it is complete. One that is in the list already is asked for. */
    void startDownload();
    void startAgain(); ///< As startDownload(), but without asking.

    /** Lets pages be read and downloaded one after the other, as the preferences say. */
    void addPages(const QStringList &addresses);

Q_SIGNALS:
    /** The download that the user has asked for is in the list already: startAgain() begins it nevertheless. */
    void startedTwice();

    /** Something has happened that the user waits for. */
    void noticed(const QString &title, const QString &words);

private:
    void onPageChanged();
    DownloadRequest choose(const Nox::PageJob &page) const;
    void restoreDownloads();
    void onEnded(int row);
    void watchLog();
    void onSizeFound(const QString &code, qint64 bytes);

    Nox::ToolSetup m_tools;
    ProgramLog m_log;
    DeskSettings m_settings;
    QNetworkAccessManager m_network;
    PageReader m_reader;
    StreamTableModel m_streams;
    StreamSizeProbe m_sizes;
    ThumbnailLoader m_thumbnail;
    DownloadPlan m_plan;
    DownloadListModel m_downloads;
    DownloadStore m_store;
    QTimer m_saveTimer; // runs when the list is to be stored
};

} // namespace NoxDesk
