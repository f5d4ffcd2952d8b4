#pragma once

#include <QString>
#include <QtGlobal>

namespace Nox {

class MediaInfo;

/** The order of pictures by size. */
namespace PictureRank {

/** Whether a quality label means "larger than 1080p". */
bool isAbove1080p(const QString &label);

/**
 * The number that pictures are ordered by: the area in pixels, in 32 bits. A stream that the tool labels larger than
 * 1080p without a size comes just above 1920 × 1080.
 */
qint64 sizeKey(const MediaInfo &info);

} // namespace PictureRank

} // namespace Nox
