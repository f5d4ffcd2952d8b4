#pragma once

#include "hosts/common/TransferFigures.h"

#include <QList>
#include <QPair>

namespace NoxHost {

/** Amount and speed of a file that is watched while it grows, for want of better figures. A value. */
class GrowthMeter
{
public:
    GrowthMeter() = default;

    /**
     * Takes in a measurement.
     * @param bytes size of the file
     * @param now time in milliseconds, rising from call to call
     */
    void add(qint64 bytes, qint64 now);

    /** The size as the amount done, of an unknown whole, and the speed of the last seconds. */
    TransferFigures figures() const;

private:
    QList<QPair<qint64, qint64>> m_samples; // bytes, milliseconds; the newest last
};

} // namespace NoxHost
