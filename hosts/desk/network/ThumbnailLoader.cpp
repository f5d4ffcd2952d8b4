#include "hosts/desk/network/ThumbnailLoader.h"

#include "hosts/desk/network/WebRequest.h"

#include <QBuffer>
#include <QImageReader>
#include <QNetworkReply>

namespace NoxDesk {

namespace {

constexpr qint64 maximumBytes = 8LL * 1024 * 1024;
constexpr int maximumEdge = 8192;    // of the picture as it comes
constexpr QSize keptSize(1280, 720); // enough for the small view at any scaling

QImage decoded(const QByteArray &bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.width() > maximumEdge || size.height() > maximumEdge)
        return {};
    if (size.width() > keptSize.width() || size.height() > keptSize.height())
        reader.setScaledSize(size.scaled(keptSize, Qt::KeepAspectRatio));
    return reader.read();
}

} // namespace

ThumbnailLoader::ThumbnailLoader(QNetworkAccessManager &network, QObject *parent)
    : QObject(parent)
    , m_network(network)
{
}

ThumbnailLoader::~ThumbnailLoader()
{
    stop();
}

void ThumbnailLoader::load(const QString &url)
{
    stop();
    m_picture = {};
    Q_EMIT changed();
    if (!WebRequest::isPossible(url))
        return;
    m_reply = m_network.get(WebRequest::make(url));
    connect(m_reply, &QNetworkReply::downloadProgress, this, &ThumbnailLoader::onProgress);
    connect(m_reply, &QNetworkReply::finished, this, &ThumbnailLoader::onFinished);
}

void ThumbnailLoader::stop()
{
    if (m_reply != nullptr) {
        m_reply->disconnect(this);
        m_reply->abort();
        m_reply->deleteLater();
        m_reply = nullptr;
    }
}

void ThumbnailLoader::onProgress(qint64 received)
{
    if (received > maximumBytes)
        stop();
}

void ThumbnailLoader::onFinished()
{
    const QByteArray bytes = m_reply->error() == QNetworkReply::NoError ? m_reply->readAll() : QByteArray();
    m_reply->deleteLater();
    m_reply = nullptr;
    m_picture = decoded(bytes);
    if (!m_picture.isNull())
        Q_EMIT changed();
}

} // namespace NoxDesk
