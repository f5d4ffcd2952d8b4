#include "hosts/fetch/ItemSelection.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

namespace NoxFetch {

std::optional<ItemSelection> ItemSelection::fromText(const QString &text)
{
    ItemSelection selection;
    if (text == QLatin1String("all"))
        return selection;
    static const QRegularExpression range(QStringLiteral("^([1-9]\\d{0,6})(?:-([1-9]\\d{0,6}))?$"));
    const QStringList parts = text.split(QLatin1Char(','));
    for (const QString &part : parts) {
        const QRegularExpressionMatch match = range.match(part.trimmed());
        const int first = match.captured(1).toInt();
        const int last = match.capturedLength(2) > 0 ? match.captured(2).toInt() : first;
        if (!match.hasMatch() || last < first)
            return std::nullopt;
        selection.m_ranges.append({first, last});
    }
    std::sort(selection.m_ranges.begin(), selection.m_ranges.end());
    return selection;
}

bool ItemSelection::contains(int number) const
{
    return next(number - 1) == number;
}

int ItemSelection::next(int number) const
{
    if (m_ranges.isEmpty())
        return number + 1;
    for (const auto &[first, last] : m_ranges)
        if (last > number)
            return std::max(first, number + 1);
    return 0;
}

std::optional<int> ItemSelection::last() const
{
    std::optional<int> largest;
    for (const auto &range : m_ranges)
        largest = std::max(largest.value_or(0), range.second);
    return largest;
}

} // namespace NoxFetch
