#pragma once

#include <nox/Export.h>
#include <nox/model/MediaProfile.h>

#include <QList>
#include <QString>

/**
 * @file
 * Operations on a list of profiles, offered to the host; the library itself calls none of them. All
 * take linear time.
 */

/**
 * Thins out neighbouring video streams of one picture size, 3D flag and format, preferring streams
 * that carry their own sound over DASH ones.
 *
 * Only neighbours are compared, so sort first (Nox::WebMediaInfo::sortProfileDesc()). The last entry
 * of the list always stays: a run of equal streams at the end of the list keeps two entries. Streams
 * labelled ">1080p" without a known width are left alone.
 */
NOX_EXPORT void MediaListRemoveDuplicatedResolutions(QList<Nox::MediaProfile> &list);

/** Removes audio streams and streams without a format code; the others keep their order. */
NOX_EXPORT void MediaListRemoveAudio(QList<Nox::MediaProfile> &list);

/**
 * Finds a stream by its tool format code.
 * @return a copy of the first profile whose name is exactly @p ydCode, or an invalid profile with an
 *         empty name
 */
NOX_EXPORT Nox::MediaProfile MediaListGetStreamByYdCode(const QList<Nox::MediaProfile> &list, const QString &ydCode);
