#include <nox/model/FormatNumbers.h>

#include <algorithm>
#include <numeric>

namespace Nox {

std::vector<quint64> FormatNumbers::places() const
{
    std::vector<size_t> sorted(m_formats.size());
    std::iota(sorted.begin(), sorted.end(), size_t{0});
    std::sort(sorted.begin(), sorted.end(), [this](size_t a, size_t b) { return m_formats[a] < m_formats[b]; });
    std::vector<quint64> result(sorted.size());
    for (size_t place = 0; place < sorted.size(); ++place)
        result[sorted[place]] = place;
    return result;
}

quint64 FormatNumbers::lookUp(QStringView format, quint64 code)
{
    const size_t number = m_formats.size();
    const QString text = format.toString();
    const auto known = m_numbers.constFind(text);
    if (known != m_numbers.constEnd())
        return *known;
    m_numbers.insert(text, number);
    if (number < m_firstCodes.size())
        m_firstCodes[number] = code;
    m_formats.push_back(format);
    return number;
}

} // namespace Nox
