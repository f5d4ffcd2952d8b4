#include "hosts/desk/network/StreamSizeProbe.h"

#include "hosts/desk/network/WebRequest.h"

#include <QNetworkReply>

namespace NoxDesk {

StreamSizeProbe::StreamSizeProbe(QNetworkAccessManager &network, QObject *parent)
    : QObject(parent)
    , m_network(network)
{
}

void StreamSizeProbe::ask(const QList<Nox::MediaProfile> &streams)
{
    m_questions = std::make_unique<QObject>(); // deletes the pending replies of the page before
    for (const Nox::MediaProfile &stream : streams) {
        if (stream.getSize() > 0 || !WebRequest::isPossible(stream.getUrl()))
            continue;
        QNetworkReply *reply = m_network.head(WebRequest::make(stream.getUrl()));
        reply->setParent(m_questions.get());
        connect(reply, &QNetworkReply::finished, this,
                [this, reply, code = stream.getName()] { onAnswer(*reply, code); });
    }
}

void StreamSizeProbe::onAnswer(QNetworkReply &reply, const QString &code)
{
    reply.deleteLater();
    const qint64 bytes = reply.header(QNetworkRequest::ContentLengthHeader).toLongLong();
    // The size of a manifest or an error page is not the size of the stream.
    const QString type = reply.header(QNetworkRequest::ContentTypeHeader).toString();
    const bool isMedia = type.startsWith(QLatin1String("video/")) || type.startsWith(QLatin1String("audio/"))
        || type.startsWith(QLatin1String("application/octet-stream"));
    if (reply.error() == QNetworkReply::NoError && isMedia && bytes > 0)
        Q_EMIT found(code, bytes);
}

} // namespace NoxDesk
