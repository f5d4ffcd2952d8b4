#pragma once

#include <QString>
#include <QVector>

#include <optional>
#include <utility>

namespace NoxFetch {

/** Which videos of a page with several are wanted, by their numbers from 1. A value. */
class ItemSelection
{
public:
    /** Reads numbers and ranges such as "2,5-7", or "all"; nothing where it is neither. */
    static std::optional<ItemSelection> fromText(const QString &text);

    bool contains(int number) const;

    /** The smallest wanted number above @p number, or 0 when there is none. */
    int next(int number) const;

    /** The largest number; nothing when all are wanted. */
    std::optional<int> last() const;

private:
    QVector<std::pair<int, int>> m_ranges; // first and last, in order; without any all are wanted
};

} // namespace NoxFetch
