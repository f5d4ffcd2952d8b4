#include "hosts/desk/view/FileManager.h"

#include <QUrl>

#ifdef NOX_DBUS
#  include <QDBusConnection>
#  include <QDBusMessage>
#  include <QDBusPendingCall>
#  include <QDBusPendingCallWatcher>
#endif

namespace NoxDesk {

void FileManager::select(const QString &file)
{
#ifdef NOX_DBUS
    if (!QDBusConnection::sessionBus().isConnected()) { // a call would never be answered
        Q_EMIT failed();
        deleteLater();
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList(QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded)) << QString();
    auto *answer = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        if (answer->isError())
            Q_EMIT failed();
        deleteLater();
    });
#else
    Q_UNUSED(file)
    Q_EMIT failed();
    deleteLater();
#endif
}

} // namespace NoxDesk
