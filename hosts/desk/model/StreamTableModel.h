#pragma once

#include "hosts/common/StreamChoice.h"

#include <QAbstractTableModel>
#include <QHash>

namespace NoxDesk {

/** The streams of a page as a table, best first, without near duplicates unless all are wanted. */
class StreamTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Quality, Container, Kind, Size, ColumnCount };

    explicit StreamTableModel(QObject *parent = nullptr);

    void setStreams(const NoxHost::StreamChoice &streams);
    void setShowsAll(bool all); ///< Whether near duplicates are shown.
    bool showsAll() const;
    bool hidesAny() const; ///< Whether there are near duplicates.

    /** Tells the size of the stream with format code @p code. */
    void setSize(const QString &code, qint64 bytes);

    Nox::MediaProfile stream(int row) const; ///< Invalid for a row that does not exist.

    /** The row to begin with: @p preferred if it is shown, else the best stream; -1 when empty. */
    int startRow(const QString &preferred = {}) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    QString text(const Nox::MediaProfile &stream, int column) const;
    int rowOf(const QString &code) const;
    void show();

    NoxHost::StreamChoice m_streams;
    QHash<QString, qint64> m_sizes;
    QList<Nox::MediaProfile> m_shown;
    bool m_showsAll = false;
};

} // namespace NoxDesk
