#include "hosts/desk/view/DownloadRow.h"

#include "hosts/desk/view/ElidedLabel.h"
#include "hosts/desk/view/FailureBox.h"
#include "hosts/desk/view/Opener.h"
#include "hosts/desk/view/WrappedText.h"

#include <QAction>
#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QProgressBar>
#include <QStackedWidget>
#include <QToolButton>
#include <QUrl>

namespace NoxDesk {

using Nox::DownloadQueue;

namespace {

constexpr int barCharacters = 14;
constexpr int detailsLines = 8;

/** @param action that the button runs and shows, or null */
QToolButton *newButton(const char *name, QAction *action = nullptr)
{
    auto *button = new QToolButton;
    button->setObjectName(QString::fromLatin1(name));
    button->setAutoRaise(action == nullptr);
    button->setFocusPolicy(Qt::StrongFocus);
    if (action != nullptr)
        button->setDefaultAction(action);
    return button;
}

} // namespace

DownloadRow::DownloadRow(DownloadQueue &model, QWidget *parent)
    : QFrame(parent)
    , m_model(model)
    , m_detailsButton(newButton("details"))
    , m_title(new ElidedLabel(Qt::ElideMiddle))
    , m_status(new ElidedLabel(Qt::ElideRight))
    , m_bar(new QProgressBar)
    , m_buttons(new QStackedWidget)
    , m_menuButton(newButton("rowMenu"))
{
    m_title->setObjectName(QStringLiteral("fileName"));
    m_bar->setObjectName(QStringLiteral("progress"));
    m_status->setObjectName(QStringLiteral("status"));
    for (QWidget *label : {m_title, m_status})
        label->setContextMenuPolicy(Qt::NoContextMenu); // the menu of the row is shown instead
    m_detailsButton->setCheckable(true);
    connect(m_detailsButton, &QToolButton::toggled, this, &DownloadRow::showDetails);
    addActions();
    layOut();
    setFocusPolicy(Qt::ClickFocus); // Tab goes from button to button
    for (QWidget *part : tabStops() + QList<QWidget *>{m_bar, this})
        part->installEventFilter(this);
}

template <typename Run>
QAction *DownloadRow::newAction(const QString &text, const char *name, const char *key, const Run &run)
{
    auto *action = new QAction(text, this);
    action->setObjectName(QString::fromLatin1(name));
    action->setShortcut(QKeySequence(QString::fromLatin1(key)));
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(action, &QAction::triggered, this, run);
    addAction(action);
    return action;
}

void DownloadRow::addActions()
{
    const auto call = [this](void (DownloadQueue::*run)(int)) {
        return [this, run] { (m_model.*run)(m_index.row()); };
    };
    m_openAction = newAction(tr("Open file"), "open", "Ctrl+O", &DownloadRow::openFile);
    m_folderAction = newAction(tr("Show in folder"), "showFolder", "Ctrl+Shift+O", &DownloadRow::showFolder);
    m_retryAction = newAction(tr("Retry"), "retryAction", "Ctrl+T", call(&DownloadQueue::retry));
    m_pauseAction = newAction(tr("Pause"), "pauseAction", "Ctrl+P", call(&DownloadQueue::pause));
    m_cancelAction = newAction(tr("Cancel"), "cancelAction", "Ctrl+Del", call(&DownloadQueue::cancel));
    m_upAction = newAction(tr("Move up"), "moveUp", "Alt+Up", [this] { m_model.move(m_index.row(), -1); });
    m_downAction = newAction(tr("Move down"), "moveDown", "Alt+Down", [this] { m_model.move(m_index.row(), 1); });
    newAction(tr("Copy address of the page"), "copyAddress", "Ctrl+C",
              [this] { QGuiApplication::clipboard()->setText(m_address); });
    newAction(tr("Open page in the browser"), "openPage", "Ctrl+B", [this] { newOpener()->open(QUrl(m_address)); });
    newAction(tr("Read page again"), "readAgain", "Ctrl+R", [this] { Q_EMIT readRequested(m_address); });
    newAction(tr("Details"), "detailsAction", "Ctrl+D", [this] { m_detailsButton->toggle(); });
    m_removeAction = newAction({}, "remove", "Del", call(&DownloadQueue::remove));
    setContextMenuPolicy(Qt::ActionsContextMenu);
    auto *menu = new QMenu(m_menuButton);
    menu->addActions(actions());
    m_menuButton->setText(QStringLiteral("⋯"));
    m_menuButton->setMenu(menu);
    m_menuButton->setPopupMode(QToolButton::InstantPopup);
    m_menuButton->setStyleSheet(QStringLiteral("QToolButton::menu-indicator { image: none; }"));
}

void DownloadRow::layOut()
{
    m_pauseButton = newButton("pause", m_pauseAction);
    m_cancelButton = newButton("cancel", m_cancelAction);
    m_retryButton = newButton("retry", m_retryAction);
    m_openButton = newButton("openFile", m_openAction);
    for (QToolButton *button : {m_cancelButton, m_retryButton, m_openButton})
        m_buttons->addWidget(button);
    setFrameShape(QFrame::StyledPanel);
    QFont font = m_title->font();
    font.setBold(true);
    m_title->setFont(font);
    m_bar->setFixedWidth(barCharacters * fontMetrics().averageCharWidth());
    m_buttons->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_bar->setFixedHeight(fontMetrics().height());
    auto *lines = new QGridLayout;
    lines->setVerticalSpacing(0);
    lines->setColumnStretch(1, 1);
    lines->setColumnMinimumWidth(2, m_bar->width()); // keeps the columns of all rows aligned
    lines->addWidget(m_detailsButton, 0, 0, 2, 1);
    lines->addWidget(m_title, 0, 1);
    lines->addWidget(m_bar, 0, 2);
    lines->addWidget(m_status, 1, 1, 1, 2);
    lines->addWidget(m_pauseButton, 0, 3, 2, 1); // not part of the group of which one is visible
    lines->addWidget(m_buttons, 0, 4, 2, 1);
    lines->addWidget(m_menuButton, 0, 5, 2, 1);
    auto *layout = new QVBoxLayout(this);
    const int margin = fontMetrics().lineSpacing() / 8;
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->addLayout(lines);
}

void DownloadRow::refresh(const QModelIndex &index)
{
    m_index = index;
    m_file = index.data(DownloadQueue::FileRole).toString();
    m_address = index.data(DownloadQueue::AddressRole).toString();
    const auto state = index.data(DownloadQueue::StateRole).value<DownloadQueue::State>();
    const QString name = index.data().toString();
    const QString retry = state == DownloadQueue::Paused ? tr("Resume") : tr("Retry");
    if (m_title->text() != name || m_retryAction->text() != retry) {
        m_title->setText(name);
        m_retryAction->setText(retry);
        nameControls(name);
    }
    m_status->setText(index.data(DownloadQueue::StatusRole).toString());
    showBar(index.data(DownloadQueue::PercentRole).toInt(), state);
    showState(state);
    showDetails();
}

void DownloadRow::showState(DownloadQueue::State state)
{
    const bool isFinished = state == DownloadQueue::Finished;
    const bool isPaused = state == DownloadQueue::Paused;
    const bool canRetry = isPaused || state == DownloadQueue::Failed || state == DownloadQueue::Cancelled;
    const bool isActive = !isFinished && !canRetry;
    const bool isStopping = state == DownloadQueue::Pausing || state == DownloadQueue::Cancelling;
    QToolButton *button = isActive ? m_cancelButton : isFinished ? m_openButton : m_retryButton;
    QWidget *focused = window()->focusWidget();
    const bool hadFocus = focused == m_pauseButton || m_buttons->isAncestorOf(focused);
    m_buttons->setCurrentWidget(button);
    m_pauseButton->setVisible(isActive);
    m_pauseAction->setEnabled(isActive && !isStopping);
    m_cancelAction->setEnabled(isActive && state != DownloadQueue::Cancelling);
    m_openAction->setEnabled(isFinished && QFileInfo::exists(m_file));
    m_folderAction->setEnabled(isFinished);
    m_retryAction->setEnabled(canRetry);
    m_upAction->setEnabled(state == DownloadQueue::Waiting);
    m_downAction->setEnabled(state == DownloadQueue::Waiting);
    m_removeAction->setEnabled(!isActive);
    const bool hasParts = isPaused || state == DownloadQueue::Failed;
    m_removeAction->setText(hasParts ? tr("Remove from the list, with any partial file") : tr("Remove from the list"));
    if (hadFocus && !(focused->isVisibleTo(this) && focused->isEnabled())) {
        // While it stops, the same key must not press another button.
        QWidget *next = isStopping || !button->isEnabled() ? static_cast<QWidget *>(this) : button;
        next->setFocus();
    }
}

/** Shows or hides the details below the line: status, file and page, or the error message. */
void DownloadRow::showDetails()
{
    const bool isShown = m_detailsButton->isChecked();
    const bool isFailed = m_index.data(DownloadQueue::StateRole).value<DownloadQueue::State>() == DownloadQueue::Failed;
    m_detailsButton->setArrowType(isShown ? Qt::DownArrow : isRightToLeft() ? Qt::LeftArrow : Qt::RightArrow);
    if (isShown && m_details == nullptr) {
        m_details = new WrappedText(detailsLines);
        m_details->setObjectName(QStringLiteral("detailsText"));
        m_details->setAccessibleName(tr("Details"));
        m_failure = new FailureBox;
        connect(m_failure, &FailureBox::logRequested, this, &DownloadRow::logRequested);
        layout()->addWidget(m_failure);
        layout()->addWidget(m_details);
        Q_EMIT tabStopsChanged();
    }
    if (m_details == nullptr)
        return;
    m_details->setVisible(isShown);
    m_failure->setVisible(isShown && isFailed);
    if (isShown) {
        const QString place = QDir::toNativeSeparators(m_file) + QLatin1Char('\n') + m_address;
        m_details->showText(isFailed ? place : m_status->text() + QLatin1Char('\n') + place);
        m_failure->setTexts(m_index.data(DownloadQueue::ErrorRole).toString(),
                            m_index.data(DownloadQueue::ErrorDetailsRole).toString());
    }
}

QList<QWidget *> DownloadRow::tabStops() const
{
    QList<QWidget *> stops{m_detailsButton, m_pauseButton, m_cancelButton, m_retryButton, m_openButton, m_menuButton};
    if (m_failure != nullptr)
        stops += m_failure->tabStops() + QList<QWidget *>{m_details};
    return stops;
}

/** Every row has the same buttons, so their accessible names include the file. */
void DownloadRow::nameControls(const QString &title)
{
    const auto name = [&title](const QString &text) { return tr("%1: %2", "button, file").arg(text, title); };
    for (QToolButton *button : {m_pauseButton, m_cancelButton, m_retryButton, m_openButton})
        button->setAccessibleName(name(button->text()));
    m_detailsButton->setAccessibleName(name(tr("Details")));
    m_menuButton->setAccessibleName(name(tr("More")));
    m_bar->setAccessibleName(tr("Progress of %1").arg(title));
    setAccessibleName(tr("Download of %1").arg(title));
}

void DownloadRow::showBar(int percent, DownloadQueue::State state)
{
    const bool isRunning =
        state == DownloadQueue::Running || state == DownloadQueue::Cancelling || state == DownloadQueue::Pausing;
    m_bar->setVisible(isRunning);
    m_bar->setMaximum(percent < 0 ? 0 : 100);
    m_bar->setValue(percent);
}

void DownloadRow::paintEvent(QPaintEvent *event)
{
    QFrame::paintEvent(event);
    QPainter painter(this);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    if (hasFocus()) // a style may show the focus only after a key
        painter.drawRect(rect().adjusted(1, 1, -1, -1));
}

bool DownloadRow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        const bool isStep =
            key->modifiers() == Qt::NoModifier && (key->key() == Qt::Key_Up || key->key() == Qt::Key_Down);
        if (isStep)
            Q_EMIT stepRequested(key->key() == Qt::Key_Up ? -1 : 1);
        return isStep;
    }
    // A style animates a bar that was busy when it was last painted, even if nobody sees the bar now. It stops when the
    // event is not accepted, and begins again when the bar is painted.
    return watched == m_bar && event->type() == QEvent::StyleAnimationUpdate
        && (m_bar->visibleRegion().isEmpty() || window()->isMinimized());
}

void DownloadRow::openFile()
{
    refresh(QModelIndex(m_index)); // shows if the file is missing; a copy, since refresh() sets the index
    if (m_openAction->isEnabled())
        newOpener()->open(QUrl::fromLocalFile(m_file));
}

void DownloadRow::showFolder()
{
    const QString folder = QFileInfo(m_file).absolutePath();
    refresh(QModelIndex(m_index)); // a copy, since refresh() sets the index
    if (QFileInfo::exists(m_file))
        newOpener()->showInFolder(m_file);
    else if (QFileInfo::exists(folder))
        newOpener()->open(QUrl::fromLocalFile(folder));
    else
        Q_EMIT openingFailed(tr("\"%1\" no longer exists.").arg(folder));
}

Opener *DownloadRow::newOpener()
{
    auto *opener = new Opener(this);
    connect(opener, &Opener::failed, this, [this](const QString &name) {
        Q_EMIT openingFailed(tr("No program could be started that opens \"%1\".").arg(name));
    });
    return opener;
}

} // namespace NoxDesk
