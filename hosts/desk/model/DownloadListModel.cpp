#include "hosts/desk/model/DownloadListModel.h"

#include <algorithm>
#include <functional>

namespace NoxDesk {

namespace {

/** The part of the list in which the download stands. */
int part(const Download *download)
{
    return download->isRunning() ? 0 : download->isActive() ? 1 : download->isEnded() ? 3 : 2;
}

} // namespace

DownloadListModel::DownloadListModel(const Nox::ToolSetup &tools, QObject *parent)
    : QAbstractListModel(parent)
    , m_tools(tools)
{
}

void DownloadListModel::setLimit(int limit)
{
    m_limit = qMax(1, limit);
    startNext();
}

void DownloadListModel::add(const DownloadRequest &request)
{
    auto *download = new Download(request, this);
    insert(activeCount(), download);
    enqueue(download);
}

void DownloadListModel::insert(int row, Download *download)
{
    connect(download, &Download::changed, this, [this, download] { onChanged(download); });
    connect(download, &Download::ended, this, [this, download] { onEnded(download); });
    beginInsertRows({}, row, row);
    m_downloads.insert(row, download);
    endInsertRows();
}

void DownloadListModel::restore(const QJsonArray &stored)
{
    for (const auto &value : stored) {
        auto *download = new Download(value.toObject(), this);
        insert(download->isEnded() ? rowCount() : rowCount() - endedCount(), download);
    }
    Q_EMIT countsChanged();
}

void DownloadListModel::addInterrupted(const QString &folder)
{
    const QList<QJsonObject> records = Nox::DownloadJob::interrupted(folder);
    for (const QJsonObject &record : records) {
        const Nox::DownloadJob job(record);
        const bool isKnown = std::any_of(m_downloads.cbegin(), m_downloads.cend(), [&job](const Download *download) {
            return download->isSameAs({job.url(), job.stream(), job.destination()});
        });
        if (!isKnown)
            insert(rowCount() - endedCount(), new Download(record, job.url(), job.destination(), this));
    }
    Q_EMIT countsChanged();
}

QJsonArray DownloadListModel::toJson() const
{
    QJsonArray result;
    for (const Download *download : m_downloads)
        result += download->toJson();
    return result;
}

void DownloadListModel::enqueue(Download *download)
{
    const bool isFirst = std::none_of(m_batch.cbegin(), m_batch.cend(), [download](const Download *other) {
        return other != download && other->isActive();
    });
    if (isFirst)
        m_batch.clear();
    m_batch.removeOne(download);
    m_batch.append(download);
    startNext();
    Q_EMIT countsChanged();
}

void DownloadListModel::startNext()
{
    for (int running = runningCount(); running < m_limit && running < activeCount(); running = runningCount())
        m_downloads.at(running)->start(m_tools, m_choose);
}

void DownloadListModel::pause(int row)
{
    if (Download *download = m_downloads.value(row))
        download->pause();
}

void DownloadListModel::pauseAll()
{
    const QList<Download *> downloads = m_downloads;
    for (auto download = downloads.crbegin(); download != downloads.crend(); ++download) // as in cancelAll()
        (*download)->pause();
}

void DownloadListModel::resumeAll()
{
    const QList<Download *> downloads = m_downloads;
    for (Download *download : downloads) {
        if (download->state() == Download::State::Paused)
            retry(static_cast<int>(m_downloads.indexOf(download)));
    }
}

void DownloadListModel::cancel(int row)
{
    if (Download *download = m_downloads.value(row))
        download->cancel();
}

void DownloadListModel::cancelAll()
{
    const QList<Download *> downloads = m_downloads;
    // First the waiting ones: otherwise they would start in place of the cancelled ones.
    for (auto download = downloads.crbegin(); download != downloads.crend(); ++download)
        (*download)->cancel();
}

void DownloadListModel::retry(int row)
{
    Download *download = m_downloads.value(row);
    if (download != nullptr && download->canRetry()) {
        download->retry();
        enqueue(download);
    }
}

void DownloadListModel::move(int row, int by)
{
    const int first = runningCount();
    const int end = activeCount();
    const int target = qBound(first, row + by, end - 1);
    if (row < first || row >= end || target == row)
        return;
    beginMoveRows({}, row, row, {}, target > row ? target + 1 : target);
    m_downloads.move(row, target);
    endMoveRows();
}

void DownloadListModel::remove(int row)
{
    Download *download = m_downloads.value(row);
    if (download == nullptr || download->isActive())
        return;
    beginRemoveRows({}, row, row);
    m_downloads.removeAt(row);
    download->discard();
    m_batch.removeOne(download);
    endRemoveRows();
    download->deleteLater();
    Q_EMIT countsChanged();
}

void DownloadListModel::removeEnded()
{
    for (int row = rowCount() - 1; row >= 0 && m_downloads.at(row)->isEnded(); --row)
        remove(row);
}

int DownloadListModel::activeCount() const
{
    return static_cast<int>(std::count_if(m_downloads.cbegin(), m_downloads.cend(), std::mem_fn(&Download::isActive)));
}

int DownloadListModel::runningCount() const
{
    return static_cast<int>(std::count_if(m_downloads.cbegin(), m_downloads.cend(), std::mem_fn(&Download::isRunning)));
}

int DownloadListModel::endedCount() const
{
    return static_cast<int>(std::count_if(m_downloads.cbegin(), m_downloads.cend(), std::mem_fn(&Download::isEnded)));
}

bool DownloadListModel::contains(const DownloadRequest &request) const
{
    return std::any_of(m_downloads.cbegin(), m_downloads.cend(), [&request](const Download *download) {
        const bool isGivenUp = download->isEnded() && download->state() != Download::State::Finished;
        return !isGivenUp && download->isSameAs(request);
    });
}

QStringList DownloadListModel::activeFiles() const
{
    QStringList files;
    for (const Download *download : m_downloads) {
        if (download->isActive())
            files += download->file();
    }
    return files;
}

int DownloadListModel::batchEndedCount() const
{
    return static_cast<int>(
        std::count_if(m_batch.cbegin(), m_batch.cend(), std::not_fn(std::mem_fn(&Download::isActive))));
}

int DownloadListModel::batchPercent() const
{
    if (m_batch.isEmpty())
        return 0;
    int sum = 0;
    for (const Download *download : m_batch)
        sum += download->isActive() ? qMax(0, download->percent()) : 100;
    return sum / batchCount();
}

int DownloadListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_downloads.size());
}

QVariant DownloadListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Download *download = m_downloads.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return download->name();
    case Qt::AccessibleTextRole:
        return tr("%1: %2", "file, status").arg(download->name(), download->status());
    case AddressRole:
        return download->url();
    case FileRole:
        return download->file();
    case StateRole:
        return QVariant::fromValue(download->state());
    case PercentRole:
        return download->percent();
    case StatusRole:
        return download->status();
    case ErrorRole:
        return download->errorString();
    case ErrorDetailsRole:
        return download->errorDetails();
    default:
        return {};
    }
}

void DownloadListModel::onChanged(Download *download)
{
    place(static_cast<int>(m_downloads.indexOf(download)));
    const QModelIndex row = index(static_cast<int>(m_downloads.indexOf(download)));
    Q_EMIT dataChanged(row, row);
}

/** Moves the download in @p row to its new place after a change of its state. */
void DownloadListModel::place(int row)
{
    const Download *download = m_downloads.at(row);
    const bool isBehind = row == 0 || part(m_downloads.at(row - 1)) <= part(download);
    const bool isBefore = row == rowCount() - 1 || part(m_downloads.at(row + 1)) >= part(download);
    if (isBehind && isBefore)
        return;
    const auto count = std::count_if(m_downloads.cbegin(), m_downloads.cend(), [download](const Download *other) {
        const int difference = part(other) - part(download);
        return other != download && (difference < 0 || (difference == 0 && download->isActive()));
    });
    const int target = static_cast<int>(count);
    beginMoveRows({}, row, row, {}, target > row ? target + 1 : target);
    m_downloads.move(row, target);
    endMoveRows();
}

void DownloadListModel::onEnded(Download *download)
{
    startNext();
    Q_EMIT countsChanged();
    Q_EMIT ended(static_cast<int>(m_downloads.indexOf(download)));
    if (activeCount() == 0)
        Q_EMIT allEnded();
}

} // namespace NoxDesk
