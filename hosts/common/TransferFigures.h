#pragma once

#include <QCoreApplication>
#include <QLocale>
#include <QString>

namespace NoxHost {

/** How far a download is, in numbers and in texts. A value. */
class TransferFigures
{
    Q_DECLARE_TR_FUNCTIONS(NoxHost::TransferFigures)

public:
    /** Nothing known yet. */
    TransferFigures() = default;

    /** As WebMediaDownloader::progress() gives them; figures out of range count as unknown. */
    TransferFigures(qint64 total, qint64 done, qint64 speed);

    qint64 total() const; ///< Expected bytes, or 0 when unknown.
    qint64 done() const;  ///< Bytes done, at most total().
    qint64 speed() const; ///< Bytes a second, or 0 when unknown.

    /** Whole percent done, 0 to 100; 100 only when all is done. */
    int percent() const;

    /** Seconds to go, rounded up, or -1 when they cannot be told. */
    qint64 secondsLeft() const;

    QString amountText(const QLocale &locale) const; ///< Such as "3.4 MB / 12.0 MB"; empty when unknown.
    QString speedText(const QLocale &locale) const;  ///< Such as "1.2 MB/s"; empty when unknown.
    QString timeLeftText() const;                    ///< h:mm:ss; empty when unknown.

    /** @p seconds as h:mm:ss; empty for a negative number. */
    static QString timeText(qint64 seconds);

private:
    qint64 m_total = 0;
    qint64 m_done = 0;
    qint64 m_speed = 0;
};

} // namespace NoxHost
