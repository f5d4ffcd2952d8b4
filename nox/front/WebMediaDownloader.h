#pragma once

#include <nox/Export.h>
#include <nox/model/MediaProfile.h>

#include <QObject>
#include <QString>

namespace Nox {

/**
 * Downloads one stream of a web page, with its audio companion where one is named, into one file.
 * From WebMediaDownloaderFactory::createDownloader(); the host owns it and may delete it at any time,
 * also in answer to a notification. Deleting stops a running download and removes what clear()
 * removes. Make a new one for every download.
 *
 * Belongs to one thread, whose event loop delivers the notifications.
 */
class NOX_EXPORT WebMediaDownloader : public QObject
{
    Q_OBJECT

public:
    /**
     * Starts a download and returns at once. Refused, with a log record only, while one runs.
     * @param url address of the page; pass only one that Utilities::isValidUrl() accepts
     * @param profile the stream, as the extractor reported it. For a DASH profile whose preferred
     *        audio code is set, both streams are fetched and joined into an MP4 file
     * @param destFile path of the finished file; it must not exist. Temporary files stand beside it
     */
    virtual void download(QString url, MediaProfile profile, QString destFile) = 0;

    /**
     * Stops the download, which is over with that, and removes its files, a finished destination file
     * included. Emits nothing itself and waits for nothing. What the stopped process reports still arrives as error(),
     * unless a new download is started first.
     */
    virtual void cancel() = 0;

    /**
     * Removes leftover partial files; stops nothing and emits nothing. The first stream's finished file
     * stays. Files that cannot be removed stay, too.
     */
    virtual void clear() = 0;

    /**
     * The tool's and ffmpeg's own words: the end of what they have printed on standard error since the
     * last download(), 4096 bytes at most. Warnings and progress lines are among it. Empty when
     * they have printed nothing, and in a class of the host's own.
     */
    QString errorDetail() const;

Q_SIGNALS:
    /** The tool has been started for a stream; comes twice for a video with an audio companion. */
    void started();

    /**
     * How far the download is. Comes any number of times, also none. With two streams it counts over both,
     * and the last one says that all is done.
     * @param total expected size in bytes
     * @param finish bytes done
     * @param speed bytes per second
     */
    void progress(qint64 total, qint64 finish, qint64 speed);

    /**
     * The download failed.
     * @param errorCode a value of DownloadError; errorDetail() has the words that go with it
     */
    void error(qint32 errorCode);

    /** The destination file is complete. */
    void finished();
};

} // namespace Nox
