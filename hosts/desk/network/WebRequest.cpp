#include "hosts/desk/network/WebRequest.h"

#include <QUrl>

namespace NoxDesk {

namespace {

constexpr int timeoutMs = 20000;

} // namespace

bool WebRequest::isPossible(const QString &url)
{
    const QUrl parsed(url);
    return parsed.isValid() && !parsed.host().isEmpty()
        && (parsed.scheme() == QLatin1String("https") || parsed.scheme() == QLatin1String("http"));
}

QNetworkRequest WebRequest::make(const QString &url)
{
    QNetworkRequest request{QUrl(url)};
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setTransferTimeout(timeoutMs);
    return request;
}

} // namespace NoxDesk
