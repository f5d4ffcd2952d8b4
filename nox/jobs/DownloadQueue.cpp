#include <nox/jobs/DownloadQueue.h>

#include <nox/jobs/DownloadFolder.h>
#include <nox/jobs/DownloadJob.h>
#include <nox/jobs/DownloadRecord.h>
#include <nox/jobs/QueuedDownload.h>

#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <functional>

namespace Nox {

namespace {

/** The section of the list in which the download stands: running, waiting, paused, ended. */
int section(const QueuedDownload *download)
{
    return download->isRunning() ? 0 : download->isActive() ? 1 : download->isEnded() ? 3 : 2;
}

/** The keys of the parts that @p downloads can be resumed from. Each folder is read once. */
QSet<QString> partsOf(const QList<QueuedDownload *> &downloads)
{
    QSet<QString> keys;
    QSet<QString> folders;
    for (const QueuedDownload *download : downloads) {
        if (!download->isActive() && download->state() != DownloadQueue::Finished && !download->key().isEmpty())
            folders += QFileInfo(download->file()).absolutePath();
    }
    for (const QString &folder : std::as_const(folders)) {
        const QList<DownloadRecord> records = DownloadFolder::interrupted(folder);
        for (const DownloadRecord &record : records)
            keys += record.key();
    }
    return keys;
}

} // namespace

class DownloadQueue::Private
{
public:
    /** Number of downloads in the sections up to @p last. The list is sorted by them. */
    int countUntil(int last) const
    {
        const auto end =
            std::partition_point(downloads.cbegin(), downloads.cend(),
                                 [last](const QueuedDownload *download) { return section(download) <= last; });
        return static_cast<int>(end - downloads.cbegin());
    }

    /** Removes the parts of @p download, unless another download can still be resumed from them. */
    void discard(QueuedDownload *download) const
    {
        const QString key = download->key();
        if (key.isEmpty())
            return;
        const bool isShared = std::any_of(downloads.cbegin(), downloads.cend(), [&](const QueuedDownload *other) {
            const bool isOver = other->state() == DownloadQueue::Finished || other->state() == DownloadQueue::Cancelled;
            return other != download && !isOver && other->url() == download->url() && other->key() == key;
        });
        if (!isShared)
            download->discard();
    }

    ToolSetup tools;
    Chooser choose;
    QList<QueuedDownload *> downloads;
    QList<QueuedDownload *> batch;
    int limit = 1;
};

DownloadQueue::DownloadQueue(const ToolSetup &tools, QObject *parent)
    : QAbstractListModel(parent)
    , d(std::make_unique<Private>())
{
    d->tools = tools;
    d->choose = [](const PageJob &) { return DownloadRequest(); };
}

DownloadQueue::~DownloadQueue() = default;

void DownloadQueue::setTools(const ToolSetup &tools)
{
    d->tools = tools;
}

void DownloadQueue::setChooser(const Chooser &choose)
{
    d->choose = choose;
}

void DownloadQueue::setLimit(int limit)
{
    d->limit = qMax(1, limit);
    startNext();
}

void DownloadQueue::add(const DownloadRequest &request)
{
    add(QList<DownloadRequest>{request});
}

void DownloadQueue::add(const QList<DownloadRequest> &requests)
{
    QList<QueuedDownload *> downloads;
    for (const DownloadRequest &request : requests)
        downloads += new QueuedDownload(request, this);
    insert(activeCount(), downloads);
    enqueue(downloads);
}

void DownloadQueue::insert(int row, const QList<QueuedDownload *> &downloads)
{
    if (downloads.isEmpty())
        return;
    for (QueuedDownload *download : downloads)
        watch(download);
    const auto count = static_cast<int>(downloads.size());
    beginInsertRows({}, row, row + count - 1);
    d->downloads = d->downloads.mid(0, row) + downloads + d->downloads.mid(row);
    endInsertRows();
}

void DownloadQueue::watch(QueuedDownload *download)
{
    connect(download, &QueuedDownload::changed, this, [this, download] { onChanged(download); });
    connect(download, &QueuedDownload::figuresChanged, this, [this, download] {
        const QModelIndex changed = index(static_cast<int>(d->downloads.indexOf(download)));
        Q_EMIT dataChanged(changed, changed, {PercentRole, StatusRole, Qt::AccessibleTextRole});
    });
    connect(download, &QueuedDownload::ended, this, [this, download] { onEnded(download); });
}

void DownloadQueue::restore(const QJsonArray &stored)
{
    QList<QueuedDownload *> paused;
    QList<QueuedDownload *> ended;
    for (const auto &value : stored) {
        auto *download = new QueuedDownload(value.toObject(), this);
        (download->isEnded() ? ended : paused) += download;
    }
    insert(rowCount() - endedCount(), paused);
    insert(rowCount(), ended);
    Q_EMIT countsChanged();
}

void DownloadQueue::addInterrupted(const QString &folder)
{
    QList<QueuedDownload *> found;
    const QList<QJsonObject> records = DownloadJob::interrupted(folder);
    for (const QJsonObject &record : records) {
        const DownloadJob job(record);
        const DownloadRequest request{job.url(), job.stream(), job.destination()};
        const auto isSame = [&request](const QueuedDownload *download) { return download->isSameAs(request); };
        if (std::none_of(d->downloads.cbegin(), d->downloads.cend(), isSame)
            && std::none_of(found.cbegin(), found.cend(), isSame))
            found += new QueuedDownload(record, job.url(), job.destination(), this);
    }
    insert(rowCount() - endedCount(), found);
    Q_EMIT countsChanged();
}

QJsonArray DownloadQueue::toJson() const
{
    QJsonArray result;
    for (const QueuedDownload *download : d->downloads)
        result += download->toJson();
    return result;
}

/** Lets the waiting @p downloads start, as part of the batch. */
void DownloadQueue::enqueue(const QList<QueuedDownload *> &downloads)
{
    if (downloads.isEmpty())
        return;
    if (activeCount() == downloads.size()) // no other is active
        d->batch.clear();
    for (QueuedDownload *download : downloads)
        d->batch.removeOne(download);
    d->batch += downloads;
    startNext();
    Q_EMIT countsChanged();
}

void DownloadQueue::startNext()
{
    for (int running = runningCount(); running < d->limit && running < activeCount(); running = runningCount())
        d->downloads.at(running)->start(d->tools, d->choose);
}

void DownloadQueue::pause(int row)
{
    if (QueuedDownload *download = d->downloads.value(row))
        download->pause();
}

void DownloadQueue::pauseAll()
{
    const QList<QueuedDownload *> downloads = d->downloads;
    for (auto download = downloads.crbegin(); download != downloads.crend(); ++download) // as in cancelAll()
        (*download)->pause();
}

void DownloadQueue::resumeAll()
{
    const QList<QueuedDownload *> paused = d->downloads.mid(activeCount(), pausedCount());
    for (QueuedDownload *download : paused)
        download->retry();
    enqueue(paused);
}

void DownloadQueue::cancel(int row)
{
    if (QueuedDownload *download = d->downloads.value(row))
        download->cancel();
}

void DownloadQueue::cancelAll()
{
    const QList<QueuedDownload *> downloads = d->downloads;
    // First the waiting ones: otherwise they would start in place of the cancelled ones.
    for (auto download = downloads.crbegin(); download != downloads.crend(); ++download)
        (*download)->cancel();
}

void DownloadQueue::retry(int row)
{
    QueuedDownload *download = d->downloads.value(row);
    if (download != nullptr && download->canRetry()) {
        download->retry();
        enqueue({download});
    }
}

void DownloadQueue::move(int row, int by)
{
    const int first = runningCount();
    const int end = activeCount();
    const int target = qBound(first, row + by, end - 1);
    if (row < first || row >= end || target == row)
        return;
    beginMoveRows({}, row, row, {}, target > row ? target + 1 : target);
    d->downloads.move(row, target);
    endMoveRows();
}

void DownloadQueue::remove(int row)
{
    QueuedDownload *download = d->downloads.value(row);
    if (download == nullptr || download->isActive())
        return;
    d->discard(download);
    take(row);
    Q_EMIT countsChanged();
}

void DownloadQueue::removeEnded()
{
    const int firstEnded = rowCount() - endedCount();
    const QSet<QString> keys = partsOf(d->downloads.mid(firstEnded));
    for (int row = rowCount() - 1; row >= firstEnded; --row) {
        QueuedDownload *download = d->downloads.value(row);
        if (download == nullptr || !download->isEnded())
            continue; // a host may change the list inside a signal
        const bool hasParts = keys.contains(download->key());
        if (hasParts && download->state() == DownloadQueue::Failed)
            continue;
        if (hasParts)
            d->discard(download);
        take(row);
    }
    Q_EMIT countsChanged();
}

/** Takes the download in @p row out of the list and deletes it. */
void DownloadQueue::take(int row)
{
    beginRemoveRows({}, row, row);
    QueuedDownload *download = d->downloads.takeAt(row);
    d->batch.removeOne(download);
    endRemoveRows();
    download->deleteLater();
}

int DownloadQueue::runningCount() const
{
    return d->countUntil(0);
}

int DownloadQueue::activeCount() const
{
    return d->countUntil(1);
}

int DownloadQueue::endedCount() const
{
    return rowCount() - d->countUntil(2);
}

bool DownloadQueue::contains(const DownloadRequest &request) const
{
    return std::any_of(d->downloads.cbegin(), d->downloads.cend(), [&request](const QueuedDownload *download) {
        const bool isGivenUp = download->isEnded() && download->state() != DownloadQueue::Finished;
        return !isGivenUp && download->isSameAs(request);
    });
}

bool DownloadQueue::hasParts(int row) const
{
    QueuedDownload *download = d->downloads.value(row);
    return download != nullptr && partsOf({download}).contains(download->key());
}

QStringList DownloadQueue::activeFiles() const
{
    QStringList files;
    for (const QueuedDownload *download : d->downloads) {
        if (download->isActive())
            files += download->file();
    }
    return files;
}

int DownloadQueue::batchCount() const
{
    return static_cast<int>(d->batch.size());
}

int DownloadQueue::batchEndedCount() const
{
    return static_cast<int>(std::count_if(d->batch.cbegin(), d->batch.cend(), std::mem_fn(&QueuedDownload::isEnded)));
}

int DownloadQueue::batchPercent() const
{
    if (d->batch.isEmpty())
        return 0;
    int sum = 0;
    for (const QueuedDownload *download : d->batch)
        sum += download->isEnded() ? 100 : qMax(0, download->percent());
    return sum / batchCount();
}

int DownloadQueue::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(d->downloads.size());
}

QVariant DownloadQueue::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const QueuedDownload *download = d->downloads.at(index.row());
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

QHash<int, QByteArray> DownloadQueue::roleNames() const
{
    QHash<int, QByteArray> names = QAbstractListModel::roleNames();
    names.insert({{FileRole, "file"},
                  {StateRole, "state"},
                  {PercentRole, "percent"},
                  {StatusRole, "status"},
                  {ErrorRole, "errorString"},
                  {ErrorDetailsRole, "errorDetails"},
                  {AddressRole, "address"}});
    return names;
}

void DownloadQueue::onChanged(QueuedDownload *download)
{
    place(static_cast<int>(d->downloads.indexOf(download)));
    const QModelIndex row = index(static_cast<int>(d->downloads.indexOf(download)));
    Q_EMIT dataChanged(row, row);
}

/** Moves the download in @p row to its new place after a change of its state. */
void DownloadQueue::place(int row)
{
    const QueuedDownload *download = d->downloads.at(row);
    const bool isBehind = row == 0 || section(d->downloads.at(row - 1)) <= section(download);
    const bool isBefore = row == rowCount() - 1 || section(d->downloads.at(row + 1)) >= section(download);
    if (isBehind && isBefore)
        return;
    const auto count =
        std::count_if(d->downloads.cbegin(), d->downloads.cend(), [download](const QueuedDownload *other) {
            const int difference = section(other) - section(download);
            return other != download && (difference < 0 || (difference == 0 && download->isActive()));
        });
    const int target = static_cast<int>(count);
    beginMoveRows({}, row, row, {}, target > row ? target + 1 : target);
    d->downloads.move(row, target);
    endMoveRows();
}

void DownloadQueue::onEnded(QueuedDownload *download)
{
    if (download->state() == DownloadQueue::Cancelled) // it may have waited for its turn with parts
        d->discard(download);
    startNext();
    const bool isLast = activeCount() == 0;
    Q_EMIT countsChanged();
    const auto row = static_cast<int>(d->downloads.indexOf(download));
    if (row >= 0) // the host may have removed it
        Q_EMIT ended(row);
    if (isLast && activeCount() == 0) // the host may have added another
        Q_EMIT allEnded();
}

} // namespace Nox
