#pragma once

#include <nox/Export.h>
#include <nox/model/MediaProfile.h>

#include <QList>
#include <QString>

/**
 * @file
 * Operations on a list of profiles for the host. The library itself does not use them. All take linear time.
 */

/**
 * Of neighbouring video streams with the same picture size, 3D flag and format, keeps one. Streams with their own sound
 * are preferred to DASH streams.
 *
 * Sort the list first (Nox::WebMediaInfo::sortProfileDesc()), because only neighbours are compared. The last entry of
 * the list always stays, so that of equal streams at the end two entries stay. Streams labelled ">1080p" without a
 * known width are not changed.
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
