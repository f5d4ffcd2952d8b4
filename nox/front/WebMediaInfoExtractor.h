#pragma once

#include <nox/Export.h>
#include <nox/model/WebMediaInfo.h>

#include <QObject>
#include <QString>

namespace Nox {

/**
 * Obtains the media information of a web page. From WebMediaDownloaderFactory::createExtractor();
 * the host owns it and may delete it at any time, also in answer to a notification. Deleting stops a
 * running extraction.
 *
 * Belongs to one thread, whose event loop delivers the notifications.
 */
class NOX_EXPORT WebMediaInfoExtractor : public QObject
{
    Q_OBJECT

public:
    /**
     * Extracts and waits, without a time limit, blocking the thread.
     * @param url address of the page; pass only one that Utilities::isValidUrl() accepts
     * @return the record, filled as far as the tool's output allowed
     *
     * Emits finished() once before it returns, never error().
     */
    virtual WebMediaInfo getMediaInfo(QString url) = 0;

    /**
     * Starts an extraction and returns at once; finished() and error() tell the outcome. A request
     * that still runs is replaced: it is stopped and reports nothing more.
     * @param url address of the page; pass only one that Utilities::isValidUrl() accepts
     */
    virtual void getMediaInfoBySignal(QString url) = 0;

    /**
     * Stops a running extraction; emits nothing itself and waits for nothing. What the stopped process
     * reports still arrives as finished() and error().
     */
    virtual void cancel() = 0;

    /**
     * The tool's own words: the end of what it has printed on standard error since the last
     * getMediaInfoBySignal(), 4096 bytes at most. Warnings are among it. Empty when it has printed
     * nothing, after getMediaInfo(), which does not read them, and in a class of the host's own.
     */
    QString errorDetail() const;

Q_SIGNALS:
    /**
     * The record as filled so far. Comes alone on success and before an error(), except before the
     * one that stands for a non-zero exit code.
     */
    void finished(Nox::WebMediaInfo mediaInfo);

    /**
     * The extraction failed.
     * @param errorCode -1 for an error of the tool (its words are in WebMediaInfo::errorDetail()),
     *        or a QProcess::ProcessError number
     */
    void error(qint32 errorCode);
};

} // namespace Nox
