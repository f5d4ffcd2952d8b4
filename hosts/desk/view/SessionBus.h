#pragma once

#include <QObject>
#include <QVariantMap>

#include <functional>

/** The user's session bus (D-Bus), for services of the desktop. Without a bus all calls fail. */
namespace NoxDesk::SessionBus {

/** A service with one object, whose interface has the same name as the service. */
struct Service {
    const char *name;
    const char *path;
};

/** Receives whether the service has answered, and the values of its answer. */
using Answer = std::function<void(bool isAnswered, const QVariantList &values)>;

/**
 * Calls @p method without waiting.
 * @param context if it is deleted, @p answer is not called
 * @param answer called once; immediately if there is no bus
 */
void call(const Service &service, const QString &method, const QVariantList &arguments, QObject *context,
          const Answer &answer);

/** Connects the signal @p name of the service to a slot, given as SLOT(...). */
void listen(const Service &service, const QString &name, QObject *receiver, const char *slot);

/** Emits a signal on the bus. */
void tell(const QString &path, const QString &interface, const QString &signal, const QVariantList &arguments);

} // namespace NoxDesk::SessionBus
