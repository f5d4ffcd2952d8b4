#pragma once

#include <QNetworkRequest>
#include <QString>

namespace NoxDesk {

/** What all of this program's own network requests have in common. */
class WebRequest
{
public:
    WebRequest() = delete;

    /** Whether @p url, which comes from a page, is one to follow: of the web, not of this machine's files. */
    static bool isPossible(const QString &url);

    /** A request that follows safe redirects and gives up in time. */
    static QNetworkRequest make(const QString &url);
};

} // namespace NoxDesk
