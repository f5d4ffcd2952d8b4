#include "hosts/desk/network/WebRequest.h"

#include <QUrl>

namespace NoxDesk {

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
    constexpr int timeoutMs = 20000;
    request.setTransferTimeout(timeoutMs);
    return request;
}

std::optional<QNetworkProxy> WebRequest::proxy(const QString &address)
{
    if (address.isEmpty())
        return QNetworkProxy(QNetworkProxy::DefaultProxy);
    const QUrl url(address.contains(QLatin1String("://")) ? address : QLatin1String("http://") + address);
    const bool isSocks = url.scheme() == QLatin1String("socks5") || url.scheme() == QLatin1String("socks5h");
    if (!url.isValid() || url.host().isEmpty() || (!isSocks && url.scheme() != QLatin1String("http")))
        return std::nullopt;
    return QNetworkProxy(isSocks ? QNetworkProxy::Socks5Proxy : QNetworkProxy::HttpProxy, url.host(),
                         static_cast<quint16>(url.port(isSocks ? 1080 : 80)), url.userName(QUrl::FullyDecoded),
                         url.password(QUrl::FullyDecoded));
}

} // namespace NoxDesk
