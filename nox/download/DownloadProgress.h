#pragma once

#include <QtGlobal>

#include <optional>

namespace Nox {

/**
 * Computes the progress of a download from the figures that the tool prints. The figures of a single item pass
 * unchanged. Those of two items become one count that only rises and stays below the expected total.
 * Sizes are in bytes, speeds in bytes per second.
 */
class DownloadProgress
{
public:
    /** The figures of one progress line, or those that the host gets. */
    struct Figures {
        qint64 total;
        qint64 finish;
        qint64 speed;
    };

    DownloadProgress() = default;

    /** For @p itemCount items; @p expectedTotal is what the profile says of their size, or 0. */
    DownloadProgress(int itemCount, qint64 expectedTotal);

    /**
     * Takes the figures that the tool printed for item @p itemIndex (1 or 2).
     * @return the figures for the host, or none when the ratio has not risen
     */
    std::optional<Figures> update(int itemIndex, const Figures &item);

    /** Expected size of all items together. */
    qint64 expectedTotal() const;

private:
    std::optional<Figures> combine(int itemIndex, Figures figures);

    int m_itemCount = 0;
    qint64 m_totalSize = 0;
    qint64 m_item1Size = 0;
    double m_lastRatio = 0.0;
};

} // namespace Nox
