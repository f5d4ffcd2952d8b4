#include "hosts/desk/model/StreamTableModel.h"

#include "hosts/common/StreamText.h"

#include <QLocale>

namespace NoxDesk {

using Nox::MediaProfile;
using NoxHost::StreamText;

StreamTableModel::StreamTableModel(QObject *parent)
    : QAbstractTableModel(parent)
{
}

void StreamTableModel::setStreams(const NoxHost::StreamChoice &streams)
{
    m_streams = streams;
    m_sizes.clear();
    show();
}

void StreamTableModel::setShowsAll(bool all)
{
    if (m_showsAll != all) {
        m_showsAll = all;
        show();
    }
}

void StreamTableModel::show()
{
    beginResetModel();
    m_shown = m_showsAll ? m_streams.all() : m_streams.thinned();
    endResetModel();
}

bool StreamTableModel::showsAll() const
{
    return m_showsAll;
}

bool StreamTableModel::hidesAny() const
{
    return m_streams.all().size() > m_streams.thinned().size();
}

void StreamTableModel::setSize(const QString &code, qint64 bytes)
{
    m_sizes.insert(code, bytes);
    const int row = rowOf(code);
    if (row >= 0) {
        const QModelIndex cell = index(row, Size);
        Q_EMIT dataChanged(cell, cell);
    }
}

MediaProfile StreamTableModel::stream(int row) const
{
    return m_shown.value(row);
}

int StreamTableModel::startRow(const QString &preferred) const
{
    const int row = rowOf(preferred);
    return row >= 0 ? row : rowOf(m_streams.best().getName());
}

int StreamTableModel::rowOf(const QString &code) const
{
    for (int row = 0; row < rowCount(); ++row) {
        if (m_shown.at(row).getName() == code) {
            return row;
        }
    }
    return -1;
}

int StreamTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

int StreamTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant StreamTableModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
        return text(m_shown.at(index.row()), index.column());
    case Qt::TextAlignmentRole:
        return static_cast<int>(Qt::AlignVCenter | (index.column() == Size ? Qt::AlignRight : Qt::AlignLeft));
    default:
        return {};
    }
}

QString StreamTableModel::text(const MediaProfile &stream, int column) const
{
    switch (column) {
    case Quality: {
        const QString label = StreamText::label(stream);
        return label.isEmpty() ? tr("unknown") : label;
    }
    case Container:
        return StreamText::container(stream);
    case Kind:
        return stream.isDash() ? tr("%1 (DASH)").arg(StreamText::kind(stream)) : StreamText::kind(stream);
    case Size: {
        const qint64 bytes = m_sizes.value(stream.getName(), stream.getSize());
        return bytes > 0 ? QLocale().formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat) : QString();
    }
    default:
        return {};
    }
}

QVariant StreamTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal) {
        return {};
    }
    if (role == Qt::TextAlignmentRole) {
        return static_cast<int>(Qt::AlignVCenter | (section == Size ? Qt::AlignRight : Qt::AlignLeft));
    }
    if (role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
    case Quality:
        return tr("Quality");
    case Container:
        return tr("Format");
    case Kind:
        return tr("Kind");
    case Size:
        return tr("Size");
    default:
        return {};
    }
}

} // namespace NoxDesk
