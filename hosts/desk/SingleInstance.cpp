#include "hosts/desk/SingleInstance.h"

#include <QCoreApplication>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLocalSocket>
#include <QStandardPaths>

namespace NoxDesk {

namespace {

constexpr int answerMs = 3000;
constexpr qint64 maximumBytes = 4LL * 1024 * 1024;
const QByteArray received("ok\n");

/** One socket for each display: the user may not see the window of an instance on another display. */
QString displayName()
{
    const QByteArray display =
        qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ? qgetenv("WAYLAND_DISPLAY") : qgetenv("DISPLAY");
    return QString::fromLatin1(display.toHex());
}

} // namespace

SingleInstance::SingleInstance(const QString &folder, QObject *parent)
    : QObject(parent)
{
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (folder.isEmpty() && runtime.isEmpty())
        return;
    m_path = QDir(folder.isEmpty() ? runtime : folder).filePath(QStringLiteral("nox-desk-%1").arg(displayName()));
    m_lock = std::make_unique<QLockFile>(m_path + QStringLiteral(".lock"));
    m_lock->setStaleLockTime(0); // stale only if its process no longer exists
    connect(&m_server, &QLocalServer::newConnection, this, &SingleInstance::accept);
}

bool SingleInstance::begin(const QStringList &addresses)
{
    if (m_lock == nullptr) // no folder for the socket
        return true;
    if (m_lock->tryLock(0)) {
        QLocalServer::removeServer(m_path); // left by a program that was killed
        m_server.setSocketOptions(QLocalServer::UserAccessOption);
        m_server.listen(m_path);
        return true;
    }
    return !send(QJsonDocument(QJsonArray::fromStringList(addresses)).toJson(QJsonDocument::Compact) + '\n');
}

bool SingleInstance::send(const QByteArray &message) const
{
    QLocalSocket socket;
    socket.connectToServer(m_path);
    if (!socket.waitForConnected(answerMs))
        return false;
    socket.write(message);
    while (!socket.canReadLine()) {
        if (!socket.waitForReadyRead(answerMs))
            return false;
    }
    return socket.readLine() == received;
}

void SingleInstance::accept()
{
    while (QLocalSocket *socket = m_server.nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { receive(socket); });
    }
}

void SingleInstance::receive(QLocalSocket *socket)
{
    if (socket->bytesAvailable() > maximumBytes) {
        socket->abort();
    } else if (socket->canReadLine()) {
        const QJsonArray message = QJsonDocument::fromJson(socket->readLine()).array();
        socket->write(received);
        socket->flush(); // before the receivers work on the addresses: the other instance waits
        socket->disconnectFromServer();
        QStringList addresses;
        for (const auto &address : message)
            addresses += address.toString();
        Q_EMIT handedOver(addresses);
    }
}

} // namespace NoxDesk
