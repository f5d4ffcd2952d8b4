#pragma once

#include <nox/model/MediaProfile.h>

namespace Nox {

/**
 * References to the fields of a record, for code that walks over long lists. The public getters return copies, each of
 * which costs two atomic operations.
 */
class RecordFields
{
public:
    static MediaType mediaType(const MediaInfo &info) { return info.m_mediaType; }
    static const QString &format(const MediaInfo &info) { return info.m_format; }
    static QSize resolution(const MediaInfo &info) { return info.m_vResolution; }
    static bool isDash(const MediaInfo &info) { return info.m_isDash; }
    static bool is3D(const MediaInfo &info) { return info.m_is3D; }
    static const QString &label(const MediaInfo &info) { return info.m_oriResStr; }
    static const QString &name(const MediaProfile &profile) { return profile.m_name; }
    static const QString &url(const MediaProfile &profile) { return profile.m_url; }
};

} // namespace Nox
