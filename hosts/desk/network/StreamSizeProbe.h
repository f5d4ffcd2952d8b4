#pragma once

#include <nox/model/MediaProfile.h>

#include <QList>
#include <QNetworkAccessManager>
#include <QObject>

#include <memory>

class QNetworkReply;

namespace NoxDesk {

/** Asks servers how large streams are, without fetching them. Streams of which no answer is to be had stay unknown. */
class StreamSizeProbe : public QObject
{
    Q_OBJECT

public:
    /** @param network must outlive the probe */
    explicit StreamSizeProbe(QNetworkAccessManager &network, QObject *parent = nullptr);

    void ask(const QList<Nox::MediaProfile> &streams); ///< Begins anew, with these streams.

Q_SIGNALS:
    void found(const QString &code, qint64 bytes);

private:
    void onAnswer(QNetworkReply &reply, const QString &code);

    QNetworkAccessManager &m_network;
    std::unique_ptr<QObject> m_questions; // owns the replies that are awaited
};

} // namespace NoxDesk
