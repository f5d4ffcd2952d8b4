#pragma once

#include "hosts/desk/model/Download.h"

#include <QFrame>
#include <QPersistentModelIndex>

#include <functional>

class QAction;
class QProgressBar;
class QPushButton;
class QStackedWidget;
class QToolButton;

namespace NoxDesk {

class ElidedLabel;
class FailureBox;
class Opener;
class WrappedText;

/**
 * One download in the list, in one line: its name, its bar, its figures and the button that is needed most. All that
 * can be done with it is in its menu, with keys; the details are shown below the line when they are asked for.
 */
class DownloadRow : public QFrame
{
    Q_OBJECT

public:
    explicit DownloadRow(QWidget *parent = nullptr);

    /** Shows what the model says of the download. */
    void refresh(const QModelIndex &index);

    /** What the keyboard goes to, in the order in which it is read. */
    QList<QWidget *> tabStops() const;

    void focusFirst(); ///< Moves the keyboard to the button that is needed most.

Q_SIGNALS:
    void pauseRequested();
    void cancelRequested();
    void retryRequested();
    void removeRequested();
    void moveRequested(int by); ///< Up (below 0) or down among those that wait.
    void readRequested(const QString &address);
    void logRequested();
    void openingFailed(const QString &message);
    void tabStopsChanged();

private:
    QPushButton *newButton(const QString &text, const QString &name, void (DownloadRow::*run)());
    QAction *newAction(const QString &text, const QString &name, const QKeySequence &key,
                       const std::function<void()> &run);
    void addActions();
    void layOut();
    void nameControls(const QString &title);
    void showState(Download::State state);
    void showBar(int percent, Download::State state);
    void showDetails();
    void openFile();
    void showFolder();
    Opener *newOpener();

    QToolButton *m_detailsButton;
    ElidedLabel *m_title;
    ElidedLabel *m_status;
    QProgressBar *m_bar;
    QStackedWidget *m_buttons;
    QPushButton *m_pauseButton;
    QPushButton *m_cancelButton;
    QPushButton *m_retryButton;
    QPushButton *m_openButton;
    QToolButton *m_menuButton;
    WrappedText *m_details = nullptr; // made when it is needed, and so is the box
    FailureBox *m_failure = nullptr;
    QAction *m_openAction = nullptr;
    QAction *m_folderAction = nullptr;
    QAction *m_retryAction = nullptr;
    QAction *m_pauseAction = nullptr;
    QAction *m_cancelAction = nullptr;
    QAction *m_upAction = nullptr;
    QAction *m_downAction = nullptr;
    QAction *m_removeAction = nullptr;
    QPersistentModelIndex m_index;
    QString m_file;
    QString m_address;
};

} // namespace NoxDesk
