#pragma once

#include "hosts/desk/model/Download.h"

#include <QFrame>
#include <QModelIndex>

class QProgressBar;
class QPushButton;

namespace NoxDesk {

class ElidedLabel;
class FailureBox;

/** One download in the list: its bar, its figures, and what can be done with it. */
class DownloadRow : public QFrame
{
    Q_OBJECT

public:
    explicit DownloadRow(QWidget *parent = nullptr);

    /** Shows what the model says of the download. */
    void refresh(const QModelIndex &index);

    /** What the keyboard goes to, in the order in which it is read. */
    QList<QWidget *> tabStops() const;

    void focusFirst(); ///< Moves the keyboard to the first button.

Q_SIGNALS:
    void cancelRequested();
    void retryRequested();
    void removeRequested();
    void logRequested();
    void openingFailed(const QString &words);
    void tabStopsChanged();

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    QPushButton *newButton(const QString &text, const QString &name);
    void showBar(int percent, Download::State state);
    void showButtons(Download::State state);
    void nameControls(const QString &title);
    void showFailure(const QModelIndex &index, bool isFailed);
    void showFolder();
    void open(const QString &path);

    ElidedLabel *m_title;
    ElidedLabel *m_status;
    QProgressBar *m_bar;
    FailureBox *m_failure = nullptr; // made when it is needed
    QPushButton *m_cancelButton;
    QPushButton *m_retryButton;
    QPushButton *m_openButton;
    QPushButton *m_folderButton;
    QPushButton *m_removeButton;
    QString m_file;
    bool m_wasActive = true;
};

} // namespace NoxDesk
