#include "tests/jobs/SampleStreams.h"

#include <QStringList>

Nox::MediaProfile SampleStreams::stream(const QString &words)
{
    const QStringList parts = words.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    Nox::MediaProfile result;
    result.setName(parts.value(0));
    result.setFormat(parts.value(1));
    result.setMediaType(Nox::MEDIA_TYPE_VIDEO);
    for (const QString &part : parts.mid(2)) {
        if (part == QLatin1String("dash")) {
            result.setDash(true);
        } else if (part == QLatin1String("3d")) {
            result.set3D(true);
        } else if (part.startsWith(QLatin1Char('+'))) {
            result.setPreferredDashAudioYdCode(part.mid(1));
        } else if (part.endsWith(QLatin1Char('K'))) {
            result.setMediaType(Nox::MEDIA_TYPE_AUDIO);
            result.setDash(true);
            result.setOriResStr(part);
            result.setABitRate(part.chopped(1).toInt() * 1000);
        } else if (part.contains(QLatin1Char('p'))) {
            result.setOriResStr(part);
        } else {
            const QStringList sides = part.split(QLatin1Char('x'));
            result.setVResolution(QSize(sides.value(0).toInt(), sides.value(1).toInt()));
        }
    }
    return result;
}

Nox::WebMediaInfo SampleStreams::page(const QString &streams, const QString &fileName)
{
    Nox::WebMediaInfo result(QStringLiteral("http://x/"));
    result.setTitle(fileName);
    result.setFileName(fileName);
    for (const QString &words : streams.split(QLatin1Char(','), Qt::SkipEmptyParts))
        result.addMediaProfile(stream(words));
    return result;
}
