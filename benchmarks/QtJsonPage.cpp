#include "benchmarks/QtJsonPage.h"

#include <nox/parse/YdFormat.h>
#include <nox/util/Utilities.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

using Nox::FormatEntry;

QString text(const QJsonObject &object, QLatin1String name)
{
    return object.value(name).toString();
}

int whole(const QJsonObject &object, QLatin1String name, int defaultValue)
{
    return object.value(name).toInt(defaultValue);
}

FormatEntry formatEntry(const QJsonObject &object)
{
    FormatEntry entry;
    entry.note = text(object, QLatin1String("format_note"));
    entry.audioCodec = text(object, QLatin1String("acodec"));
    entry.videoCodec = text(object, QLatin1String("vcodec"));
    entry.code = text(object, QLatin1String("format_id"));
    entry.extension = text(object, QLatin1String("ext"));
    entry.url = text(object, QLatin1String("url"));
    entry.resolution = text(object, QLatin1String("resolution"));
    entry.height = whole(object, QLatin1String("height"), -1);
    entry.width = whole(object, QLatin1String("width"), -1);
    const QJsonValue rate = object.value(QLatin1String("abr"));
    entry.audioRate = rate.toDouble();
    entry.audioRateText = rate.toString();
    return entry;
}

} // namespace

bool QtJsonPage::parse(const QByteArray &document, Nox::WebMediaInfo &info)
{
    const QJsonDocument parsed = QJsonDocument::fromJson(document);
    if (!parsed.isObject())
        return false;
    const QJsonObject page = parsed.object();
    const QString title = text(page, QLatin1String("title"));
    info.setTitle(title);
    info.setFileName(Nox::Utilities::filterInvalidCharsOfFileName(title, QStringLiteral(" ")));
    info.setDuration(whole(page, QLatin1String("duration"), 0));
    QString thumbnail = text(page, QLatin1String("thumbnail"));
    info.setThumbnailUrl(thumbnail.replace(QLatin1String("maxresdefault"), QLatin1String("mqdefault")));

    const QString description = text(page, QLatin1String("description"));
    const QJsonArray formats = page.value(QLatin1String("formats")).toArray();
    for (const QJsonValue entry : formats) {
        if (const auto profile = Nox::YdFormat::toProfile(formatEntry(entry.toObject()), description))
            info.addMediaProfileToHead(*profile);
    }
    return true;
}
