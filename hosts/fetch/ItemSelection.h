#pragma once

#include <QString>
#include <QVector>

#include <optional>
#include <utility>

namespace NoxFetch {

/** The requested videos of a page, by their numbers from 1. A value. */
class ItemSelection
{
public:
    /** Reads numbers and ranges such as "2,5-7", or "all"; no value if the text is neither. */
    static std::optional<ItemSelection> fromText(const QString &text);

    bool contains(int number) const;

    /** The smallest requested number above @p number, or 0 if there is none. */
    int next(int number) const;

    /** The largest number; no value if all are requested. */
    std::optional<int> last() const;

private:
    QVector<std::pair<int, int>> m_ranges; // first and last, in order; empty means all
};

} // namespace NoxFetch
