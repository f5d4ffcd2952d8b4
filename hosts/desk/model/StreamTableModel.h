#pragma once

#include <nox/jobs/StreamChoice.h>
#include <nox/jobs/StreamPreference.h>

#include <QAbstractTableModel>
#include <QHash>
#include <QStringList>

namespace NoxDesk {

/** The streams of a page as a table, best first; by default without near duplicates. */
class StreamTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Description, Quality, Container, Kind, Size, ColumnCount };

    enum Role {
        SortRole = Qt::UserRole, ///< Value for sorting.
        AddressRole,             ///< Address of the media file; may be empty.
    };

    explicit StreamTableModel(QObject *parent = nullptr);

    /** @param duration of the page's video in seconds; -1 if unknown */
    void setStreams(const Nox::StreamChoice &streams, qint64 duration);

    /** Preferences for startRow(). */
    void setPreference(const Nox::StreamPreference &preference) { m_preference = preference; }

    void setShowsAll(bool all); ///< Whether near duplicates are shown.
    bool showsAll() const { return m_showsAll; }
    bool hidesAny() const; ///< Whether there are near duplicates.

    /** Sets the size of the stream with format code @p code. */
    void setSize(const QString &code, qint64 bytes);

    Nox::MediaProfile stream(int row) const { return m_shown.value(row); } ///< Invalid if the row does not exist.

    /** The row to select first: @p preferred if it is shown, else the best stream by the preferences; -1 if empty. */
    int startRow(const QString &preferred = {}) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    QString text(int row, int column) const;
    Nox::MediaProfile whole(Nox::MediaProfile stream) const;
    QString description(const Nox::MediaProfile &stream) const;
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
    QStringList m_labels; // of the shown streams
    bool m_showsAll = false;
};

} // namespace NoxDesk
