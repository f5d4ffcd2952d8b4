#pragma once

#include <nox/jobs/SoundFormat.h>
#include <nox/model/MediaProfile.h>

#include <QString>

namespace NoxDesk {

/** All that a download needs to begin. */
struct DownloadRequest {
    QString url;
    Nox::MediaProfile stream; ///< with a preferred audio code two streams are fetched and joined
    QString destination;      ///< absolute path of the file to make
    qint64 duration = 0;      ///< of the page, in seconds; 0 when unknown
    Nox::SoundFormat sound = Nox::SoundFormat::AsIs;
};

} // namespace NoxDesk
