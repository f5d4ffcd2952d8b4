#pragma once

#include <QString>
#include <QtGlobal>

namespace Nox {

class MediaInfo;

/** How pictures compare by size. */
namespace PictureRank {

/** Whether a quality label says "larger than 1080p". */
bool isAbove1080p(const QString &label);

/**
 * The number by which pictures are ordered: the area, in 32 bits. A stream that the tool calls larger
 * than 1080p without saying how large comes just above 1920 × 1080.
 */
qint64 of(const MediaInfo &info);

} // namespace PictureRank

} // namespace Nox
