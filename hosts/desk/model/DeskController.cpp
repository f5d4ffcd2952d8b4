#include "hosts/desk/model/DeskController.h"

#include "hosts/desk/network/WebRequest.h"

#include <nox/jobs/Destination.h>
#include <nox/jobs/ToolSettings.h>
#include <nox/jobs/UrlCheck.h>

#include <QFileInfo>
#include <QSet>

#include <utility>

namespace NoxDesk {

using Nox::DownloadQueue;

DeskController::DeskController(const QString &logFolder, QObject *parent)
    : QObject(parent)
    , m_log(logFolder)
    , m_reader(m_tools)
    , m_sizes(m_network)
    , m_thumbnail(m_network)
    , m_downloads(m_tools)
    , m_store(QStringLiteral("nox-desk"))
{
    applySettings();
    connect(&m_reader, &PageReader::pageChanged, this, &DeskController::onPageChanged);
    connect(&m_sizes, &StreamSizeProbe::found, this, &DeskController::onSizeFound);
    connect(&m_downloads, &DownloadQueue::countsChanged, this, [this] { m_plan.setTaken(m_downloads.activeFiles()); });
    connect(&m_downloads, &DownloadQueue::ended, this, &DeskController::onEnded);
    connect(&m_downloads, &DownloadQueue::countsChanged, this, &DeskController::watchLog);
    connect(&m_reader, &PageReader::stateChanged, this, &DeskController::watchLog);
    m_downloads.setChooser([this](const Nox::PageJob &page) {
        m_saveTimer.start(); // the record of the new download becomes known
        return choose(page);
    });
    restoreDownloads();
}

DeskController::~DeskController()
{
    save();
}

void DeskController::save()
{
    if (!m_store.save(m_downloads.toJson()) && !std::exchange(m_isUnsaved, true))
        Q_EMIT warned(tr("Changes of the list of downloads cannot be stored. Is the disk full?"));
}

void DeskController::restoreDownloads()
{
    m_downloads.restore(m_store.load());
    if (!m_store.errorString().isEmpty()) // told when the window exists
        QMetaObject::invokeMethod(this, "warned", Qt::QueuedConnection, Q_ARG(QString, m_store.errorString()));
    QSet<QString> folders{m_settings.folder()};
    for (int row = 0; row < m_downloads.rowCount(); ++row)
        folders += QFileInfo(m_downloads.index(row).data(DownloadQueue::FileRole).toString()).absolutePath();
    if (!m_store.isAlone())
        folders.clear(); // what is paused there may belong to the other instance
    for (const QString &folder : std::as_const(folders))
        m_downloads.addInterrupted(folder);
    m_saveTimer.setSingleShot(true);
    constexpr int saveMs = 200; // stores several changes at once
    m_saveTimer.setInterval(saveMs);
    const auto saveSoon = [this] { m_saveTimer.start(); };
    connect(&m_saveTimer, &QTimer::timeout, this, &DeskController::save);
    connect(&m_downloads, &DownloadQueue::countsChanged, this, saveSoon);
    connect(&m_downloads, &QAbstractItemModel::rowsMoved, this, saveSoon);
    if (m_settings.preferences().resumesAtStart)
        m_downloads.resumeAll();
}

Nox::DownloadRequest DeskController::choose(const Nox::PageJob &page) const
{
    const Preferences preferences = m_settings.preferences();
    const Nox::StreamChoice streams = page.streams();
    const Nox::MediaProfile stream = streams.withAudio(preferences.stream.pick(streams));
    const Nox::SoundFormat sound = preferences.makesMp3 ? Nox::SoundFormat::Mp3 : Nox::SoundFormat::AsIs;
    const QString file =
        Nox::Destination::proposed(page.page(), stream, m_settings.folder(), m_downloads.activeFiles(), sound);
    return {page.url(), stream, file, page.page().getDuration(), sound};
}

void DeskController::addPages(const QStringList &addresses)
{
    QStringList listed;
    QStringList others;
    for (const QString &address : addresses) {
        const QString url = Nox::UrlCheck::corrected(address);
        (m_downloads.contains({url, {}, {}}) ? listed : others) += url;
    }
    others.removeDuplicates();
    addPagesAgain(others);
    if (!listed.isEmpty())
        Q_EMIT pagesAddedTwice(listed);
}

void DeskController::addPagesAgain(const QStringList &addresses)
{
    QList<Nox::DownloadRequest> requests;
    for (const QString &address : addresses)
        requests += {address, {}, {}};
    m_downloads.add(requests);
}

void DeskController::applySettings()
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

QString DeskController::progressText() const
{
    if (m_downloads.activeCount() == 0)
        return {};
    return tr("%1 %, %2 of %3", "percent; ended, all downloads")
        .arg(m_downloads.batchPercent())
        .arg(m_downloads.batchEndedCount())
        .arg(m_downloads.batchCount());
}

void DeskController::chooseStream(int row)
{
    m_plan.setStream(m_streams.stream(row));
}

void DeskController::startDownload()
{
    m_plan.setTaken(m_downloads.activeFiles()); // the file may exist by now
    if (m_plan.isComplete() && m_downloads.contains(m_plan.request()))
        Q_EMIT startedTwice();
    else
        startAgain();
}

void DeskController::startAgain()
{
    if (!m_plan.isComplete())
        return;
    const Nox::DownloadRequest request = m_plan.request();
    m_plan.renumber(); // first, so that the form never shows the name as taken
    m_downloads.add(request);
}

void DeskController::onPageChanged()
{
    m_plan.setPage(m_reader.url(), m_reader.page(), m_reader.streams());
    m_streams.setStreams(m_reader.streams(), m_reader.page().getDuration());
    m_settings.addRecentAddress(m_reader.url());
    const auto proxy = WebRequest::proxy(Nox::ToolSettings().value(Nox::ToolSettings::proxy));
    m_network.setProxy(proxy.value_or(QNetworkProxy()));
    m_thumbnail.load(proxy ? m_reader.page().getThumbnailUrl() : QString());
    m_sizes.ask(proxy ? m_reader.streams().all() : QList<Nox::MediaProfile>());
}

void DeskController::watchLog()
{
    m_log.setWatched(m_downloads.activeCount() > 0 || m_reader.state() == PageReader::State::Reading);
}

void DeskController::onEnded(int row)
{
    const QModelIndex download = m_downloads.index(row);
    const QString file = download.data().toString();
    const auto state = download.data(DownloadQueue::StateRole).value<DownloadQueue::State>();
    const QString error = download.data(DownloadQueue::ErrorRole).toString();
    if (state == DownloadQueue::Finished)
        Q_EMIT noticed(tr("Download finished"), file);
    else if (state == DownloadQueue::Failed)
        Q_EMIT noticed(tr("Download failed"), tr("%1: %2", "file, problem").arg(file, error));
    else if (state == DownloadQueue::Cancelled)
        Q_EMIT noticed(tr("Download cancelled"), file);
}

void DeskController::onSizeFound(const QString &code, qint64 bytes)
{
    m_streams.setSize(code, bytes);
    m_plan.setSize(code, bytes);
}

} // namespace NoxDesk
