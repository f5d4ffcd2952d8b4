#pragma once

#include <nox/jobs/SoundFormat.h>
#include <nox/model/MediaProfile.h>

#include <QString>

namespace Nox {

/** A download for the queue. Without a stream, the page is read first. */
struct DownloadRequest {
    QString url;                           ///< address of the page
    MediaProfile stream;                   ///< with a preferred audio code, two streams are downloaded and joined
    QString destination;                   ///< absolute path of the file to create
    qint64 duration = 0;                   ///< of the page in seconds; 0 if unknown
    SoundFormat sound = SoundFormat::AsIs; ///< format of the file if the stream is audio
};

} // namespace Nox
