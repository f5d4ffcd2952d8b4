#include "hosts/fetch/ProgressLine.h"

#include <QLocale>
#include <QStringList>

namespace NoxFetch {

namespace {

constexpr int activityWidth = 10;
constexpr int minimumBar = 10;
constexpr int maximumBar = 40;

QString percentText(const Nox::TransferFigures &figures)
{
    return QStringLiteral("%1%").arg(figures.percent(), 3);
}

/** @p parts without empty ones, joined by two blanks. */
QString joined(QStringList parts)
{
    parts.removeAll(QString());
    return parts.join(QStringLiteral("  "));
}

QString bar(int percent, int width)
{
    const int filled = width * percent / 100;
    return QLatin1Char('[') + QString(filled, QLatin1Char('#')) + QString(width - filled, QLatin1Char('-'))
        + QLatin1Char(']');
}

} // namespace

QString statusLine(const QString &activity, const Nox::TransferFigures &figures, int width, int tick)
{
    const int room = width - 1; // some terminals wrap the line if the last column is used
    const QLocale locale = QLocale::c();
    if (figures.total() == 0) {
        const QString marks = QStringLiteral("|/-\\");
        const QString text = joined({activity, figures.amountText(locale), figures.speedText(locale)});
        return (text + QLatin1Char(' ') + marks.at(tick % static_cast<int>(marks.size()))).left(room);
    }
    const QString head = activity.leftJustified(activityWidth) + percentText(figures) + QLatin1Char(' ');
    const QString tail = QStringLiteral(" %1  %2  %3")
                             .arg(figures.amountText(locale), figures.speedText(locale), figures.timeLeftText());
    const int barWidth = qMin(maximumBar, room - static_cast<int>(head.size() + tail.size()) - 2);
    if (barWidth < minimumBar)
        return (head + tail).left(room);
    return head + bar(figures.percent(), barWidth) + tail;
}

QString plainLine(const QString &activity, const Nox::TransferFigures &figures)
{
    const QLocale locale = QLocale::c();
    const QString timeLeft = figures.timeLeftText();
    return joined({figures.total() > 0 ? activity + QLatin1Char(' ') + percentText(figures) : activity,
                   figures.amountText(locale), figures.speedText(locale),
                   timeLeft.isEmpty() ? timeLeft : timeLeft + QStringLiteral(" left")});
}

} // namespace NoxFetch
