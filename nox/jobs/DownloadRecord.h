#pragma once

#include <nox/jobs/SoundFormat.h>
#include <nox/model/MediaProfile.h>

#include <QJsonObject>
#include <QString>

namespace Nox {

/** The stored description of a download. A value. */
struct DownloadRecord {
    QString url;
    MediaProfile stream; ///< Only the fields that a download and StreamText need.
    QString destination; ///< Absolute path.
    qint64 duration = 0; ///< In seconds.
    SoundFormat sound = SoundFormat::AsIs;

    /** Reads @p object. A value of a wrong type counts as missing. */
    static DownloadRecord fromJson(const QJsonObject &object);

    QJsonObject toJson() const; ///< With a version.

    /** Whether url, stream and destination are present. They are not checked further. */
    bool isComplete() const;

    /** Whether @p other downloads the same streams of the same page. */
    bool hasSameStreams(const DownloadRecord &other) const;

    /** A text that only downloads of the same streams into the same file share. Such downloads share their parts. */
    QString key() const;
};

} // namespace Nox
