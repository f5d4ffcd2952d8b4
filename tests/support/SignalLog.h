#pragma once

#include <nox/front/WebMediaDownloader.h>
#include <nox/front/WebMediaInfoExtractor.h>

#include <QObject>
#include <QStringList>

/**
 * The notifications of one worker as texts, in the order in which they came: started,
 * progress(total,finish,speed), error(code), finished; an extractor's finished shows the record as
 * finished(title|profile names|error detail).
 */
class SignalLog : public QObject
{
public:
    explicit SignalLog(Nox::WebMediaDownloader *downloader);
    explicit SignalLog(Nox::WebMediaInfoExtractor *extractor);

    /** All notifications so far, one blank between them. */
    QString text() const { return m_notifications.join(QLatin1Char(' ')); }

    static QString recordText(const Nox::WebMediaInfo &info);

private:
    QStringList m_notifications;
};
