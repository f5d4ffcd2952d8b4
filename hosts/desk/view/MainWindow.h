#pragma once

#include "hosts/desk/view/AddressOffer.h"
#include "hosts/desk/view/TaskbarProgress.h"

#include <QMainWindow>
#include <QMessageBox>
#include <QPointer>

class QSplitter;
class QTimer;

namespace NoxDesk {

class AddressBar;
class Desk;
class DownloadsPanel;
class ElidedLabel;
class Notifier;

/** The window: address above, page in the middle, downloads below. */
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /** @param desk must outlive the window */
    explicit MainWindow(Desk &desk, QWidget *parent = nullptr);

    /** Reads the page at @p address, as if the user had typed it. */
    void read(const QString &address);

    /** Reads the page of a single address; several are read and downloaded one after the other. */
    void use(const QStringList &addresses);

    /** Another start of the program has handed over these addresses: brings the window up, and uses them. */
    void takeOver(const QStringList &addresses);

    /** Closes without a question. What runs can be gone on with at the next start. */
    void closeAtOnce();

protected:
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void warnOfStore();
    void layOut();
    void addShortcuts();
    void addMenu();
    void useText(const QString &text);
    void openList();
    void askToRepeat();
    void applySettings();
    void notice(const QString &title, const QString &words);
    void showProgress();
    void showPreferences();
    void showShortcuts();
    void showAbout();
    void restore();
    void remember();
    void askToClose();
    void showLog();
    void warn(const QString &words);

    Desk &m_desk;
    AddressOffer m_offer;
    AddressBar *m_addressBar;
    QSplitter *m_splitter;
    DownloadsPanel *m_downloads;
    ElidedLabel *m_notice;
    QTimer *m_noticeTimer; // runs while the notice is seen
    Notifier *m_notifier;
    TaskbarProgress m_taskbar;
    QPointer<QMessageBox> m_question;
    bool m_isClosing = false; // without a question
};

} // namespace NoxDesk
