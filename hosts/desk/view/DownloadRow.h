#pragma once

#include <nox/jobs/DownloadQueue.h>

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
 * One download in the list, in one line: name, bar, figures and the most important button. Its menu has all actions,
 * with their keys. Details are shown below the line on request.
 */
class DownloadRow : public QFrame
{
    Q_OBJECT

public:
    explicit DownloadRow(QWidget *parent = nullptr);

    /** Shows the current data of the model. */
    void refresh(const QModelIndex &index);

    /** The widgets for the tab order. */
    QList<QWidget *> tabStops() const;

    void focusFirst(); ///< Sets the focus to the most important button.

Q_SIGNALS:
    void pauseRequested();
    void cancelRequested();
    void retryRequested();
    void removeRequested();
    void moveRequested(int by); ///< Up (negative) or down among the waiting downloads.
    void stepRequested(int by); ///< The focus is to go up (negative) or down among the rows.
    void readRequested(const QString &address);
    void logRequested();
    void openingFailed(const QString &message);
    void tabStopsChanged();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QPushButton *newButton(const QString &text, const QString &name, void (DownloadRow::*run)());
    QAction *newAction(const QString &text, const QString &name, const QKeySequence &key,
                       const std::function<void()> &run);
    void addActions();
    void layOut();
    void nameControls(const QString &title);
    void showState(Nox::DownloadQueue::State state);
    void showBar(int percent, Nox::DownloadQueue::State state);
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
    WrappedText *m_details = nullptr; // created on demand, as the box is
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
