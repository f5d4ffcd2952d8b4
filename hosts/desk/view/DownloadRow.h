#pragma once

#include <nox/jobs/DownloadQueue.h>

#include <QFrame>
#include <QPersistentModelIndex>

class QAction;
class QProgressBar;
class QStackedWidget;
class QToolButton;

namespace NoxDesk {

class ElidedLabel;
class FailureBox;
class Opener;
class WrappedText;

/**
 * One download in the list, in two lines: name and bar, below them the figures; beside them the most important buttons.
 * Its menu has all actions, with their keys. Details are shown below on request.
 */
class DownloadRow : public QFrame
{
    Q_OBJECT

public:
    /** @param model must outlive the row */
    explicit DownloadRow(Nox::DownloadQueue &model, QWidget *parent = nullptr);

    /** Shows the current data of the model. */
    void refresh(const QModelIndex &index);

    /** The widgets for the tab order. */
    QList<QWidget *> tabStops() const;

Q_SIGNALS:
    void stepRequested(int by); ///< The focus is to go up (negative) or down among the rows.
    void readRequested(const QString &address);
    void logRequested();
    void openingFailed(const QString &message);
    void tabStopsChanged();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    template <typename Run>
    QAction *newAction(const QString &text, const char *name, const char *key, const Run &run);
    void addActions();
    void layOut();
    void nameControls(const QString &title);
    void showState(Nox::DownloadQueue::State state);
    void showBar(int percent, Nox::DownloadQueue::State state);
    void showDetails();
    void openFile();
    void showFolder();
    Opener *newOpener();

    Nox::DownloadQueue &m_model;
    QToolButton *m_detailsButton;
    ElidedLabel *m_title;
    ElidedLabel *m_status;
    QProgressBar *m_bar;
    QStackedWidget *m_buttons;
    QToolButton *m_pauseButton = nullptr;
    QToolButton *m_cancelButton = nullptr;
    QToolButton *m_retryButton = nullptr;
    QToolButton *m_openButton = nullptr;
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
