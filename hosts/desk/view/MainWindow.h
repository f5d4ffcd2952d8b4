#pragma once

#include "hosts/desk/view/TaskbarProgress.h"

#include <QMainWindow>
#include <QMessageBox>
#include <QPointer>

#include <functional>

class QSplitter;
class QTimer;

namespace NoxDesk {

class AddressBar;
class AddressOfferBar;
class DeskController;
class DownloadsPanel;
class ElidedLabel;
class Notifier;

/** The main window: the address at the top, the page in the middle, the downloads at the bottom. */
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /** @param controller must outlive the window */
    explicit MainWindow(DeskController &controller, QWidget *parent = nullptr);

    /** Reads the page @p address, as if the user had typed it. */
    void read(const QString &address);

    /** Reads the page if there is one address. Several are read and downloaded one after the other. */
    void use(const QStringList &addresses);

    /** Handles the addresses of another instance: activates the window and uses them. */
    void takeOver(const QStringList &addresses);

    /** Closes without a question. Running downloads can be resumed at the next start. */
    void closeAtOnce();

protected:
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void layOut();
    void addShortcuts();
    void addMenu();
    void useText(const QString &text);
    void openList();
    void askToRepeat(const QString &message, const std::function<void()> &repeat);
    void applySettings();
    void notice(const QString &title, const QString &message);
    void showProgress();
    void showPreferences();
    void showShortcuts();
    void showAbout();
    void restore();
    void askToClose();
    void quit();
    void showLog();
    void warn(const QString &message);

    DeskController &m_controller;
    AddressBar *m_addressBar;
    AddressOfferBar *m_offerBar;
    QSplitter *m_splitter;
    DownloadsPanel *m_downloads;
    ElidedLabel *m_notice;
    QTimer *m_noticeTimer; // active while the notice is shown
    Notifier *m_notifier;
    TaskbarProgress m_taskbar;
    QPointer<QMessageBox> m_question;
    bool m_isClosing = false; // closes without a question
};

} // namespace NoxDesk
