#pragma once

#include <QObject>
#include <QSet>

class QSystemTrayIcon;
class QWidget;

namespace NoxDesk {

/**
 * Shows notifications while the window is not active: by the desktop's notification service, or by the tray if there is
 * no such service. A click activates the window.
 */
class Notifier : public QObject
{
    Q_OBJECT

public:
    /** @param window the owner */
    explicit Notifier(QWidget *window);

    void notify(const QString &title, const QString &message);

    /** The window is active: withdraws the notifications. */
    void clear();

    void showWindow(); ///< Activates the window.

private Q_SLOTS: // connected by name to the service's signals
    void onActionInvoked(uint id);
    void onClosed(uint id) { m_shown.remove(id); }

private:
    void send(const QString &title, const QString &body);
    void showInTray(const QString &title, const QString &message);

    QWidget *m_window;
    QSet<uint> m_shown;                // identifiers of the shown notifications
    uint m_last = 0;                   // identifier of the last one; the next replaces it while it is shown
    int m_before = 0;                  // messages that it has replaced
    QSystemTrayIcon *m_icon = nullptr; // created on demand
};

} // namespace NoxDesk
