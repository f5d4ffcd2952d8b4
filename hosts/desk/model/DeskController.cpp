#include "hosts/desk/model/Desk.h"

#include <QFileInfo>
#include <QSet>

namespace NoxDesk {

namespace {

constexpr int saveMs = 200; // many changes are stored together

} // namespace

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
    m_downloads.setChooser([this](const Nox::PageJob &page) {
        m_saveTimer.start(); // it will be known what is downloaded
        return choose(page);
    });
    restoreDownloads();
}

Desk::~Desk()
{
    m_store.save(m_downloads.toJson());
}

void Desk::restoreDownloads()
{
    m_downloads.restore(m_store.load());
    QSet<QString> folders{m_settings.folder()};
    for (int row = 0; row < m_downloads.rowCount(); ++row)
        folders += QFileInfo(m_downloads.index(row).data(DownloadListModel::FileRole).toString()).absolutePath();
    for (const QString &folder : std::as_const(folders))
        m_downloads.addInterrupted(folder);
    m_saveTimer.setSingleShot(true);
    m_saveTimer.setInterval(saveMs);
    const auto saveSoon = [this] { m_saveTimer.start(); };
    connect(&m_saveTimer, &QTimer::timeout, this, [this] { m_store.save(m_downloads.toJson()); });
    connect(&m_downloads, &DownloadListModel::countsChanged, this, saveSoon);
    connect(&m_downloads, &QAbstractItemModel::rowsMoved, this, saveSoon);
    if (m_settings.preferences().goesOnAtStart)
        m_downloads.resumeAll();
}

DownloadRequest Desk::choose(const Nox::PageJob &page) const
{
    const Preferences preferences = m_settings.preferences();
    const Nox::StreamChoice streams = page.streams();
    const Nox::MediaProfile stream = streams.withAudio(preferences.stream.pick(streams));
    const Nox::SoundFormat sound = preferences.makesMp3 ? Nox::SoundFormat::Mp3 : Nox::SoundFormat::AsIs;
    const QString file =
        DownloadPlan::proposed(page.page(), stream, m_settings.folder(), m_downloads.activeFiles(), sound);
    return {page.url(), stream, file, page.page().getDuration(), sound};
}

void Desk::addPages(const QStringList &addresses)
{
    for (const QString &address : addresses)
        m_downloads.add({address, {}, {}});
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
    m_plan.setSound(preferences.makesMp3 ? Nox::SoundFormat::Mp3 : Nox::SoundFormat::AsIs);
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
    if (m_plan.isComplete() && m_downloads.contains(m_plan.request())) {
        Q_EMIT startedTwice();
    } else {
        startAgain();
    }
}

void Desk::startAgain()
{
    if (!m_plan.isComplete())
        return;
    const DownloadRequest request = m_plan.request();
    m_plan.renumber(); // before the name is taken, so that it never looks as if nothing could be downloaded
    m_downloads.add(request);
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
    } else if (state == Download::State::Cancelled) {
        Q_EMIT noticed(tr("Download cancelled"), file);
    }
}

void Desk::onSizeFound(const QString &code, qint64 bytes)
{
    m_streams.setSize(code, bytes);
    m_plan.setSize(code, bytes);
}

} // namespace NoxDesk
