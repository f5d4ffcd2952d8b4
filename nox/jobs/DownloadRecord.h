#pragma once

#include <nox/jobs/SoundFormat.h>
#include <nox/model/MediaProfile.h>

#include <QJsonObject>
#include <QString>

namespace Nox {

/** What a download is to do, in the form that is stored. A value. */
struct DownloadRecord {
    QString url;
    MediaProfile stream; ///< Of it, what a download and StreamText need.
    QString destination; ///< Absolute path.
    qint64 duration = 0; ///< In seconds.
    SoundFormat sound = SoundFormat::AsIs;

    /** Reads @p object; texts and numbers of another kind count as missing. */
    static DownloadRecord fromJson(const QJsonObject &object);

    QJsonObject toJson() const; ///< With a version.

    /** Whether url, stream and destination are there. Not whether they make sense. */
    bool isComplete() const;

    /** Whether @p other fetches the same streams of the same page. */
    bool hasSameStreams(const DownloadRecord &other) const;
};

} // namespace Nox
