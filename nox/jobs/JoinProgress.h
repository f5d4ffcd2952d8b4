#pragma once

#include <nox/jobs/TransferFigures.h>

#include <QString>

namespace Nox {

/**
 * The progress of a merge, read from ffmpeg's standard error. ffmpeg prints the length of its inputs once, and the time
 * that it has reached about twice a second. A value.
 */
class JoinProgress
{
public:
    /** @param seconds duration as the page states it, used if ffmpeg prints none; 0 if unknown */
    explicit JoinProgress(qint64 seconds = 0);

    /** Reads ffmpeg's output so far, or the last part of it. */
    void read(const QString &errorOutput);

    /** Whether ffmpeg has printed a time so far. */
    bool isKnown() const;

    /** The time reached and the total time; the total is 0 if it is unknown. */
    TransferFigures figures() const;

private:
    qint64 m_expectedMs;
    qint64 m_totalMs = 0; // as ffmpeg prints it
    qint64 m_doneMs = -1;
    double m_rate = 0;
};

} // namespace Nox
