#include "hosts/desk/view/TrayNotifier.h"

#include <QApplication>
#include <QSystemTrayIcon>
#include <QWidget>

namespace NoxDesk {

TrayNotifier::TrayNotifier(QWidget *window)
    : QObject(window)
    , m_window(window)
{
}

void TrayNotifier::notify(const QString &title, const QString &words)
{
    if (m_window->isActiveWindow() || !QSystemTrayIcon::isSystemTrayAvailable()
        || !QSystemTrayIcon::supportsMessages()) {
        return;
    }
    if (m_icon == nullptr) {
        m_icon = new QSystemTrayIcon(QApplication::windowIcon(), this);
        m_icon->setToolTip(m_window->windowTitle());
        const auto raise = [this] {
            m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
            m_window->raise();
            m_window->activateWindow();
        };
        connect(m_icon, &QSystemTrayIcon::activated, this, raise);
        connect(m_icon, &QSystemTrayIcon::messageClicked, this, raise);
    }
    m_icon->show();
    m_icon->showMessage(title, words, QApplication::windowIcon());
}

void TrayNotifier::clear()
{
    if (m_icon != nullptr)
        m_icon->hide();
}

} // namespace NoxDesk
