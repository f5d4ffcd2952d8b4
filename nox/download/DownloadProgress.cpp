#include <nox/download/DownloadProgress.h>

#include <nox/util/Saturation.h>

namespace Nox {

DownloadProgress::DownloadProgress(int itemCount, qint64 expectedTotal)
    : m_itemCount(itemCount)
    , m_totalSize(expectedTotal)
{
}

std::optional<DownloadProgress::Figures> DownloadProgress::update(int itemIndex, const Figures &item)
{
    if (item.total <= 0)
        return std::nullopt;
    if (m_itemCount < 2)
        return item;
    return combine(itemIndex, item);
}

std::optional<DownloadProgress::Figures> DownloadProgress::combine(int itemIndex, Figures figures)
{
    if (itemIndex == 1) {
        m_item1Size = figures.total;
        // Until the audio's size is known, it is estimated as a fifth of the video's.
        if (m_totalSize < figures.total)
            m_totalSize = Saturation::fromDouble<qint64>(static_cast<double>(figures.total) * 1.2);
    } else if (itemIndex == 2) {
        figures.finish = Saturation::sum(figures.finish, m_item1Size);
        figures.total = Saturation::sum(figures.total, m_item1Size);
        m_totalSize = qMax(m_totalSize, figures.total);
    }
    // The count must not reach the total before the merge.
    if (m_totalSize <= figures.finish)
        m_totalSize = Saturation::sum(figures.finish, 1);
    if (m_totalSize <= 0)
        return std::nullopt;

    const double ratio = static_cast<double>(figures.finish) / static_cast<double>(m_totalSize);
    if (!(ratio > m_lastRatio))
        return std::nullopt;
    m_lastRatio = ratio;
    return Figures{m_totalSize, figures.finish, figures.speed};
}

qint64 DownloadProgress::expectedTotal() const
{
    return m_totalSize;
}

} // namespace Nox
