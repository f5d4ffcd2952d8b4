#include "tests/support/SignalLog.h"

using namespace Nox;

SignalLog::SignalLog(WebMediaDownloader *downloader)
{
    connect(downloader, &WebMediaDownloader::started, this, [this] { m_notifications += QStringLiteral("started"); });
    connect(downloader, &WebMediaDownloader::progress, this, [this](qint64 total, qint64 finish, qint64 speed) {
        m_notifications += QStringLiteral("progress(%1,%2,%3)").arg(total).arg(finish).arg(speed);
    });
    connect(downloader, &WebMediaDownloader::error, this,
            [this](qint32 code) { m_notifications += QStringLiteral("error(%1)").arg(code); });
    connect(downloader, &WebMediaDownloader::finished, this, [this] { m_notifications += QStringLiteral("finished"); });
}

SignalLog::SignalLog(WebMediaInfoExtractor *extractor)
{
    connect(extractor, &WebMediaInfoExtractor::finished, this,
            [this](const WebMediaInfo &info) { m_notifications += recordText(info); });
    connect(extractor, &WebMediaInfoExtractor::error, this,
            [this](qint32 code) { m_notifications += QStringLiteral("error(%1)").arg(code); });
}

QString SignalLog::recordText(const WebMediaInfo &info)
{
    QStringList names;
    for (const MediaProfile &profile : info.getMediaProfileList())
        names.append(profile.getName());
    return QStringLiteral("finished(%1|%2|%3)")
        .arg(info.getTitle(), names.join(QLatin1Char(',')), info.errorDetail().trimmed());
}
