#pragma once

#include "hosts/desk/model/DeskSettings.h"
#include "hosts/desk/model/DownloadPlan.h"
#include "hosts/desk/model/PageReader.h"
#include "hosts/desk/model/ProgramLog.h"
#include "hosts/desk/model/StreamTableModel.h"
#include "hosts/desk/network/StreamSizeProbe.h"
#include "hosts/desk/network/ThumbnailLoader.h"

#include <nox/jobs/DownloadQueue.h>
#include <nox/jobs/DownloadStore.h>
#include <nox/jobs/ToolSetup.h>

#include <QNetworkAccessManager>
#include <QObject>
#include <QTimer>

namespace NoxDesk {

/** The logic of the window: reads pages, holds the user's choices and runs the downloads. */
class DeskController : public QObject
{
    Q_OBJECT

public:
    /** @param logFolder folder for the library's log; empty for a temporary file */
    explicit DeskController(const QString &logFolder = {}, QObject *parent = nullptr);
    ~DeskController() override; ///< Stores the list of downloads. Running ones are stopped and can be resumed.

    PageReader &reader() { return m_reader; }
    StreamTableModel &streams() { return m_streams; }
    DownloadPlan &plan() { return m_plan; }
    Nox::DownloadQueue &downloads() { return m_downloads; }
    ThumbnailLoader &thumbnail() { return m_thumbnail; }
    DeskSettings &settings() { return m_settings; }
    QString logFile() const { return m_log.fileName(); }
    Nox::ToolSetup tools() const { return m_tools; }

    /** Applies changed settings. */
    void applySettings();

    /** Progress of all downloads together, for a window title; empty if none is active. */
    QString progressText() const;

    /** Chooses the stream in @p row of streams(); none if the row does not exist. */
    void chooseStream(int row);

    /** Starts the download that the plan describes, if it is complete. If the list has it already, asks the user. */
    void startDownload();
    void startAgain(); ///< As startDownload(), without asking the user.

    /**
     * Reads and downloads several pages one after the other, by the preferences. If the list has some of them already,
     * asks the user about these.
     */
    void addPages(const QStringList &addresses);
    void addPagesAgain(const QStringList &addresses); ///< As addPages(), without asking the user.

Q_SIGNALS:
    /** The list already has the requested download; startAgain() starts it all the same. */
    void startedTwice();

    /** The list already has these pages; addPagesAgain() adds them all the same. */
    void pagesAddedTwice(const QStringList &addresses);

    /** The stored list of downloads could not be read or written. The latter comes once. */
    void warned(const QString &message);

    /** An event that the user is waiting for. */
    void noticed(const QString &title, const QString &message);

private:
    void onPageChanged();
    Nox::DownloadRequest choose(const Nox::PageJob &page) const;
    void restoreDownloads();
    void save();
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
    Nox::DownloadQueue m_downloads;
    Nox::DownloadStore m_store;
    QTimer m_saveTimer;       // active while the list must be stored
    bool m_isUnsaved = false; // storing it has failed
};

} // namespace NoxDesk
