#pragma once

#include <nox/NoxWebMedia.h>

#include <QString>

/** Streams and pages for tests, from short words. */
namespace SampleStreams {

/**
 * A stream from its code, its container and more, such as "137 MP4 1920x1080 dash", "140 M4A 128K" (audio),
 * "x MP4 >1080p 3d", "x FLV" (of unknown size), "137 MP4 dash +140" (to be joined with the audio 140).
 */
Nox::MediaProfile stream(const QString &words);

/** A page with streams in the tool's order of preference, best first, commas between them. */
Nox::WebMediaInfo page(const QString &streams, const QString &fileName = {});

} // namespace SampleStreams
