#include "hosts/fetch/StreamTable.h"

#include <nox/jobs/StreamText.h>
#include <nox/jobs/TextSanitizer.h>

#include <QStringList>
#include <QVector>

#include <utility>

namespace NoxFetch {

namespace {

using Nox::MediaProfile;
using Nox::StreamText;

QStringList row(const MediaProfile &stream, const QString &mark, bool isChosen)
{
    QStringList cells{
        isChosen ? QStringLiteral("*") : QString(),
        Nox::TextSanitizer::line(stream.getName()),
        StreamText::kind(stream),
        StreamText::container(stream),
        StreamText::label(stream),
        StreamText::size(stream),
        StreamText::marks(stream),
    };
    for (int i = 1; i < cells.size(); ++i)
        if (cells.at(i).isEmpty())
            cells[i] = QStringLiteral("-");
    return cells << mark;
}

QString joined(const QStringList &cells, const QVector<int> &widths)
{
    QString line;
    for (int i = 0; i < cells.size(); ++i)
        line += cells.at(i).leftJustified(widths.at(i)) + QStringLiteral("  ");
    while (line.endsWith(QLatin1Char(' ')))
        line.chop(1);
    return line;
}

} // namespace

QString streamTable(const Nox::StreamChoice &streams, const Nox::StreamPreference &preference)
{
    const MediaProfile best = preference.pick(streams);
    const QStringList chosen{best.getName(), streams.audioFor(best).getName()};
    QVector<QStringList> rows{{QString(), QStringLiteral("CODE"), QStringLiteral("KIND"), QStringLiteral("CONTAINER"),
                               QStringLiteral("QUALITY"), QStringLiteral("SIZE"), QStringLiteral("DASH/3D"),
                               QString()}};
    const QList<MediaProfile> all = streams.all();
    for (const MediaProfile &stream : all)
        rows.append(row(stream, Nox::Conversion::mark(streams.conversion(stream)), chosen.contains(stream.getName())));
    QVector<int> widths(rows.constFirst().size(), 1);
    for (const QStringList &cells : std::as_const(rows))
        for (int i = 0; i < cells.size(); ++i)
            widths[i] = qMax(widths.at(i), static_cast<int>(cells.at(i).size()));
    QStringList lines;
    for (const QStringList &cells : std::as_const(rows))
        lines += joined(cells, widths);
    return lines.join(QLatin1Char('\n'));
}

} // namespace NoxFetch
