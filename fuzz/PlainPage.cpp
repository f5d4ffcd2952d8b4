#include "fuzz/PlainPage.h"

#include <nox/parse/JsonHelper.h>
#include <nox/parse/YdFormat.h>
#include <nox/util/Utilities.h>

#include <json/reader.h>
#include <json/value.h>

#include <exception>

namespace {

using Nox::FormatEntry;
using Nox::JsonHelper;
using Nox::Utilities;

QString text(const Json::Value &object, const char *name)
{
    return JsonHelper::getString(object, QString::fromLatin1(name), QString());
}

int integer(const Json::Value &object, const char *name, int defaultValue)
{
    return JsonHelper::getInt(object, QString::fromLatin1(name), defaultValue);
}

FormatEntry formatEntry(const Json::Value &object)
{
    FormatEntry entry;
    entry.note = text(object, "format_note");
    entry.audioCodec = text(object, "acodec");
    entry.videoCodec = text(object, "vcodec");
    entry.code = text(object, "format_id");
    entry.extension = text(object, "ext");
    entry.url = text(object, "url");
    entry.resolution = text(object, "resolution");
    entry.height = integer(object, "height", -1);
    entry.width = integer(object, "width", -1);
    entry.audioRate = JsonHelper::getDouble(object, QStringLiteral("abr"), 0.0);
    entry.audioRateText = text(object, "abr");
    return entry;
}

bool read(const QString &text, Json::Value &root)
{
    const QByteArray document = Utilities::convertHttpSpecificChar2(Utilities::convertHttpSpecificChar(text)).toUtf8();
    try {
        return Json::Reader().parse(document.constData(), document.constData() + document.size(), root, false);
    } catch (const std::exception &) {
        return false;
    }
}

} // namespace

bool PlainPage::parse(const QString &text, Nox::WebMediaInfo &info)
{
    Json::Value page;
    if (!read(text, page))
        return false;
    const QString title = ::text(page, "title");
    info.setTitle(title);
    info.setFileName(Utilities::filterInvalidCharsOfFileName(title, QStringLiteral(" ")));
    info.setDuration(integer(page, "duration", 0));
    QString thumbnail = ::text(page, "thumbnail");
    info.setThumbnailUrl(thumbnail.replace(QLatin1String("maxresdefault"), QLatin1String("mqdefault")));
    if (!page.isObject() || !page["formats"].isArray())
        return true;
    for (const Json::Value &entry : page["formats"]) {
        if (const auto profile = Nox::YdFormat::toProfile(formatEntry(entry), ::text(page, "description")))
            info.addMediaProfileToHead(*profile);
    }
    return true;
}
