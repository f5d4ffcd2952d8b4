#pragma once

#include "hosts/fetch/Options.h"

#include <nox/jobs/StreamChoice.h>
#include <nox/model/MediaProfile.h>

#include <QString>

#include <optional>

namespace NoxFetch {

/** The stream to download, or the error message if the options do not fit the page. */
struct StreamRequest {
    Nox::MediaProfile stream; ///< With a preferred audio code if two streams are to be joined.
    QString errorString;      ///< The error message; empty on success.

    qint64 duration = 0; ///< Of the page in seconds; 0 if unknown.

    /** What the merge will convert; also None if the page was not read. */
    Nox::Conversion::Kind conversion = Nox::Conversion::None;

    /**
     * The request if @p options name both streams and the file; else no value. Then the page need not be read, which
     * saves one run of the tool. The codes are not checked.
     */
    static std::optional<StreamRequest> withoutPage(const Options &options);

    /** Selects from @p streams by @p options. */
    static StreamRequest choose(const Options &options, const Nox::StreamChoice &streams);

    /** Whether two streams are to be joined. */
    bool needsJoining() const;

    /** A description of the request, such as "stream 137 (video only, MP4, 720P) with audio 140". */
    QString text() const;
};

} // namespace NoxFetch
