#include "hosts/desk/model/StreamTableModel.h"

#include <nox/jobs/StreamText.h>

#include <QLocale>
#include <QTextDocument>

namespace NoxDesk {

using Nox::Conversion;
using Nox::MediaProfile;
using Nox::StreamText;

namespace {

int alignment(int column)
{
    return static_cast<int>(Qt::AlignVCenter | (column == StreamTableModel::Size ? Qt::AlignRight : Qt::AlignLeft));
}

} // namespace

StreamTableModel::StreamTableModel(QObject *parent)
    : QAbstractTableModel(parent)
{
}

void StreamTableModel::setStreams(const Nox::StreamChoice &streams, qint64 duration)
{
    m_streams = streams;
    m_duration = duration;
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
    m_labels = StreamText::labels(m_shown);
    endResetModel();
}

bool StreamTableModel::hidesAny() const
{
    return m_streams.all().size() > m_streams.thinned().size();
}

void StreamTableModel::setSize(const QString &code, qint64 bytes)
{
    m_sizes.insert(code, bytes);
    if (const QModelIndex cell = index(rowOf(code), Size); cell.isValid())
        Q_EMIT dataChanged(cell, cell);
}

int StreamTableModel::startRow(const QString &preferred) const
{
    for (const QString &code : {preferred, m_preference.pick(m_streams).getName(), m_streams.best().getName()}) {
        if (const int row = rowOf(code); row >= 0)
            return row;
    }
    return m_shown.isEmpty() ? -1 : 0;
}

int StreamTableModel::rowOf(const QString &code) const
{
    for (int row = 0; row < rowCount(); ++row) {
        if (m_shown.at(row).getName() == code)
            return row;
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
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return text(index.row(), index.column());
    case Qt::ToolTipRole: // text of a page must not be read as markup
        return Qt::convertFromPlainText(explanation(index.row(), index.column()), Qt::WhiteSpaceNormal);
    case Qt::AccessibleDescriptionRole:
        return explanation(index.row(), index.column());
    case Qt::TextAlignmentRole:
        return alignment(index.column());
    case SortRole:
        return sortKey(index.row(), index.column());
    case AddressRole:
        return m_shown.at(index.row()).getUrl();
    default:
        return {};
    }
}

QString StreamTableModel::text(int row, int column) const
{
    const MediaProfile &stream = m_shown.at(row);
    switch (column) {
    case Description:
        return description(stream);
    case Quality:
        return m_labels.at(row).isEmpty() ? tr("unknown") : m_labels.at(row);
    case Container:
        return StreamText::container(stream);
    case Kind:
        return stream.isDash() ? tr("%1 (DASH)").arg(StreamText::kind(whole(stream))) : StreamText::kind(stream);
    case Size:
        return size(stream) > 0 ? QLocale().formattedDataSize(size(stream), 1, QLocale::DataSizeSIFormat) : QString();
    default:
        return {};
    }
}

/** The description of the resulting file: includes the sound that will be joined. */
MediaProfile StreamTableModel::whole(MediaProfile stream) const
{
    if (m_streams.audioFor(stream).isValid())
        stream.setDash(false);
    return stream;
}

QString StreamTableModel::description(const MediaProfile &stream) const
{
    const QString mark = Conversion::mark(m_streams.conversion(stream));
    QString plain = StreamText::description(whole(stream));
    if (StreamText::label(stream).isEmpty() && stream.getMediaType() != Nox::MEDIA_TYPE_AUDIO)
        plain = tr("unknown quality, %1", "with or without sound").arg(plain);
    return mark.isEmpty() ? plain : tr("⚠ %1; %2", "stream, mark").arg(plain, mark);
}

/** The whole text, which may be elided in the cell, and more properties of the stream. */
QString StreamTableModel::explanation(int row, int column) const
{
    const MediaProfile &stream = m_shown.at(row);
    const QString warning = Conversion::warning(m_streams.conversion(stream), stream, m_duration);
    return warning.isEmpty() ? text(row, column) : text(row, column) + QLatin1Char('\n') + warning;
}

QVariant StreamTableModel::sortKey(int row, int column) const
{
    const MediaProfile &stream = m_shown.at(row);
    switch (column) {
    case Description:
    case Quality: { // any picture sorts above audio
        constexpr qint64 sound = 1LL << 40;
        const QSize picture = stream.getVResolution();
        return stream.getMediaType() == Nox::MEDIA_TYPE_AUDIO ? stream.getABitRate() - sound
                                                              : qint64{picture.width()} * picture.height();
    }
    case Size:
        return size(stream);
    default:
        return text(row, column);
    }
}

qint64 StreamTableModel::size(const MediaProfile &stream) const
{
    return m_sizes.value(stream.getName(), stream.getSize());
}

QVariant StreamTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return alignment(section);
    const QStringList titles{tr("Stream"), tr("Quality"), tr("Format"), tr("Kind"), tr("Size")};
    return role == Qt::DisplayRole ? titles.value(section) : QVariant();
}

} // namespace NoxDesk
