#pragma once

#include <nox/model/MediaProfile.h>

#include <QList>
#include <QNetworkAccessManager>
#include <QObject>

#include <memory>

class QNetworkReply;

namespace NoxDesk {

/** Asks servers for the size of streams, without downloading them. The size stays unknown if there is no answer. */
class StreamSizeProbe : public QObject
{
    Q_OBJECT

public:
    /** @param network must outlive the probe */
    explicit StreamSizeProbe(QNetworkAccessManager &network, QObject *parent = nullptr);

    void ask(const QList<Nox::MediaProfile> &streams); ///< Asks for these streams; forgets earlier ones.

Q_SIGNALS:
    void found(const QString &code, qint64 bytes);

private:
    void onAnswer(QNetworkReply &reply, const QString &code);

    QNetworkAccessManager &m_network;
    std::unique_ptr<QObject> m_questions; // owns the pending replies
};

} // namespace NoxDesk
