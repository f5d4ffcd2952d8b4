#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>
#include <QStringList>

#include <memory>

class QLocalSocket;

namespace NoxDesk {

/** Makes a second start of the program hand its addresses to the first, by a local socket of the user. */
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    /** @param folder of the user alone, for the socket; empty for the runtime folder */
    explicit SingleInstance(const QString &folder = {}, QObject *parent = nullptr);

    /**
     * Becomes the first, or hands over the addresses to it. Waits for the first for some seconds at most.
     * @return whether this program is to go on: it is the first, or the first does not answer
     */
    bool begin(const QStringList &addresses);

Q_SIGNALS:
    /** Another start has handed over these addresses, perhaps none. */
    void handedOver(const QStringList &addresses);

private:
    bool send(const QByteArray &message) const;
    void accept();
    void receive(QLocalSocket *socket);

    QString m_path; // of the socket
    QLocalServer m_server;
    std::unique_ptr<QLockFile> m_lock; // held by the first
};

} // namespace NoxDesk
