#include "hosts/desk/view/DownloadsPanel.h"

#include "hosts/desk/view/DownloadRow.h"
#include "hosts/desk/view/VerticalScrollArea.h"

#include <nox/jobs/DownloadQueue.h>

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace NoxDesk {

using Nox::DownloadQueue;

namespace {

constexpr int figuresMs = 1000;

} // namespace

DownloadsPanel::DownloadsPanel(DownloadQueue &model, QWidget *parent)
    : QWidget(parent)
    , m_model(model)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addLayout(makeHead());
    layout->addWidget(makeList(), 1);

    connect(&m_model, &QAbstractItemModel::rowsInserted, this, &DownloadsPanel::insertRows);
    connect(&m_model, &QAbstractItemModel::rowsAboutToBeRemoved, this, &DownloadsPanel::removeRows);
    connect(&m_model, &QAbstractItemModel::rowsMoved, this,
            [this](const QModelIndex &, int row, int, const QModelIndex &, int before) {
                moveRow(row, before > row ? before - 1 : before);
            });
    connect(&m_model, &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex &first, const QModelIndex &last, const auto &roles) {
                if (window()->isMinimized())
                    return;
                if (roles.isEmpty())
                    refreshRows(first.row(), last.row());
                else if (!m_figuresTimer.isActive())
                    m_figuresTimer.start();
            });
    // The figures of all running downloads are shown together, so that the window is painted once.
    m_figuresTimer.setSingleShot(true);
    m_figuresTimer.setInterval(figuresMs);
    connect(&m_figuresTimer, &QTimer::timeout, this, [this] {
        if (!window()->isMinimized())
            refreshRows(0, m_model.runningCount() - 1); // these rows are the first
    });
    m_orderTimer.setSingleShot(true); // many rows are inserted or moved in one turn of the event loop
    connect(&m_orderTimer, &QTimer::timeout, this, &DownloadsPanel::orderTabStops);
    connect(&m_model, &DownloadQueue::countsChanged, this, &DownloadsPanel::showCounts);
    insertRows({}, 0, m_model.rowCount() - 1);
    showCounts();
}

QPushButton *DownloadsPanel::newButton(const QString &text, const QString &name, const QString &toolTip,
                                       void (DownloadQueue::*run)())
{
    auto *button = new QPushButton(text);
    button->setObjectName(name);
    button->setToolTip(toolTip);
    connect(button, &QPushButton::clicked, &m_model, run);
    return button;
}

QLayout *DownloadsPanel::makeHead()
{
    m_pauseAllButton = newButton(tr("&Pause all"), QStringLiteral("pauseAll"),
                                 tr("Pauses running and waiting downloads"), &DownloadQueue::pauseAll);
    m_resumeAllButton = newButton(tr("Resume all"), QStringLiteral("resumeAll"), tr("Resumes the paused downloads"),
                                  &DownloadQueue::resumeAll);
    m_cancelAllButton = newButton(tr("Ca&ncel all"), QStringLiteral("cancelAll"),
                                  tr("Cancels running and waiting downloads"), &DownloadQueue::cancelAll);
    m_removeEndedButton =
        newButton(tr("Remove &ended"), QStringLiteral("removeEnded"),
                  tr("Removes ended downloads from the list. Keeps finished files, and failed downloads with a "
                     "partial file."),
                  &DownloadQueue::removeEnded);
    auto *head = new QHBoxLayout;
    head->addWidget(new QLabel(tr("Downloads:")), 1, Qt::AlignLeft); // right in a right-to-left layout
    for (QPushButton *button : {m_pauseAllButton, m_resumeAllButton, m_cancelAllButton, m_removeEndedButton})
        head->addWidget(button);
    return head;
}

QWidget *DownloadsPanel::makeList()
{
    auto *rows = new QWidget;
    m_rowLayout = new QVBoxLayout(rows);
    m_rowLayout->setContentsMargins({});
    m_rowLayout->setSpacing(2);
    m_rowLayout->addStretch();
    m_area = new VerticalScrollArea(rows);
    m_area->setObjectName(QStringLiteral("downloads"));
    m_area->setAccessibleName(tr("Downloads"));
    return m_area;
}

void DownloadsPanel::insertRows(const QModelIndex & /*parent*/, int first, int last)
{
    for (int place = first; place <= last; ++place) {
        auto *row = new DownloadRow(m_model);
        connect(row, &DownloadRow::stepRequested, this, [this, row](int by) {
            DownloadRow *next = m_rows.value(m_rows.indexOf(row) + by, row);
            next->setFocus();
            m_area->ensureWidgetVisible(next);
        });
        connect(row, &DownloadRow::readRequested, this, &DownloadsPanel::readRequested);
        connect(row, &DownloadRow::logRequested, this, &DownloadsPanel::logRequested);
        connect(row, &DownloadRow::openingFailed, this, &DownloadsPanel::openingFailed);
        connect(row, &DownloadRow::tabStopsChanged, &m_orderTimer, qOverload<>(&QTimer::start));
        m_rows.insert(place, row);
        m_rowLayout->insertWidget(place, row);
    }
    m_orderTimer.start();
    refreshRows(first, last);
}

void DownloadsPanel::moveRow(int from, int to)
{
    m_rows.move(from, to);
    DownloadRow *row = m_rows.at(to);
    m_rowLayout->removeWidget(row);
    m_rowLayout->insertWidget(to, row);
    if (row->hasFocus() || row->isAncestorOf(window()->focusWidget()))
        m_area->ensureWidgetVisible(row);
    m_orderTimer.start();
}

/** The keyboard and screen readers need the order of the rows, not the order in which they were created. */
void DownloadsPanel::orderTabStops()
{
    QWidget *before = m_area;
    for (DownloadRow *row : std::as_const(m_rows)) {
        row->raise();
        const QList<QWidget *> stops = row->tabStops();
        for (QWidget *stop : stops) {
            setTabOrder(before, stop);
            before = stop;
        }
    }
}

/** Deletes the row later, since one of its buttons may be the sender of the current signal. */
void DownloadsPanel::removeRows(const QModelIndex & /*parent*/, int first, int last)
{
    bool hadFocus = false;
    for (int row = last; row >= first; --row) {
        DownloadRow *widget = m_rows.takeAt(row);
        hadFocus = hadFocus || widget->hasFocus() || widget->isAncestorOf(window()->focusWidget());
        m_rowLayout->removeWidget(widget);
        widget->hide();
        widget->deleteLater();
    }
    QWidget *next = m_rows.value(first, m_rows.isEmpty() ? nullptr : m_rows.constLast());
    if (hadFocus)
        (next == nullptr ? m_area : next)->setFocus();
}

void DownloadsPanel::refresh()
{
    refreshRows(0, m_model.rowCount() - 1);
}

void DownloadsPanel::refreshRows(int first, int last)
{
    for (int row = first; row <= last; ++row)
        m_rows.at(row)->refresh(m_model.index(row));
}

void DownloadsPanel::showCounts()
{
    m_pauseAllButton->setEnabled(m_model.activeCount() > 0);
    m_resumeAllButton->setVisible(m_model.pausedCount() > 0);
    m_cancelAllButton->setEnabled(m_model.activeCount() > 0);
    m_removeEndedButton->setEnabled(m_model.endedCount() > 0);
}

} // namespace NoxDesk
