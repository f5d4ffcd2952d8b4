#pragma once

#include <QObject>

class QSystemTrayIcon;
class QWidget;

namespace NoxDesk {

/** Tells what has happened by the desktop's tray, where there is one, while the window is not looked at. */
class TrayNotifier : public QObject
{
    Q_OBJECT

public:
    /** @param window the owner */
    explicit TrayNotifier(QWidget *window);

    void notify(const QString &title, const QString &words);

    /** The window is looked at: what was told is known. */
    void clear();

private:
    QWidget *m_window;
    QSystemTrayIcon *m_icon = nullptr; // made when it is needed
};

} // namespace NoxDesk
