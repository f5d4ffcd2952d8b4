#pragma once

#include <QNetworkRequest>
#include <QString>

namespace NoxDesk {

/** The common properties of this program's network requests. */
class WebRequest
{
public:
    WebRequest() = delete;

    /** Whether @p url, which comes from a page, may be requested: only http and https, no local files. */
    static bool isPossible(const QString &url);

    /** A request with a time limit that follows safe redirects only. */
    static QNetworkRequest make(const QString &url);
};

} // namespace NoxDesk
