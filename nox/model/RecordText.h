#pragma once

#include <QLatin1String>
#include <QString>

namespace Nox {

class MediaInfo;

/** The common part of the text forms of the records. */
namespace RecordText {

/** The template's part for a stream's data, from kind to sample rate, with markers 3 to 14. */
inline const QLatin1String streamTemplate("type = %3, format = %4, resolution = %5x%6, aspect = %7x%8, vCodec = %9, "
                                          "vBitRate = %10, frameRate = %11, aCodec = %12, aBitRate = %13, "
                                          "aSampleRate = %14");

/** @p text with markers 3 to 14 filled from @p info, one after the other. */
QString withStreamData(const QString &text, const MediaInfo &info);

} // namespace RecordText

} // namespace Nox
