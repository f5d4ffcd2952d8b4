#pragma once

#include <nox/Export.h>
#include <nox/model/WebMediaInfo.h>

#include <QObject>
#include <QString>

namespace Nox {

/**
 * Reads the media information of a web page. Made by WebMediaDownloaderFactory::createExtractor(). The host owns it and
 * may delete it at any time, also in a slot for one of its signals. Deleting stops a running extraction.
 *
 * Belongs to one thread, whose event loop delivers the notifications.
 */
class NOX_EXPORT WebMediaInfoExtractor : public QObject
{
    Q_OBJECT

public:
    /**
     * Extracts and waits for the end, without a time limit. Blocks the thread.
     * @param url address of the page; pass only one that Utilities::isValidUrl() accepts
     * @return the record, filled as far as the tool's output allowed
     *
     * Emits finished() once before it returns, never error().
     */
    virtual WebMediaInfo getMediaInfo(QString url) = 0;

    /**
     * Starts an extraction and returns at once; finished() and error() report the result. A request
     * that still runs is stopped and reports nothing more.
     * @param url address of the page; pass only one that Utilities::isValidUrl() accepts
     */
    virtual void getMediaInfoBySignal(QString url) = 0;

    /**
     * Stops a running extraction. Emits nothing itself and does not wait. The end of the stopped process still gives
     * finished() and error().
     */
    virtual void cancel() = 0;

    /**
     * The end of what the tool has printed on standard error since the last getMediaInfoBySignal(), at most 4096 bytes,
     * including warnings. Empty when it has printed nothing, after getMediaInfo(), which does not read it, and in a
     * class that the host has derived.
     */
    QString errorDetail() const;

Q_SIGNALS:
    /**
     * The record as filled so far. On success this is the only signal. A failure emits finished(), then error(); a
     * non-zero exit code emits only error(-1).
     */
    void finished(Nox::WebMediaInfo mediaInfo);

    /**
     * The extraction failed.
     * @param errorCode -1 for an error of the tool (its message is in WebMediaInfo::errorDetail()),
     *        or a QProcess::ProcessError number
     */
    void error(qint32 errorCode);
};

} // namespace Nox
