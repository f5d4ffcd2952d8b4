#include "fuzz/PlainPage.h"

#include <nox/parse/JsonHelper.h>
#include <nox/util/ByteNumber.h>
#include <nox/util/Saturation.h>
#include <nox/util/Utilities.h>

#include <json/reader.h>
#include <json/value.h>

#include <QMap>

#include <exception>

namespace {

using Nox::JsonHelper;
using Nox::MediaProfile;
using Nox::Utilities;
using Nox::Saturation::fromDouble;
using Nox::Saturation::product;

QString text(const Json::Value &object, const char *name)
{
    return JsonHelper::getString(object, QString::fromLatin1(name), QString());
}

int integer(const Json::Value &object, const char *name, int defaultValue)
{
    return JsonHelper::getInt(object, QString::fromLatin1(name), defaultValue);
}

bool hasSound(const QString &codec)
{
    return !codec.isEmpty() && codec.toLower() != QLatin1String("none");
}

void describeAudio(MediaProfile &profile, const Json::Value &entry)
{
    int rate = integer(entry, "abr", 0);
    if (rate == 0)
        rate = fromDouble<int>(JsonHelper::getDouble(entry, QStringLiteral("abr"), 0.0));
    if (rate == 0)
        rate = static_cast<qint32>(Nox::ByteNumber(text(entry, "abr")).value() & 0xffffffff) / 1000;
    profile.setOriResStr(QString::number(rate) + QLatin1Char('K'));
    profile.setABitRate(product(rate, 1000));
    profile.setMediaType(Nox::MEDIA_TYPE_AUDIO);
    profile.setDash(true);
}

void describeVideo(MediaProfile &profile, const Json::Value &entry, const QString &note)
{
    static const QMap<QString, QSize> sizes{
        {QStringLiteral("1080p"), QSize(1920, 1080)}, {QStringLiteral("720p"), QSize(1280, 720)},
        {QStringLiteral("480p"), QSize(720, 480)},    {QStringLiteral("360p"), QSize(640, 360)},
        {QStringLiteral("240p"), QSize(320, 240)},    {QStringLiteral("144p"), QSize(176, 144)}};
    const QString resolution = text(entry, "resolution");
    QSize size(integer(entry, "width", -1), integer(entry, "height", -1));
    if (size.width() < 0)
        size.setWidth(product(size.height() / 9, 16));
    size = sizes.value(resolution.toLower(), size);
    if (size.width() > 0 && size.height() > 0)
        profile.setVResolution(size);

    const bool isDashVideo = note.contains(QLatin1String("dash video"));
    if (isDashVideo || resolution.toLower() == QLatin1String(">1080p"))
        profile.setOriResStr(resolution);
    profile.setMediaType(Nox::MEDIA_TYPE_VIDEO);
    profile.setDash(isDashVideo || text(entry, "acodec") == QLatin1String("none"));
    profile.set3D(!isDashVideo && note.contains(QLatin1String("3d")));
}

void addProfile(const Json::Value &entry, const QString &description, Nox::WebMediaInfo &info)
{
    const QString note = text(entry, "format_note").toLower();
    const QString videoCodec = text(entry, "vcodec");
    const bool isAudio =
        note.contains(QLatin1String("dash audio")) || (hasSound(text(entry, "acodec")) && !hasSound(videoCodec));
    MediaProfile profile;
    profile.setName(text(entry, "format_id"));
    profile.setFormat(text(entry, "ext").toUpper());
    profile.setUrl(text(entry, "url"));
    profile.setDescription(description);
    if (isAudio)
        describeAudio(profile, entry);
    else
        describeVideo(profile, entry, note);
    const bool isOffered = !note.contains(QLatin1String("dash webm audio"))
        && (isAudio || !videoCodec.toLower().startsWith(QLatin1String("av01.")));
    if (isOffered && profile.isValid())
        info.addMediaProfileToHead(profile);
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
    for (const Json::Value &entry : page["formats"])
        addProfile(entry, ::text(page, "description"), info);
    return true;
}
