#include "hosts/fetch/JsonRecord.h"

#include <nox/jobs/StreamText.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace NoxFetch {

namespace {

QString kindName(Nox::MediaType type)
{
    switch (type) {
    case Nox::MEDIA_TYPE_VIDEO:
        return QStringLiteral("video");
    case Nox::MEDIA_TYPE_AUDIO:
        return QStringLiteral("audio");
    case Nox::MEDIA_TYPE_UNKNOWN:
        break;
    }
    return QStringLiteral("unknown");
}

QJsonObject streamObject(const Nox::MediaProfile &stream, Nox::Conversion::Kind conversion)
{
    QJsonObject object{
        {QStringLiteral("code"), stream.getName()},
        {QStringLiteral("kind"), kindName(stream.getMediaType())},
        {QStringLiteral("container"), stream.getFormat()},
        {QStringLiteral("quality"), Nox::StreamText::label(stream)},
        {QStringLiteral("dash"), stream.isDash()},
        {QStringLiteral("3d"), stream.is3D()},
        {QStringLiteral("mustBeConverted"), conversion != Nox::Conversion::None},
        {QStringLiteral("url"), stream.getUrl()},
    };
    if (stream.getVResolution().isValid()) {
        object.insert(QStringLiteral("width"), stream.getVResolution().width());
        object.insert(QStringLiteral("height"), stream.getVResolution().height());
    }
    if (stream.getABitRate() > 0)
        object.insert(QStringLiteral("audioBitRate"), stream.getABitRate());
    if (stream.getSize() > 0)
        object.insert(QStringLiteral("size"), stream.getSize());
    return object;
}

QJsonObject choiceObject(const Nox::StreamChoice &streams, const Nox::StreamPreference &preference)
{
    const Nox::MediaProfile best = preference.pick(streams);
    QJsonObject object{{QStringLiteral("format"), best.getName()}};
    if (const Nox::MediaProfile audio = streams.audioFor(best); audio.isValid())
        object.insert(QStringLiteral("audio"), audio.getName());
    return object;
}

} // namespace

QString jsonRecord(const Nox::WebMediaInfo &page, const Nox::StreamChoice &streams,
                   const Nox::StreamPreference &preference)
{
    QJsonArray array;
    const QList<Nox::MediaProfile> all = streams.all();
    for (const Nox::MediaProfile &stream : all)
        array.append(streamObject(stream, streams.conversion(stream)));
    const QJsonObject record{
        {QStringLiteral("url"), page.getUrl()},
        {QStringLiteral("title"), page.getTitle()},
        {QStringLiteral("fileName"), page.getFileName()},
        {QStringLiteral("duration"), page.getDuration()},
        {QStringLiteral("thumbnail"), page.getThumbnailUrl()},
        {QStringLiteral("streams"), array},
        {QStringLiteral("choice"), choiceObject(streams, preference)},
    };
    return QString::fromUtf8(QJsonDocument(record).toJson(QJsonDocument::Indented)).trimmed();
}

} // namespace NoxFetch
