#pragma once

#include <QString>

namespace Nox {

/** What the library reads of one entry of the tool's "formats". A member that is missing has its default. */
struct FormatEntry {
    QString note = QLatin1String("");
    QString audioCodec = QLatin1String("");
    QString videoCodec = QLatin1String("");
    QString code = QLatin1String("");
    QString extension = QLatin1String("");
    QString url = QLatin1String("");
    QString resolution = QLatin1String("");
    int height = -1;
    int width = -1;
    double audioRate = 0;                      // in kbit/s; exact where it is written as a whole number
    QString audioRateText = QLatin1String(""); // the rate where it is written as a text
};

} // namespace Nox
