#pragma once

#include "hosts/fetch/Options.h"

#include <nox/jobs/StreamChoice.h>
#include <nox/model/MediaProfile.h>

#include <QString>

#include <optional>

namespace NoxFetch {

/** Which stream of the page is to be downloaded, or why the user's wish cannot be met. */
struct StreamRequest {
    Nox::MediaProfile stream; ///< Its preferred audio code set when it is to be joined.
    QString errorString;      ///< Why there is no stream, for a person; empty when there is one.

    qint64 duration = 0; ///< Of the page, in seconds; 0 when unknown.

    /** What joining converts; None also where the page was not asked. */
    Nox::Conversion::Kind conversion = Nox::Conversion::None;

    /**
     * What @p options ask for when they name both streams and the file, so that nothing has to be looked up
     * on the page first; nothing when they leave something open. The codes are taken at their word.
     */
    static std::optional<StreamRequest> withoutPage(const Options &options);

    /** Picks what @p options ask for from @p streams. */
    static StreamRequest choose(const Options &options, const Nox::StreamChoice &streams);

    /** Whether two streams are to be joined. */
    bool needsJoining() const;

    /** The request in words, such as "stream 137 (video only, MP4, 720P) with audio 140". */
    QString text() const;
};

} // namespace NoxFetch
