#pragma once

#include <nox/jobs/JobsExport.h>

#include <QCoreApplication>
#include <QLocale>
#include <QMetaType>
#include <QObject>
#include <QString>

namespace Nox {

/**
 * The progress of a download, as numbers and as texts: in bytes while streams are downloaded, in playing time while
 * they are joined. A value.
 */
class NOX_JOBS_EXPORT TransferFigures
{
    Q_DECLARE_TR_FUNCTIONS(Nox::TransferFigures)
    Q_GADGET
    Q_PROPERTY(qint64 total READ total)
    Q_PROPERTY(qint64 processed READ processed)
    Q_PROPERTY(qint64 speed READ speed)
    Q_PROPERTY(int percent READ percent)
    Q_PROPERTY(qint64 secondsLeft READ secondsLeft)

public:
    /** The unit: bytes, or milliseconds of playing time. */
    enum class Unit { Bytes, Time };

    /** Everything unknown. */
    TransferFigures() = default;

    /** Figures of WebMediaDownloader::progress(). Values out of range count as unknown. */
    TransferFigures(qint64 total, qint64 processed, qint64 speed);

    /** Figures in milliseconds of playing time; @p speed is in milliseconds per second. */
    static TransferFigures ofTime(qint64 total, qint64 processed, qint64 speed);

    /** The same figures without speed and time left. */
    TransferFigures withoutSpeed() const;

    qint64 total() const { return m_total; }         ///< The total, or 0 if unknown.
    qint64 processed() const { return m_processed; } ///< The amount that is done; at most total(), if that is known.
    qint64 speed() const { return m_speed; }         ///< Amount per second, or 0 if unknown.

    /** Whether all figures are unknown. */
    bool isEmpty() const;

    /** Whole percent done, 0 to 100; 100 only when all is done. */
    int percent() const;

    /** Remaining seconds, rounded up, or -1 if unknown. */
    qint64 secondsLeft() const;

    /** Such as "3.4 MB / 12.0 MB", "0:01:10 / 0:05:00", or "3.4 MB" if the total is unknown; may be empty. */
    QString amountText(const QLocale &locale) const;

    QString speedText(const QLocale &locale) const; ///< Such as "1.2 MB/s" or "2.5x"; empty if unknown.
    QString timeLeftText() const;                   ///< h:mm:ss; empty if unknown.

    /** @p seconds as h:mm:ss; empty for a negative number. */
    static QString timeText(qint64 seconds);

private:
    QString countText(qint64 count, const QLocale &locale) const;

    Unit m_unit = Unit::Bytes;
    qint64 m_total = 0;
    qint64 m_processed = 0;
    qint64 m_speed = 0;
};

} // namespace Nox

Q_DECLARE_METATYPE(Nox::TransferFigures)
