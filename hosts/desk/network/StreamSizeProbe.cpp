#include "hosts/desk/network/StreamSizeProbe.h"

#include "hosts/desk/network/WebRequest.h"

#include <QNetworkReply>

namespace NoxDesk {

namespace {

constexpr int maximumAtOnce = 4;

} // namespace

StreamSizeProbe::StreamSizeProbe(QNetworkAccessManager &network, QObject *parent)
    : QObject(parent)
    , m_network(network)
{
}

StreamSizeProbe::~StreamSizeProbe()
{
    stop();
}

void StreamSizeProbe::ask(const QList<Nox::MediaProfile> &streams)
{
    stop();
    for (const Nox::MediaProfile &stream : streams) {
        if (stream.getSize() <= 0 && WebRequest::isPossible(stream.getUrl()))
            m_waiting.enqueue(stream);
    }
    for (int i = 0; i < maximumAtOnce; ++i)
        askNext();
}

void StreamSizeProbe::stop()
{
    m_waiting.clear();
    const QList<QNetworkReply *> asked = m_asked;
    m_asked.clear();
    for (QNetworkReply *reply : asked) {
        reply->disconnect(this);
        reply->abort();
        reply->deleteLater();
    }
}

void StreamSizeProbe::askNext()
{
    if (m_waiting.isEmpty())
        return;
    const Nox::MediaProfile stream = m_waiting.dequeue();
    QNetworkReply *reply = m_network.head(WebRequest::make(stream.getUrl()));
    m_asked.append(reply);
    connect(reply, &QNetworkReply::finished, this, [this, reply, code = stream.getName()] { onAnswer(reply, code); });
}

void StreamSizeProbe::onAnswer(QNetworkReply *reply, const QString &code)
{
    m_asked.removeAll(reply);
    reply->deleteLater();
    const qint64 bytes = reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
    // A manifest or an error page has a size, too, but not that of the stream.
    const QString type = reply->header(QNetworkRequest::ContentTypeHeader).toString();
    const bool isMedia = type.startsWith(QLatin1String("video/")) || type.startsWith(QLatin1String("audio/"))
        || type.startsWith(QLatin1String("application/octet-stream"));
    if (reply->error() == QNetworkReply::NoError && isMedia && bytes > 0)
        Q_EMIT found(code, bytes);
    askNext();
}

} // namespace NoxDesk
