#pragma once

#include <nox/Export.h>
#include <nox/model/MediaProfile.h>

#include <QObject>
#include <QString>

namespace Nox {

/**
 * Downloads one stream of a web page into one file, together with the audio stream that the profile names, if any.
 * Made by WebMediaDownloaderFactory::createDownloader(). The host owns it and may delete it at any time, also in a slot
 * for one of its signals. Deleting stops a running download and removes what clear() removes. Make a new one for every
 * download.
 *
 * Belongs to one thread, whose event loop delivers the notifications.
 */
class NOX_EXPORT WebMediaDownloader : public QObject
{
    Q_OBJECT

public:
    /**
     * Starts a download and returns at once. While one runs, the call only writes a log record.
     * @param url address of the page; pass only one that Utilities::isValidUrl() accepts
     * @param profile the stream, as the extractor reported it. For a DASH profile whose preferred
     *        audio code is set, both streams are downloaded and joined into an MP4 file
     * @param destFile path of the finished file, which must not exist. Temporary files are in the same folder
     */
    virtual void download(QString url, MediaProfile profile, QString destFile) = 0;

    /**
     * Stops the download and removes its files, including a finished destination file. Emits nothing itself and does
     * not wait. The end of the stopped process still gives error(), unless a new download is started first.
     */
    virtual void cancel() = 0;

    /**
     * Removes partial files; stops nothing and emits nothing. The finished file of the first stream stays, and so do
     * files that cannot be removed.
     */
    virtual void clear() = 0;

    /**
     * The end of what the tool and ffmpeg have printed on standard error since the last download(), at most 4096 bytes,
     * including warnings and progress lines. Empty when they have printed nothing, and in a class that the host
     * has derived.
     */
    QString errorDetail() const;

Q_SIGNALS:
    /** The tool has been started for a stream. Emitted twice for a video that is joined with an audio stream. */
    void started();

    /**
     * How far the download is. Emitted any number of times, also never. With two streams the figures are those of both
     * together, and the last ones say that all is done.
     * @param total expected size in bytes
     * @param finish bytes done
     * @param speed bytes per second
     */
    void progress(qint64 total, qint64 finish, qint64 speed);

    /**
     * The download failed.
     * @param errorCode a value of DownloadError; errorDetail() has what the programs printed
     */
    void error(qint32 errorCode);

    /** The destination file is complete. */
    void finished();
};

} // namespace Nox
