#include "hosts/desk/view/SessionBus.h"

#ifdef NOX_DBUS
#  include <QDBusConnection>
#  include <QDBusMessage>
#  include <QDBusPendingCall>
#  include <QDBusPendingCallWatcher>
#endif

namespace NoxDesk {

#ifdef NOX_DBUS

void SessionBus::call(const Service &service, const QString &method, const QVariantList &arguments, QObject *context,
                      const Answer &answer)
{
    if (!QDBusConnection::sessionBus().isConnected()) { // otherwise a call would never be answered
        answer(false, {});
        return;
    }
    const QString name = QLatin1String(service.name);
    QDBusMessage message = QDBusMessage::createMethodCall(name, QLatin1String(service.path), name, method);
    message.setArguments(arguments);
    auto *pending = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(message), context);
    QObject::connect(pending, &QDBusPendingCallWatcher::finished, context, [pending, answer] {
        pending->deleteLater();
        answer(!pending->isError(), pending->reply().arguments());
    });
}

void SessionBus::listen(const Service &service, const QString &name, QObject *receiver, const char *slot)
{
    const QString interface = QLatin1String(service.name);
    QDBusConnection::sessionBus().connect(interface, QLatin1String(service.path), interface, name, receiver, slot);
}

void SessionBus::tell(const QString &path, const QString &interface, const QString &signal,
                      const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createSignal(path, interface, signal);
    message.setArguments(arguments);
    QDBusConnection::sessionBus().send(message);
}

#else

void SessionBus::call(const Service &, const QString &, const QVariantList &, QObject *, const Answer &answer)
{
    answer(false, {});
}

void SessionBus::listen(const Service &, const QString &, QObject *, const char *) {}

void SessionBus::tell(const QString &, const QString &, const QString &, const QVariantList &) {}

#endif

} // namespace NoxDesk
