#pragma once

#include <QImage>
#include <QNetworkAccessManager>
#include <QObject>

class QNetworkReply;

namespace NoxDesk {

/** Downloads the picture of a page; a new request replaces the one before. Refuses very large pictures. */
class ThumbnailLoader : public QObject
{
    Q_OBJECT

public:
    explicit ThumbnailLoader(QNetworkAccessManager &network, QObject *parent = nullptr);
    ~ThumbnailLoader() override;

    /**
     * Starts the download. The picture is null until it arrives, or if there is none. If this system cannot read the
     * format, the loader tries the address of the same picture as JPEG.
     */
    void load(const QString &url);

    QImage picture() const { return m_picture; }
    bool isLoading() const { return m_reply != nullptr; }

Q_SIGNALS:
    /** The download has started, succeeded or failed. */
    void changed();

private:
    void fetch(const QString &url);
    void stop();
    void onProgress(qint64 received);
    void onFinished();

    QNetworkAccessManager &m_network;
    QNetworkReply *m_reply = nullptr;
    QImage m_picture;
};

} // namespace NoxDesk
