#pragma once

#include "hosts/common/TransferFigures.h"

#include <QString>

namespace NoxHost {

/**
 * How far ffmpeg is with joining, read from what it prints on standard error: the length of its input
 * once, and how much of it is done about twice a second. A value.
 */
class JoinProgress
{
public:
    JoinProgress() = default;

    /** Takes in what ffmpeg has printed so far, or the end of it. */
    void read(const QString &errorOutput);

    /** Whether ffmpeg has told how much is done. */
    bool isKnown() const;

    /** Time done of the whole; without the whole where ffmpeg has not told it. */
    TransferFigures figures() const;

private:
    qint64 m_totalMs = 0;
    qint64 m_doneMs = -1;
    double m_rate = 0;
};

} // namespace NoxHost
