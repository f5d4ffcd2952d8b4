#include "hosts/desk/model/DownloadListModel.h"

#include <algorithm>
#include <functional>

namespace NoxDesk {

DownloadListModel::DownloadListModel(const NoxHost::ToolSetup &tools, ProgramLog &log, QObject *parent)
    : QAbstractListModel(parent)
    , m_tools(tools)
    , m_log(log)
{
}

void DownloadListModel::start(const DownloadRequest &request)
{
    auto *download = new Download(m_tools, m_log, request, this);
    connect(download, &Download::changed, this, [this, download] { onChanged(download); });
    connect(download, &Download::ended, this, &DownloadListModel::onEnded);
    beginInsertRows({}, 0, 0);
    m_downloads.prepend(download);
    endInsertRows();
    Q_EMIT countsChanged();
    download->start();
}

void DownloadListModel::cancel(int row)
{
    if (Download *download = m_downloads.value(row)) {
        download->cancel();
    }
}

void DownloadListModel::cancelAll()
{
    for (Download *download : std::as_const(m_downloads)) {
        download->cancel();
    }
}

void DownloadListModel::remove(int row)
{
    Download *download = m_downloads.value(row);
    if (download == nullptr || download->isActive()) {
        return;
    }
    beginRemoveRows({}, row, row);
    m_downloads.removeAt(row);
    endRemoveRows();
    download->deleteLater();
    Q_EMIT countsChanged();
}

void DownloadListModel::removeEnded()
{
    for (int row = rowCount() - 1; row >= 0; --row) {
        remove(row);
    }
}

int DownloadListModel::activeCount() const
{
    return static_cast<int>(std::count_if(m_downloads.cbegin(), m_downloads.cend(), std::mem_fn(&Download::isActive)));
}

int DownloadListModel::endedCount() const
{
    return rowCount() - activeCount();
}

QStringList DownloadListModel::activeFiles() const
{
    QStringList files;
    for (const Download *download : m_downloads) {
        if (download->isActive()) {
            files += download->file();
        }
    }
    return files;
}

int DownloadListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_downloads.size());
}

QVariant DownloadListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const Download *download = m_downloads.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return download->title();
    case Qt::AccessibleTextRole:
        return tr("%1: %2", "title, status").arg(download->title(), download->status());
    case FileRole:
        return download->file();
    case StateRole:
        return QVariant::fromValue(download->state());
    case PercentRole:
        return download->percent();
    case StatusRole:
        return download->status();
    case ProblemRole:
        return download->problem();
    case ToolWordsRole:
        return download->toolWords();
    default:
        return {};
    }
}

void DownloadListModel::onChanged(Download *download)
{
    const QModelIndex row = index(static_cast<int>(m_downloads.indexOf(download)));
    Q_EMIT dataChanged(row, row);
}

void DownloadListModel::onEnded()
{
    Q_EMIT countsChanged();
    if (activeCount() == 0) {
        Q_EMIT allEnded();
    }
}

} // namespace NoxDesk
