#pragma once

#include <nox/jobs/StreamChoice.h>
#include <nox/jobs/StreamPreference.h>

#include <QAbstractTableModel>
#include <QHash>
#include <QStringList>

namespace NoxDesk {

/** The streams of a page as a table, best first, without near duplicates unless all are wanted. */
class StreamTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Words, Quality, Container, Kind, Size, ColumnCount };

    enum Role {
        SortRole = Qt::UserRole, ///< What a column is sorted by.
        AddressRole,             ///< Address of the stream itself; may be empty.
    };

    explicit StreamTableModel(QObject *parent = nullptr);

    /** @param duration of the page's video in seconds; -1 when it is not known */
    void setStreams(const Nox::StreamChoice &streams, qint64 duration);

    /** Which stream startRow() begins with. */
    void setPreference(const Nox::StreamPreference &preference) { m_preference = preference; }

    void setShowsAll(bool all); ///< Whether near duplicates are shown.
    bool showsAll() const { return m_showsAll; }
    bool hidesAny() const; ///< Whether there are near duplicates.

    /** Tells the size of the stream with format code @p code. */
    void setSize(const QString &code, qint64 bytes);

    Nox::MediaProfile stream(int row) const { return m_shown.value(row); } ///< Invalid for a row that does not exist.

    /** The row to begin with: @p preferred if it is shown, else the stream that suits best; -1 when empty. */
    int startRow(const QString &preferred = {}) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    QString text(int row, int column) const;
    Nox::MediaProfile whole(Nox::MediaProfile stream) const;
    QString words(const Nox::MediaProfile &stream) const;
    QString explanation(int row, int column) const;
    QVariant sortKey(int row, int column) const;
    qint64 size(const Nox::MediaProfile &stream) const;
    int rowOf(const QString &code) const;
    void show();

    Nox::StreamChoice m_streams;
    Nox::StreamPreference m_preference;
    qint64 m_duration = -1;
    QHash<QString, qint64> m_sizes;
    QList<Nox::MediaProfile> m_shown;
    QStringList m_labels; // of the streams shown
    bool m_showsAll = false;
};

} // namespace NoxDesk
