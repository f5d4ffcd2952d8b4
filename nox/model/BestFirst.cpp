#include <nox/model/BestFirst.h>

#include <nox/model/PictureRank.h>
#include <nox/model/RecordAccess.h>

#include <QHash>

#include <algorithm>
#include <array>
#include <limits>

namespace Nox {

namespace {

using ListRearrangement::Index;

/*
 * What decides about a profile, packed into one number, since sorting the records themselves would
 * move every field of them again and again.
 */
struct Entry {
    quint64 key;
    Index position;
};

constexpr int formatShift = 1;
constexpr int rankShift = 32;

// Numbers the formats of a list in the order in which they first appear.
class FormatNumbers
{
public:
    quint64 of(const QString &format)
    {
        // A list has few formats, and most of its profiles have one of the first.
        for (size_t i = 0; i < m_first.size() && i < m_formats.size(); ++i) {
            if (*m_first[i] == format)
                return i;
        }
        return lookUp(format);
    }

    // The place of each number's format in the order of code units.
    std::vector<quint64> places() const
    {
        std::vector<quint64> sorted(m_formats.size());
        for (size_t i = 0; i < sorted.size(); ++i)
            sorted[i] = i;
        std::sort(sorted.begin(), sorted.end(), [this](quint64 a, quint64 b) { return *m_formats[a] < *m_formats[b]; });
        std::vector<quint64> result(sorted.size());
        for (size_t place = 0; place < sorted.size(); ++place)
            result[sorted[place]] = place;
        return result;
    }

private:
    quint64 lookUp(const QString &format)
    {
        const auto number = static_cast<quint64>(m_formats.size());
        const auto known = m_numbers.constFind(format);
        if (known != m_numbers.constEnd())
            return *known;
        m_numbers.insert(format, number);
        if (number < m_first.size())
            m_first[number] = &format;
        m_formats.push_back(&format);
        return number;
    }

    std::array<const QString *, 4> m_first{};
    std::vector<const QString *> m_formats;
    QHash<QString, quint64> m_numbers;
};

std::vector<Entry> entriesOf(const QList<MediaProfile> &profiles)
{
    FormatNumbers formats;
    std::vector<Entry> entries;
    entries.reserve(static_cast<size_t>(profiles.size()));
    for (const MediaProfile &profile : profiles) {
        // Shifted to be positive; it is a 32-bit number.
        const auto rank = static_cast<quint64>(PictureRank::of(profile) - std::numeric_limits<qint32>::min());
        const quint64 isFlat = RecordAccess::is3D(profile) ? 0 : 1;
        const quint64 format = formats.of(RecordAccess::format(profile));
        entries.push_back({rank << rankShift | format << formatShift | isFlat, static_cast<Index>(entries.size())});
    }

    const std::vector<quint64> places = formats.places();
    constexpr quint64 formatMask = (quint64{1} << rankShift) - (quint64{1} << formatShift);
    for (Entry &entry : entries) {
        const quint64 place = places[(entry.key & formatMask) >> formatShift];
        entry.key = (entry.key & ~formatMask) | place << formatShift;
    }
    return entries;
}

// Sorts by one byte of the key, highest first; equal ones keep their order.
void sortByByte(std::vector<Entry> &entries, std::vector<Entry> &scratch, int shift)
{
    const auto byteOf = [shift](const Entry &entry) { return 0xffU - (entry.key >> shift & 0xffU); };
    std::array<size_t, 257> starts{};
    for (const Entry &entry : entries)
        ++starts[byteOf(entry) + 1];
    if (std::find(starts.begin(), starts.end(), entries.size()) != starts.end())
        return; // all have the same byte
    for (size_t i = 1; i < starts.size(); ++i)
        starts[i] += starts[i - 1];
    for (const Entry &entry : entries)
        scratch[starts[byteOf(entry)]++] = entry;
    entries.swap(scratch);
}

} // namespace

std::vector<Index> BestFirst::order(const QList<MediaProfile> &profiles)
{
    // Radix sort: linear, and the keys of a page's streams differ in few bytes.
    std::vector<Entry> entries = entriesOf(profiles);
    std::vector<Entry> scratch(entries.size());
    for (int shift = 0; shift < std::numeric_limits<quint64>::digits; shift += 8)
        sortByByte(entries, scratch, shift);

    std::vector<Index> positions(entries.size());
    std::transform(entries.begin(), entries.end(), positions.begin(),
                   [](const Entry &entry) { return entry.position; });
    return positions;
}

} // namespace Nox
