#pragma once

#include <QNetworkProxy>
#include <QNetworkRequest>
#include <QString>

#include <optional>

/** The common properties of this program's network requests. */
namespace NoxDesk::WebRequest {

/** Whether @p url, which comes from a page, may be requested: only http and https, no local files. */
bool isPossible(const QString &url);

/** A request with a time limit that follows safe redirects only. */
QNetworkRequest make(const QString &url);

/** The proxy with this address, or that of the system if empty. No value for an unknown kind: request nothing then. */
std::optional<QNetworkProxy> proxy(const QString &address);

} // namespace NoxDesk::WebRequest
