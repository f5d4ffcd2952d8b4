#pragma once

#include "hosts/desk/model/DeskSettings.h"
#include "hosts/desk/model/DownloadListModel.h"
#include "hosts/desk/model/DownloadPlan.h"
#include "hosts/desk/model/PageReader.h"
#include "hosts/desk/model/ProgramLog.h"
#include "hosts/desk/model/StreamTableModel.h"
#include "hosts/desk/network/StreamSizeProbe.h"
#include "hosts/desk/network/ThumbnailLoader.h"

#include <nox/jobs/ToolSetup.h>

#include <QNetworkAccessManager>
#include <QObject>

namespace NoxDesk {

/** Everything behind the window: reads pages, keeps the choices, runs the downloads. */
class Desk : public QObject
{
    Q_OBJECT

public:
    /** @param logFolder where the library's log goes; empty for a temporary file */
    explicit Desk(const QString &logFolder = {}, QObject *parent = nullptr);

    PageReader &reader() { return m_reader; }
    StreamTableModel &streams() { return m_streams; }
    DownloadPlan &plan() { return m_plan; }
    DownloadListModel &downloads() { return m_downloads; }
    ThumbnailLoader &thumbnail() { return m_thumbnail; }
    DeskSettings &settings() { return m_settings; }
    QString logFile() const { return m_log.fileName(); }
    Nox::ToolSetup tools() const { return m_tools; }

    /** Takes up what has changed in the settings. */
    void applySettings();

    /** How far all downloads are together, for a title; empty when none is active. */
    QString progressText() const;

    /** Chooses the stream in a row of streams(); no stream for a row that does not exist. */
    void chooseStream(int row);

    /** Begins the download that the plan describes, if it is complete. */
    void startDownload();

    /** Stops whatever runs. DownloadListModel::allEnded() follows when downloads ran. */
    void cancelAll();

Q_SIGNALS:
    /** Something has happened that the user waits for. */
    void noticed(const QString &title, const QString &words);

private:
    void onPageChanged();
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
};

} // namespace NoxDesk
