#pragma once

#include <nox/jobs/SoundFormat.h>
#include <nox/model/MediaProfile.h>

#include <QString>

namespace NoxDesk {

/** Everything that a download needs to start. */
struct DownloadRequest {
    QString url;
    Nox::MediaProfile stream; ///< with a preferred audio code, two streams are downloaded and joined
    QString destination;      ///< absolute path of the file to create
    qint64 duration = 0;      ///< of the page in seconds; 0 if unknown
    Nox::SoundFormat sound = Nox::SoundFormat::AsIs;
};

} // namespace NoxDesk
