#include "hosts/desk/view/Notifier.h"

#include "hosts/desk/view/SessionBus.h"

#include <QApplication>
#include <QSystemTrayIcon>
#include <QWidget>

namespace NoxDesk {

namespace {

constexpr SessionBus::Service service{"org.freedesktop.Notifications", "/org/freedesktop/Notifications"};
constexpr int usualTime = -1; // the service decides how long to show it

} // namespace

Notifier::Notifier(QWidget *window)
    : QObject(window)
    , m_window(window)
{
    SessionBus::listen(service, QStringLiteral("ActionInvoked"), this, SLOT(onActionInvoked(uint)));
    SessionBus::listen(service, QStringLiteral("NotificationClosed"), this, SLOT(onClosed(uint)));
}

void Notifier::notify(const QString &title, const QString &message)
{
    if (m_window->isActiveWindow())
        return;
    SessionBus::call(service, QStringLiteral("GetCapabilities"), {}, this,
                     [this, title, message](bool isAnswered, const QVariantList &values) {
                         const bool isMarkup = values.value(0).toStringList().contains(QStringLiteral("body-markup"));
                         if (isAnswered)
                             send(title, isMarkup ? message.toHtmlEscaped() : message);
                         else
                             showInTray(title, message);
                     });
}

void Notifier::send(const QString &title, const QString &body)
{
    const QStringList actions{QStringLiteral("default"), tr("Show")};
    const QVariantMap hints{{QStringLiteral("desktop-entry"), QGuiApplication::desktopFileName()}};
    const bool isReplacing = m_shown.contains(m_last);
    m_before = isReplacing ? m_before + 1 : 0;
    const QString text = isReplacing ? tr("%1\nMessages before: %2").arg(body, QString::number(m_before)) : body;
    SessionBus::call(service, QStringLiteral("Notify"),
                     {tr("Nox Desk"), isReplacing ? m_last : 0U, QGuiApplication::desktopFileName(), title, text,
                      actions, hints, usualTime},
                     this, [this](bool, const QVariantList &values) { m_shown += m_last = values.value(0).toUInt(); });
}

void Notifier::onActionInvoked(uint id)
{
    if (m_shown.contains(id))
        showWindow();
}

void Notifier::showInTray(const QString &title, const QString &message)
{
    if (!QSystemTrayIcon::isSystemTrayAvailable() || !QSystemTrayIcon::supportsMessages())
        return;
    if (m_icon == nullptr) {
        m_icon = new QSystemTrayIcon(QApplication::windowIcon(), this);
        m_icon->setToolTip(m_window->windowTitle());
        connect(m_icon, &QSystemTrayIcon::activated, this, &Notifier::showWindow);
        connect(m_icon, &QSystemTrayIcon::messageClicked, this, &Notifier::showWindow);
    }
    m_icon->show();
    m_icon->showMessage(title, message, QApplication::windowIcon());
}

void Notifier::showWindow()
{
    m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
    m_window->raise();
    m_window->activateWindow();
}

void Notifier::clear()
{
    for (const uint id : std::as_const(m_shown))
        SessionBus::call(service, QStringLiteral("CloseNotification"), {id}, this, [](bool, const QVariantList &) {});
    m_shown.clear();
    if (m_icon != nullptr)
        m_icon->hide();
}

} // namespace NoxDesk
