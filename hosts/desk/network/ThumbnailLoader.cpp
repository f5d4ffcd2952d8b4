#include "hosts/desk/network/ThumbnailLoader.h"

#include "hosts/desk/network/WebRequest.h"

#include <QBuffer>
#include <QImageReader>
#include <QNetworkReply>
#include <QRegularExpression>

namespace NoxDesk {

namespace {

constexpr qint64 maximumBytes = 8LL * 1024 * 1024;
constexpr int maximumEdge = 8192;    // of the original picture
constexpr QSize keptSize(1280, 720); // enough for the small view at any scale factor

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

/** The address of the JPEG on sites that serve each picture in both formats. */
QString jpegUrl(QString url)
{
    static const QRegularExpression ending(QStringLiteral("\\.webp(?=$|\\?)"));
    return url.replace(ending, QStringLiteral(".jpg")).replace(QLatin1String("/vi_webp/"), QLatin1String("/vi/"));
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
    if (WebRequest::isPossible(url))
        fetch(url);
    Q_EMIT changed();
}

void ThumbnailLoader::fetch(const QString &url)
{
    QNetworkRequest request = WebRequest::make(url);
    if (!QImageReader::supportedImageFormats().contains("webp"))
        request.setRawHeader("Accept", "image/jpeg,image/png;q=0.9,image/*;q=0.1");
    m_reply = m_network.get(request);
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
    if (received > maximumBytes) {
        stop();
        Q_EMIT changed();
    }
}

void ThumbnailLoader::onFinished()
{
    const QByteArray bytes = m_reply->error() == QNetworkReply::NoError ? m_reply->readAll() : QByteArray();
    const QString url = m_reply->request().url().toString(QUrl::FullyEncoded);
    m_reply->deleteLater();
    m_reply = nullptr;
    m_picture = decoded(bytes);
    if (const QString other = jpegUrl(url); m_picture.isNull() && !bytes.isEmpty() && other != url) {
        fetch(other);
    } else {
        Q_EMIT changed();
    }
}

} // namespace NoxDesk
