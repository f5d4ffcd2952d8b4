#pragma once

#include <QList>
#include <QTimer>
#include <QWidget>

class QModelIndex;
class QPushButton;
class QVBoxLayout;

namespace Nox {
class DownloadQueue;
}

namespace NoxDesk {

class DownloadRow;
class VerticalScrollArea;

/**
 * The list of downloads. Each row consists of widgets instead of a delegate, so that the keyboard reaches its buttons
 * and a screen reader its bar.
 */
class DownloadsPanel : public QWidget
{
    Q_OBJECT

public:
    /** @param model must outlive the panel */
    explicit DownloadsPanel(Nox::DownloadQueue &model, QWidget *parent = nullptr);

    void refresh(); ///< Shows changes that happened while the window was minimised.

Q_SIGNALS:
    void logRequested();
    void readRequested(const QString &address);
    void openingFailed(const QString &message);

private:
    QLayout *makeHead();
    QPushButton *newButton(const QString &text, const QString &name, const QString &toolTip,
                           void (Nox::DownloadQueue::*run)());
    QWidget *makeList();
    void insertRows(const QModelIndex &parent, int first, int last);
    void moveRow(int from, int to);
    void removeRows(const QModelIndex &parent, int first, int last);
    void refreshRows(int first, int last);
    void orderTabStops();
    void showCounts();

    Nox::DownloadQueue &m_model;
    QList<DownloadRow *> m_rows;
    QTimer m_figuresTimer; // active while new figures are not shown yet
    QTimer m_orderTimer;   // active while the tab stops are to be ordered
    VerticalScrollArea *m_area = nullptr;
    QVBoxLayout *m_rowLayout = nullptr;
    QPushButton *m_pauseAllButton = nullptr;
    QPushButton *m_resumeAllButton = nullptr;
    QPushButton *m_cancelAllButton = nullptr;
    QPushButton *m_removeEndedButton = nullptr;
};

} // namespace NoxDesk
