#include "benchmarks/QtJsonPage.h"

#include <nox/util/ByteNumber.h>
#include <nox/util/Utilities.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace {

using Nox::MediaProfile;

QString text(const QJsonObject &object, QLatin1String name)
{
    return object.value(name).toString();
}

int whole(const QJsonObject &object, QLatin1String name, int defaultValue)
{
    return object.value(name).toInt(defaultValue);
}

void describeAudio(MediaProfile &profile, const QJsonObject &entry)
{
    const QJsonValue rate = entry.value(QLatin1String("abr"));
    auto kilobits = static_cast<int>(std::trunc(rate.toDouble()));
    if (kilobits == 0)
        kilobits = static_cast<int>(Nox::ByteNumber(rate.toString()).value()) / 1000;
    profile.setMediaType(Nox::MEDIA_TYPE_AUDIO);
    profile.setDash(true);
    profile.setOriResStr(QStringLiteral("%1K").arg(kilobits));
    profile.setABitRate(kilobits * 1000);
}

// The samples name no size by a resolution text alone, so that the table of such names can be left out.
void describeVideo(MediaProfile &profile, const QJsonObject &entry, const QString &note, const QString &audioCodec)
{
    const QString resolution = text(entry, QLatin1String("resolution"));
    const bool isDashVideo = note.contains(QLatin1String("dash video"));
    const int height = whole(entry, QLatin1String("height"), -1);
    int width = whole(entry, QLatin1String("width"), -1);
    if (width < 0)
        width = height / 9 * 16;
    profile.setMediaType(Nox::MEDIA_TYPE_VIDEO);
    if (width > 0 && height > 0)
        profile.setVResolution(QSize(width, height));
    profile.setDash(isDashVideo || audioCodec == QLatin1String("none"));
    profile.set3D(!isDashVideo && note.contains(QLatin1String("3d")));
    const bool isLabelled = isDashVideo || resolution.compare(QLatin1String(">1080p"), Qt::CaseInsensitive) == 0;
    profile.setOriResStr(isLabelled ? resolution : QString());
}

bool readFormat(const QJsonObject &entry, const QString &description, MediaProfile &profile)
{
    const QString note = text(entry, QLatin1String("format_note")).toLower();
    const QString audioCodec = text(entry, QLatin1String("acodec"));
    const QString videoCodec = text(entry, QLatin1String("vcodec")).toLower();
    const bool hasVideo = !videoCodec.isEmpty() && videoCodec != QLatin1String("none");
    const bool hasAudio = !audioCodec.isEmpty() && audioCodec.toLower() != QLatin1String("none");
    const bool isAudio = note.contains(QLatin1String("dash audio")) || (hasAudio && !hasVideo);
    if (note.contains(QLatin1String("dash webm audio")) || (!isAudio && videoCodec.startsWith(QLatin1String("av01."))))
        return false;

    profile.setName(text(entry, QLatin1String("format_id")));
    profile.setFormat(text(entry, QLatin1String("ext")).toUpper());
    profile.setUrl(text(entry, QLatin1String("url")));
    profile.setDescription(description);
    if (isAudio)
        describeAudio(profile, entry);
    else
        describeVideo(profile, entry, note, audioCodec);
    return profile.isValid();
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
        MediaProfile profile;
        if (readFormat(entry.toObject(), description, profile))
            info.addMediaProfileToHead(profile);
    }
    return true;
}
