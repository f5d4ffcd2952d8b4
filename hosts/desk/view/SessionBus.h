#pragma once

#include <QObject>
#include <QVariantMap>

#include <functional>

namespace NoxDesk {

/** The user's message bus (D-Bus), by which the desktop's services are reached. Without it all calls fail. */
class SessionBus
{
public:
    SessionBus() = delete;

    /** A service with one object; the object's interface has the name of the service. */
    struct Service {
        const char *name;
        const char *path;
    };

    /** Takes whether the service has answered, and the values that it has sent. */
    using Answer = std::function<void(bool isAnswered, const QVariantList &values)>;

    /**
     * Calls @p method without waiting.
     * @param context the call is forgotten when it is deleted
     * @param answer called once; at once where there is no bus
     */
    static void call(const Service &service, const QString &method, const QVariantList &arguments, QObject *context,
                     const Answer &answer);

    /** Connects the signal @p name of the service with a slot, which is given as SLOT(...). */
    static void listen(const Service &service, const QString &name, QObject *receiver, const char *slot);

    /** Sends a signal to whoever listens. */
    static void tell(const QString &path, const QString &interface, const QString &signal,
                     const QVariantList &arguments);
};

} // namespace NoxDesk
