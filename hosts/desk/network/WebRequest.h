#pragma once

#include <QNetworkRequest>
#include <QString>

/** The common properties of this program's network requests. */
namespace NoxDesk::WebRequest {

/** Whether @p url, which comes from a page, may be requested: only http and https, no local files. */
bool isPossible(const QString &url);

/** A request with a time limit that follows safe redirects only. */
QNetworkRequest make(const QString &url);

} // namespace NoxDesk::WebRequest
