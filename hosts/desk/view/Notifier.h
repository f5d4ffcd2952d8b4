#pragma once

#include <QObject>
#include <QSet>

class QSystemTrayIcon;
class QWidget;

namespace NoxDesk {

/**
 * Tells what has happened while the window is not looked at: by the desktop's notification service, or by its tray
 * where there is no such service. A click brings the window up.
 */
class Notifier : public QObject
{
    Q_OBJECT

public:
    /** @param window the owner */
    explicit Notifier(QWidget *window);

    void notify(const QString &title, const QString &message);

    /** The window is looked at: what was told is known. */
    void clear();

    void showWindow(); ///< Brings the window up.

private Q_SLOTS: // found by name when the service sends a signal
    void onActionInvoked(uint id);
    void onClosed(uint id) { m_shown.remove(id); }

private:
    void send(const QString &title, const QString &body);
    void showInTray(const QString &title, const QString &message);

    QWidget *m_window;
    QSet<uint> m_shown;                // the service's numbers of what it shows
    QSystemTrayIcon *m_icon = nullptr; // made when it is needed
};

} // namespace NoxDesk
