#include "tests/support/SignalLog.h"

using namespace Nox;

SignalLog::SignalLog(WebMediaDownloader *downloader)
{
    QObject::connect(downloader, &WebMediaDownloader::started, &m_context, [this] { add(QStringLiteral("started")); });
    QObject::connect(downloader, &WebMediaDownloader::progress, &m_context,
                     [this](qint64 total, qint64 finish, qint64 speed) {
                         add(QStringLiteral("progress(%1,%2,%3)").arg(total).arg(finish).arg(speed));
                     });
    QObject::connect(downloader, &WebMediaDownloader::error, &m_context,
                     [this](qint32 code) { add(QStringLiteral("error(%1)").arg(code)); });
    QObject::connect(downloader, &WebMediaDownloader::finished, &m_context,
                     [this] { add(QStringLiteral("finished")); });
}

SignalLog::SignalLog(WebMediaInfoExtractor *extractor)
{
    QObject::connect(extractor, &WebMediaInfoExtractor::finished, &m_context,
                     [this](const WebMediaInfo &info) { add(recordText(info)); });
    QObject::connect(extractor, &WebMediaInfoExtractor::error, &m_context,
                     [this](qint32 code) { add(QStringLiteral("error(%1)").arg(code)); });
}

QString SignalLog::text() const
{
    return m_notifications.join(QLatin1Char(' '));
}

QString SignalLog::recordText(const WebMediaInfo &info)
{
    QStringList names;
    for (const MediaProfile &profile : info.getMediaProfileList())
        names.append(profile.getName());
    return QStringLiteral("finished(") + info.getTitle() + QLatin1Char('|') + names.join(QLatin1Char(','))
        + QLatin1Char('|') + info.errorDetail().trimmed() + QLatin1Char(')');
}

void SignalLog::add(const QString &notification)
{
    m_notifications.append(notification);
}
