#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>
#include <QStringList>

#include <memory>

class QLocalSocket;

namespace NoxDesk {

/** Lets a second instance of the program pass its addresses to the first one, through a local socket of the user. */
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    /** @param folder for the socket, with access for the user only; empty for the runtime folder */
    explicit SingleInstance(const QString &folder = {}, QObject *parent = nullptr);

    /**
     * Becomes the first instance, or passes @p addresses to it. Waits at most some seconds for its answer.
     * @return whether this instance continues: it is the first, or the first does not answer
     */
    bool begin(const QStringList &addresses);

Q_SIGNALS:
    /** Another instance has passed these addresses; the list may be empty. */
    void handedOver(const QStringList &addresses);

private:
    bool send(const QByteArray &message) const;
    void accept();
    void receive(QLocalSocket *socket);

    QString m_path; // of the socket
    QLocalServer m_server;
    std::unique_ptr<QLockFile> m_lock; // locked by the first instance
};

} // namespace NoxDesk
