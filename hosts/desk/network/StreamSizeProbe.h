#pragma once

#include <nox/model/MediaProfile.h>

#include <QList>
#include <QNetworkAccessManager>
#include <QObject>
#include <QPointer>
#include <QQueue>

class QNetworkReply;

namespace NoxDesk {

/**
 * Asks servers how large streams are, some at a time, without fetching them. Streams of which no
 * answer is to be had stay unknown.
 */
class StreamSizeProbe : public QObject
{
    Q_OBJECT

public:
    explicit StreamSizeProbe(QNetworkAccessManager &network, QObject *parent = nullptr);
    ~StreamSizeProbe() override;

    void ask(const QList<Nox::MediaProfile> &streams); ///< Begins anew, with these streams.
    void stop();

Q_SIGNALS:
    void found(const QString &code, qint64 bytes);

private:
    void askNext();
    void onAnswer(QNetworkReply *reply, const QString &code);

    QNetworkAccessManager &m_network;
    QQueue<Nox::MediaProfile> m_waiting;
    QList<QNetworkReply *> m_asked;
};

} // namespace NoxDesk
