#include "hosts/desk/model/Desk.h"

#include <QFileInfo>

namespace NoxDesk {

Desk::Desk(const QString &logFolder, QObject *parent)
    : QObject(parent)
    , m_log(logFolder)
    , m_reader(m_tools)
    , m_sizes(m_network)
    , m_thumbnail(m_network)
    , m_downloads(m_tools)
{
    applySettings();
    connect(&m_reader, &PageReader::pageChanged, this, &Desk::onPageChanged);
    connect(&m_sizes, &StreamSizeProbe::found, this, &Desk::onSizeFound);
    connect(&m_downloads, &DownloadListModel::countsChanged, this,
            [this] { m_plan.setTaken(m_downloads.activeFiles()); });
    connect(&m_downloads, &DownloadListModel::ended, this, &Desk::onEnded);
    connect(&m_downloads, &DownloadListModel::countsChanged, this, &Desk::watchLog);
    connect(&m_reader, &PageReader::stateChanged, this, &Desk::watchLog);
}

void Desk::applySettings()
{
    const Preferences preferences = m_settings.preferences();
    m_tools = Nox::ToolSetup(preferences.toolFile);
    m_reader.setTools(m_tools);
    m_downloads.setTools(m_tools);
    m_downloads.setLimit(preferences.parallelDownloads);
    m_streams.setPreference(preferences.stream);
    m_plan.setFolder(m_settings.folder());
}

QString Desk::progressText() const
{
    if (m_downloads.activeCount() == 0)
        return {};
    return tr("%1 %, %2 of %3", "percent; ended, all downloads")
        .arg(m_downloads.batchPercent())
        .arg(m_downloads.batchEndedCount())
        .arg(m_downloads.batchCount());
}

void Desk::chooseStream(int row)
{
    m_plan.setStream(m_streams.stream(row));
}

void Desk::startDownload()
{
    m_plan.setTaken(m_downloads.activeFiles()); // the file may have come to be since
    if (!m_plan.isComplete())
        return;
    const DownloadRequest request = m_plan.request();
    const QString folder = QFileInfo(request.destination).absolutePath();
    m_settings.setFolder(folder);
    m_plan.setFolder(folder);
    m_plan.renumber(); // before the name is taken, so that it never looks as if nothing could be downloaded
    m_downloads.add(request);
}

void Desk::cancelAll()
{
    m_reader.cancel();
    m_downloads.cancelAll();
}

void Desk::onPageChanged()
{
    m_plan.setPage(m_reader.url(), m_reader.page(), m_reader.streams());
    m_streams.setStreams(m_reader.streams(), m_reader.page().getDuration());
    m_settings.addRecentAddress(m_reader.url());
    m_thumbnail.load(m_reader.page().getThumbnailUrl());
    m_sizes.ask(m_reader.streams().all());
}

void Desk::watchLog()
{
    m_log.setWatched(m_downloads.activeCount() > 0 || m_reader.state() == PageReader::State::Reading);
}

void Desk::onEnded(int row)
{
    const QModelIndex download = m_downloads.index(row);
    const QString file = download.data().toString();
    const auto state = download.data(DownloadListModel::StateRole).value<Download::State>();
    if (state == Download::State::Finished) {
        Q_EMIT noticed(tr("Download finished"), file);
    } else if (state == Download::State::Failed) {
        const QString problem = download.data(DownloadListModel::ErrorRole).toString();
        Q_EMIT noticed(tr("Download failed"), tr("%1: %2", "file, problem").arg(file, problem));
    } else {
        Q_EMIT noticed(tr("Download cancelled"), file);
    }
}

void Desk::onSizeFound(const QString &code, qint64 bytes)
{
    m_streams.setSize(code, bytes);
    m_plan.setSize(code, bytes);
}

} // namespace NoxDesk
