#pragma once

#include <nox/model/MediaProfile.h>

#include <optional>

namespace Json {
class Value;
}

namespace Nox {

/** One entry of the tool's "formats": decides what kind of stream it is and describes it. */
namespace YdFormat {

/**
 * The profile of one entry.
 * @param entry the entry; one that is no object gives none
 * @param description the page's description, stored in the profile
 * @return a valid profile, or none for an entry that the library does not offer
 */
std::optional<MediaProfile> toProfile(const Json::Value &entry, const QString &description);

} // namespace YdFormat

} // namespace Nox
