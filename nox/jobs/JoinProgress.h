#pragma once

#include <nox/jobs/TransferFigures.h>

#include <QString>

namespace Nox {

/**
 * How far ffmpeg is with joining, read from what it prints on standard error: the length of its input
 * once, and how much of it is done about twice a second. A value.
 */
class JoinProgress
{
public:
    /** @param seconds how long the page says it plays, which counts where ffmpeg tells no length; 0 when unknown */
    explicit JoinProgress(qint64 seconds = 0);

    /** Takes in what ffmpeg has printed so far, or the end of it. */
    void read(const QString &errorOutput);

    /** Whether ffmpeg has told how much is done. */
    bool isKnown() const;

    /** Time done of the whole; without the whole where nobody knows it. */
    TransferFigures figures() const;

private:
    qint64 m_expectedMs;
    qint64 m_totalMs = 0; // of ffmpeg's own words
    qint64 m_doneMs = -1;
    double m_rate = 0;
};

} // namespace Nox
