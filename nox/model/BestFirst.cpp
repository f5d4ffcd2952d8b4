#include <nox/model/BestFirst.h>

#include <nox/model/PictureRank.h>
#include <nox/model/RecordAccess.h>

#include <algorithm>
#include <limits>
#include <numeric>

namespace Nox {

namespace {

using ListRearrangement::Index;

// A key holds, from the top, the rank, the format, and whether the picture is flat.
constexpr int keyBits = std::numeric_limits<quint64>::digits;
constexpr int rankBits = 32;
constexpr int rankShift = keyBits - rankBits;
constexpr int flatBits = 1;

// The lowest bits of a number.
quint64 low(int bits, quint64 number)
{
    return number & ((quint64{1} << bits) - 1);
}

// Bits that hold every number below count.
int bitsFor(size_t count)
{
    int bits = 0;
    while (bits < keyBits && (quint64{count} >> bits) != 0)
        ++bits;
    return bits;
}

// Sorts by eight bits, highest first; equal ones keep their order.
void sortByByte(std::vector<quint64> &values, std::vector<quint64> &scratch, int shift)
{
    const auto byteOf = [shift](quint64 value) { return 0xffU - (value >> shift & 0xffU); };
    std::array<size_t, 257> starts{};
    for (const quint64 value : values)
        ++starts[byteOf(value) + 1];
    if (std::find(starts.begin(), starts.end(), values.size()) != starts.end())
        return; // all have the same byte
    std::partial_sum(starts.begin(), starts.end(), starts.begin());
    scratch.resize(values.size());
    for (const quint64 value : values)
        scratch[starts[byteOf(value)]++] = value;
    values.swap(scratch);
}

// Radix sort, with the positions in the low bits: linear, and the keys of a page's streams differ in few bytes.
std::vector<Index> sortPacked(std::vector<quint64> &keys, int positionBits)
{
    for (size_t position = 0; position < keys.size(); ++position)
        keys[position] = keys[position] << positionBits | position;
    std::vector<quint64> scratch;
    for (int shift = positionBits; shift < keyBits; shift += 8)
        sortByByte(keys, scratch, shift);

    std::vector<Index> positions(keys.size());
    std::transform(keys.begin(), keys.end(), positions.begin(),
                   [positionBits](quint64 key) { return static_cast<Index>(low(positionBits, key)); });
    return positions;
}

std::vector<Index> sortApart(const std::vector<quint64> &keys)
{
    std::vector<Index> positions(keys.size());
    std::iota(positions.begin(), positions.end(), Index{0});
    std::stable_sort(positions.begin(), positions.end(),
                     [&keys](Index a, Index b) { return keys[static_cast<size_t>(a)] > keys[static_cast<size_t>(b)]; });
    return positions;
}

} // namespace

BestFirst::BestFirst(Index count)
{
    m_keys.reserve(static_cast<size_t>(count));
}

void BestFirst::add(const MediaProfile &profile)
{
    m_looks[m_pending++] = {&profile, RecordAccess::resolution(profile), RecordAccess::format(profile),
                            RecordAccess::is3D(profile)};
    if (m_pending == m_looks.size())
        weigh();
}

std::vector<Index> BestFirst::order()
{
    weigh();
    const int bits = placeFormats();
    const int positionBits = bitsFor(m_keys.size());
    if (bits + positionBits <= keyBits)
        return sortPacked(m_keys, positionBits);
    return sortApart(m_keys); // there are tens of thousands of formats
}

void BestFirst::weigh()
{
    for (size_t i = 0; i < m_pending; ++i) {
        const Look &look = m_looks[i];
        const qint64 rank =
            look.picture.width() == -1 ? PictureRank::of(*look.profile) : PictureRank::ofSize(look.picture);
        // Shifted to be positive; it is a 32-bit number.
        const auto place = static_cast<quint64>(rank - std::numeric_limits<qint32>::min());
        const quint64 format = m_formats.of(look.format);
        m_keys.push_back(place << rankShift | format << flatBits | (look.is3D ? 0U : 1U));
    }
    m_pending = 0;
}

// Puts the place of each format for its number, and all in as few bits as it takes; returns how many.
int BestFirst::placeFormats()
{
    const std::vector<quint64> places = m_formats.places();
    const int formatBits = bitsFor(places.size());
    for (quint64 &key : m_keys) {
        const quint64 place = places[low(rankShift, key) >> flatBits];
        key = ((key >> rankShift) << formatBits | place) << flatBits | low(flatBits, key);
    }
    return rankBits + formatBits + flatBits;
}

} // namespace Nox
