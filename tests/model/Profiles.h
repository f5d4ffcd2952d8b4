#pragma once

#include "tests/util/Rows.h"

#include <nox/model/MediaProfile.h>

#include <QList>

inline QStringList items(const QString &text)
{
    return text.split(QLatin1Char(' '));
}

/** A profile from "name:kind:WxH:format:label", where kind holds v, a or u, d for DASH, 3 for 3D. */
inline Nox::MediaProfile profile(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char(':'));
    const QString kind = parts.value(1);
    const QStringList sides = parts.value(2).split(QLatin1Char('x'));
    Nox::MediaProfile result;
    result.setName(parts.value(0));
    const bool video = kind.startsWith(QLatin1Char('v'));
    result.setMediaType(video               ? Nox::MEDIA_TYPE_VIDEO
                            : kind == "u"_s ? Nox::MEDIA_TYPE_UNKNOWN
                                            : Nox::MEDIA_TYPE_AUDIO);
    result.setDash(kind.contains(QLatin1Char('d')));
    result.set3D(kind.contains(QLatin1Char('3')));
    result.setVResolution(QSize(sides.value(0).toInt(), sides.value(1).toInt()));
    result.setFormat(parts.value(3));
    result.setOriResStr(parts.value(4));
    return result;
}

inline QList<Nox::MediaProfile> profiles(const QString &text)
{
    QList<Nox::MediaProfile> result;
    for (const QString &entry : text.split(QLatin1Char(' '), Qt::SkipEmptyParts))
        result.append(profile(entry));
    return result;
}

inline QString names(const QList<Nox::MediaProfile> &list)
{
    QStringList result;
    for (const Nox::MediaProfile &entry : list)
        result.append(entry.getName());
    return result.join(QLatin1Char(' '));
}
