#pragma once

#include <QImage>
#include <QNetworkAccessManager>
#include <QObject>

class QNetworkReply;

namespace NoxDesk {

/** Fetches a page's picture, the newest one wanted. Pictures of an unreasonable size are refused. */
class ThumbnailLoader : public QObject
{
    Q_OBJECT

public:
    explicit ThumbnailLoader(QNetworkAccessManager &network, QObject *parent = nullptr);
    ~ThumbnailLoader() override;

    /**
     * Begins to fetch; the picture is null until it has come, and stays so when it cannot be had. A picture of a kind
     * that this system cannot read is asked for once more, as JPEG.
     */
    void load(const QString &url);

    QImage picture() const { return m_picture; }
    bool isLoading() const { return m_reply != nullptr; }

Q_SIGNALS:
    /** Fetching has begun, or the picture has come, or cannot be had. */
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
