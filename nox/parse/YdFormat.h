#pragma once

#include <nox/model/MediaProfile.h>
#include <nox/parse/FormatEntry.h>

#include <optional>

namespace Nox {

/** One entry of the tool's "formats": decides what kind of stream it is and describes it. */
namespace YdFormat {

/**
 * The profile of one entry.
 * @param entry what the tool says of the stream
 * @param description the page's description, stored in the profile
 * @return a valid profile, or none for an entry that the library does not offer
 */
std::optional<MediaProfile> toProfile(const FormatEntry &entry, const QString &description);

} // namespace YdFormat

} // namespace Nox
