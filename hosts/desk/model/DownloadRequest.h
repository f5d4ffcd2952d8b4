#pragma once

#include <nox/model/MediaProfile.h>

#include <QString>

namespace NoxDesk {

/** All that a download needs to begin. */
struct DownloadRequest {
    QString url;
    Nox::MediaProfile stream; ///< with a preferred audio code two streams are fetched and joined
    QString destination;      ///< absolute path of the file to make
};

} // namespace NoxDesk
