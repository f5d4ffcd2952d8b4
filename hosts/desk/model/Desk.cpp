#include "hosts/desk/model/Desk.h"

#include <QFileInfo>

namespace NoxDesk {

Desk::Desk(const QString &logFolder, QObject *parent)
    : QObject(parent)
    , m_log(logFolder)
    , m_reader(m_tools, m_log)
    , m_sizes(m_network)
    , m_thumbnail(m_network)
    , m_downloads(m_tools, m_log)
{
    m_plan.setFolder(m_settings.folder());
    connect(&m_reader, &PageReader::pageChanged, this, &Desk::onPageChanged);
    connect(&m_sizes, &StreamSizeProbe::found, this, &Desk::onSizeFound);
    connect(&m_downloads, &DownloadListModel::countsChanged, this,
            [this] { m_plan.setTaken(m_downloads.activeFiles()); });
}

PageReader &Desk::reader()
{
    return m_reader;
}

StreamTableModel &Desk::streams()
{
    return m_streams;
}

DownloadPlan &Desk::plan()
{
    return m_plan;
}

DownloadListModel &Desk::downloads()
{
    return m_downloads;
}

ThumbnailLoader &Desk::thumbnail()
{
    return m_thumbnail;
}

DeskSettings &Desk::settings()
{
    return m_settings;
}

QString Desk::logFile() const
{
    return m_log.fileName();
}

void Desk::chooseStream(int row)
{
    m_plan.setStream(m_streams.stream(row));
}

void Desk::startDownload()
{
    if (!m_plan.isComplete()) {
        return;
    }
    const DownloadRequest request = m_plan.request();
    const QString folder = QFileInfo(request.destination).absolutePath();
    m_settings.setFolder(folder);
    m_plan.setFolder(folder);
    m_downloads.start(request);
    m_plan.renumber();
}

void Desk::cancelAll()
{
    m_reader.cancel();
    m_downloads.cancelAll();
}

void Desk::onPageChanged()
{
    m_plan.setPage(m_reader.url(), m_reader.page(), m_reader.streams());
    m_streams.setStreams(m_reader.streams());
    m_thumbnail.load(m_reader.page().getThumbnailUrl());
    m_sizes.ask(m_reader.streams().all());
}

void Desk::onSizeFound(const QString &code, qint64 bytes)
{
    m_streams.setSize(code, bytes);
    m_plan.setSize(code, bytes);
}

} // namespace NoxDesk
