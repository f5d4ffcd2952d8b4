#pragma once

#include <QtGlobal>

#include <optional>

namespace Nox {

/**
 * Folds the figures of a download's tool runs into what the host sees. A single item's figures pass
 * unchanged; those of two become one rising count over one expected total that the count stays below.
 * All figures are in bytes, speeds in bytes per second.
 */
class DownloadProgress
{
public:
    /** Figures of the tool, or for the host. */
    struct Figures {
        qint64 total;
        qint64 finish;
        qint64 speed;
    };

    DownloadProgress() = default;

    /** For @p itemCount items of which about @p expectedTotal bytes are known. */
    DownloadProgress(int itemCount, qint64 expectedTotal);

    /**
     * Takes the figures that the tool printed for item @p itemIndex (1 or 2).
     * @return figures for the host, if there is something to tell
     */
    std::optional<Figures> fold(int itemIndex, const Figures &item);

    /** What all items together are expected to hold. */
    qint64 expectedTotal() const;

private:
    std::optional<Figures> foldTwo(int itemIndex, Figures figures);

    int m_itemCount = 0;
    qint64 m_totalSize = 0;
    qint64 m_item1Size = 0;
    double m_lastRatio = 0.0;
};

} // namespace Nox
