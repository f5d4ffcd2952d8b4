#pragma once

#include <QSize>
#include <QString>
#include <QtGlobal>

namespace Nox {

class MediaInfo;

/** How pictures compare by size. */
namespace PictureRank {

/** Whether a quality label says "larger than 1080p". */
bool isAbove1080p(const QString &label);

/**
 * The number by which a larger picture beats a smaller one: its area, in 32 bits. A stream that the
 * tool calls larger than 1080p without saying how large ranks just above 1920 × 1080.
 */
qint64 of(const MediaInfo &info);

/** The same of a picture of known size. */
qint64 ofSize(QSize size);

} // namespace PictureRank

} // namespace Nox
