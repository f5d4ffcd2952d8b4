#include "hosts/desk/view/DownloadRow.h"

#include "hosts/desk/model/DownloadListModel.h"
#include "hosts/desk/view/ElidedLabel.h"
#include "hosts/desk/view/FailureBox.h"
#include "hosts/desk/view/FileManager.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QProgressBar>
#include <QPushButton>
#include <QUrl>

#include <algorithm>
#include <functional>

namespace NoxDesk {

DownloadRow::DownloadRow(QWidget *parent)
    : QFrame(parent)
    , m_title(new ElidedLabel(Qt::ElideMiddle))
    , m_status(new ElidedLabel(Qt::ElideRight))
    , m_bar(new QProgressBar)
    , m_cancelButton(newButton(tr("Cancel"), QStringLiteral("cancel")))
    , m_retryButton(newButton(tr("Retry"), QStringLiteral("retry")))
    , m_openButton(newButton(tr("Open file"), QStringLiteral("openFile")))
    , m_folderButton(newButton(tr("Show in folder"), QStringLiteral("showFolder")))
    , m_removeButton(newButton(tr("Remove"), QStringLiteral("remove")))
{
    setFrameShape(QFrame::StyledPanel);
    m_title->setObjectName(QStringLiteral("fileName"));
    m_bar->setObjectName(QStringLiteral("progress"));
    m_status->setObjectName(QStringLiteral("status"));
    QFont font = m_title->font();
    font.setBold(true);
    m_title->setFont(font);

    auto *head = new QHBoxLayout;
    head->addWidget(m_title, 1);
    for (QPushButton *button : {m_cancelButton, m_retryButton, m_openButton, m_folderButton, m_removeButton})
        head->addWidget(button);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(head);
    layout->addWidget(m_bar);
    layout->addWidget(m_status);

    connect(m_cancelButton, &QPushButton::clicked, this, &DownloadRow::cancelRequested);
    connect(m_retryButton, &QPushButton::clicked, this, &DownloadRow::retryRequested);
    connect(m_openButton, &QPushButton::clicked, this, [this] { open(m_file); });
    connect(m_folderButton, &QPushButton::clicked, this, &DownloadRow::showFolder);
    connect(m_removeButton, &QPushButton::clicked, this, &DownloadRow::removeRequested);
}

QPushButton *DownloadRow::newButton(const QString &text, const QString &name)
{
    auto *button = new QPushButton(text);
    button->setObjectName(name);
    return button;
}

void DownloadRow::refresh(const QModelIndex &index)
{
    m_file = index.data(DownloadListModel::FileRole).toString();
    const QString name = index.data().toString();
    if (m_title->text() != name) {
        m_title->setText(name);
        nameControls(name);
    }
    m_status->setText(index.data(DownloadListModel::StatusRole).toString());
    const auto state = index.data(DownloadListModel::StateRole).value<Download::State>();
    showBar(index.data(DownloadListModel::PercentRole).toInt(), state);
    showButtons(state);
    showFailure(index, state == Download::State::Failed);
}

void DownloadRow::showFailure(const QModelIndex &index, bool isFailed)
{
    m_status->setVisible(!isFailed);
    if (m_failure == nullptr && isFailed) {
        m_failure = new FailureBox;
        connect(m_failure, &FailureBox::logRequested, this, &DownloadRow::logRequested);
        layout()->addWidget(m_failure);
        Q_EMIT tabStopsChanged();
    }
    if (m_failure != nullptr) {
        m_failure->setVisible(isFailed);
        m_failure->setTexts(index.data(DownloadListModel::ProblemRole).toString(),
                            index.data(DownloadListModel::ToolWordsRole).toString());
    }
}

void DownloadRow::focusFirst()
{
    const QList<QWidget *> stops = tabStops();
    const auto first = std::find_if(stops.cbegin(), stops.cend(), std::mem_fn(&QWidget::isVisible));
    if (first != stops.cend())
        (*first)->setFocus();
}

QList<QWidget *> DownloadRow::tabStops() const
{
    QList<QWidget *> stops{m_cancelButton, m_retryButton, m_openButton, m_folderButton, m_removeButton};
    if (m_failure != nullptr)
        stops += m_failure->tabStops();
    return stops;
}

/** The same buttons stand in every row: who cannot see the row hears which file they are for. */
void DownloadRow::nameControls(const QString &title)
{
    for (QPushButton *button : {m_cancelButton, m_retryButton, m_openButton, m_folderButton, m_removeButton})
        button->setAccessibleName(tr("%1: %2", "button, file").arg(button->text(), title));
    m_bar->setAccessibleName(tr("Progress of %1").arg(title));
    setAccessibleName(tr("Download of %1").arg(title));
}

void DownloadRow::showBar(int percent, Download::State state)
{
    const bool isRunning = state == Download::State::Running || state == Download::State::Cancelling;
    m_bar->setVisible(isRunning || state == Download::State::Waiting);
    m_bar->setEnabled(isRunning);
    percent = state == Download::State::Waiting ? 0 : percent;
    m_bar->setMaximum(percent < 0 ? 0 : 100);
    m_bar->setValue(percent);
}

void DownloadRow::showButtons(Download::State state)
{
    const bool isFinished = state == Download::State::Finished;
    const bool canRetry = state == Download::State::Failed || state == Download::State::Cancelled;
    const bool isActive = !isFinished && !canRetry;
    // Before any is hidden: a button that is hidden, or disabled, gives the focus to another row.
    QPushButton *first = isActive ? m_cancelButton : isFinished ? m_openButton : m_retryButton;
    const bool hadFocus = isAncestorOf(window()->focusWidget());
    first->setVisible(true);
    m_removeButton->setVisible(!isActive);
    if (hadFocus && m_wasActive != isActive)
        first->setFocus();
    m_wasActive = isActive;
    m_cancelButton->setVisible(isActive);
    m_retryButton->setVisible(canRetry);
    m_openButton->setVisible(isFinished);
    m_folderButton->setVisible(isFinished);
}

void DownloadRow::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Delete) && m_removeButton->isVisible()) {
        Q_EMIT removeRequested();
    } else {
        QFrame::keyPressEvent(event);
    }
}

void DownloadRow::showFolder()
{
    if (!QFileInfo::exists(m_file)) {
        open(QFileInfo(m_file).absolutePath());
        return;
    }
    auto *manager = new FileManager(this);
    connect(manager, &FileManager::failed, this, [this] { open(QFileInfo(m_file).absolutePath()); });
    manager->select(m_file);
}

void DownloadRow::open(const QString &path)
{
    if (!QFileInfo::exists(path)) {
        Q_EMIT openingFailed(tr("\"%1\" is not there any more.").arg(path));
    } else if (!QDesktopServices::openUrl(QUrl::fromLocalFile(path))) {
        Q_EMIT openingFailed(tr("No program could be started that opens \"%1\".").arg(path));
    }
}

} // namespace NoxDesk
