#include "hosts/desk/view/MainWindow.h"

#include "hosts/desk/model/Desk.h"
#include "hosts/desk/view/AddressBar.h"
#include "hosts/desk/view/AddressOfferBar.h"
#include "hosts/desk/view/DownloadsPanel.h"
#include "hosts/desk/view/LogDialog.h"
#include "hosts/desk/view/PagePanel.h"
#include "hosts/desk/view/ShownText.h"
#include "hosts/desk/view/VerticalScrollArea.h"

#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QGuiApplication>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QSplitter>
#include <QStatusBar>
#include <QVBoxLayout>

namespace NoxDesk {

MainWindow::MainWindow(Desk &desk, QWidget *parent)
    : QMainWindow(parent)
    , m_desk(desk)
    , m_offer(*QGuiApplication::clipboard())
    , m_addressBar(new AddressBar)
    , m_splitter(new QSplitter(Qt::Vertical))
{
    setWindowTitle(tr("Nox Desk"));
    setAcceptDrops(true);
    layOut();
    addShortcuts();
    restore();
    connect(m_addressBar, &AddressBar::readRequested, &m_desk.reader(), &PageReader::read);
    connect(&m_desk.reader(), &PageReader::refused, m_addressBar, &AddressBar::showProblem);
    connect(m_addressBar, &AddressBar::addressChanged, &m_offer, &AddressOffer::setKnown);
    connect(&m_desk.downloads(), &DownloadListModel::allEnded, this, [this] {
        if (m_isClosing) {
            close();
        }
    });
    m_offer.check();
    m_addressBar->focusField();
}

void MainWindow::layOut()
{
    auto *page = new PagePanel(m_desk);
    auto *pageArea = new VerticalScrollArea(page);
    pageArea->setFocusPolicy(Qt::NoFocus); // what it holds is scrolled to when the keyboard comes to it
    auto *downloads = new DownloadsPanel(m_desk.downloads());
    connect(&m_desk.reader(), &PageReader::stateChanged, this, [this, page](PageReader::State state) {
        if (state == PageReader::State::Ready && m_addressBar->isDone()) {
            page->focusStreams();
        }
    });
    connect(downloads, &DownloadsPanel::openingFailed, this, &MainWindow::warn);
    connect(page, &PagePanel::logRequested, this, &MainWindow::showLog);
    connect(downloads, &DownloadsPanel::logRequested, this, &MainWindow::showLog);

    m_splitter->addWidget(pageArea);
    m_splitter->addWidget(downloads);
    m_splitter->setStretchFactor(0, 3);
    m_splitter->setStretchFactor(1, 2);
    m_splitter->setChildrenCollapsible(false);
    m_splitter->setHandleWidth(3 * m_splitter->handleWidth());
    auto *centre = new QWidget;
    auto *layout = new QVBoxLayout(centre);
    layout->addWidget(m_addressBar);
    layout->addSpacing(layout->spacing());
    layout->addWidget(m_splitter, 1);
    setCentralWidget(centre);

    auto *offerBar = new AddressOfferBar(m_offer);
    connect(offerBar, &AddressOfferBar::accepted, this, &MainWindow::read);
    statusBar()->addPermanentWidget(offerBar, 1);
}

void MainWindow::addShortcuts()
{
    auto *address = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_L), this);
    connect(address, &QShortcut::activated, m_addressBar, &AddressBar::focusField);
    auto *cancel = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    connect(cancel, &QShortcut::activated, &m_desk.reader(), &PageReader::cancel);
    auto *quit = new QShortcut(QKeySequence(QKeySequence::Quit), this);
    connect(quit, &QShortcut::activated, this, &QWidget::close);
}

void MainWindow::restore()
{
    // In terms of the font, so that it fits any scaling, and no larger than the screen.
    const QSize wanted(fontMetrics().averageCharWidth() * 125, fontMetrics().lineSpacing() * 56);
    resize(wanted.boundedTo(screen()->availableSize() * 0.9));
    m_splitter->setSizes({11 * wanted.height() / 20, 9 * wanted.height() / 20});
    restoreGeometry(m_desk.settings().windowGeometry());
    m_splitter->restoreState(m_desk.settings().splitterState());
}

void MainWindow::remember()
{
    m_desk.settings().setWindowGeometry(saveGeometry());
    m_desk.settings().setSplitterState(m_splitter->saveState());
}

void MainWindow::read(const QString &address)
{
    m_addressBar->setAddress(address);
    m_desk.reader().read(address);
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    remember();
    if (m_desk.downloads().activeCount() == 0) {
        m_desk.cancelAll();
        QMainWindow::closeEvent(event);
        return;
    }
    event->ignore();
    if (!m_isClosing) {
        askToClose();
    }
}

void MainWindow::askToClose()
{
    if (const QMessageBox *shown = m_question.data(); shown != nullptr && shown->isVisible()) {
        return;
    }
    const int count = m_desk.downloads().activeCount();
    auto *question = new QMessageBox(QMessageBox::Question, windowTitle(),
                                     tr("Downloads still running: %1. Cancel them and close?").arg(count),
                                     QMessageBox::NoButton, this);
    m_question = question;
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->setInformativeText(tr("What has been fetched so far will be removed."));
    QPushButton *closeButton = question->addButton(tr("Cancel &downloads and close"), QMessageBox::DestructiveRole);
    closeButton->setObjectName(QStringLiteral("closeAnyway"));
    QPushButton *stayButton = question->addButton(tr("&Go on"), QMessageBox::RejectRole);
    stayButton->setObjectName(QStringLiteral("stay"));
    question->setDefaultButton(stayButton);
    question->setEscapeButton(stayButton);
    connect(closeButton, &QPushButton::clicked, this, &MainWindow::cancelAllAndClose);
    question->open();
}

void MainWindow::cancelAllAndClose()
{
    m_isClosing = true;
    if (m_desk.downloads().activeCount() == 0) {
        close();
    } else {
        setEnabled(false);
        m_desk.cancelAll();
    }
}

void MainWindow::warn(const QString &words)
{
    auto *box =
        new QMessageBox(QMessageBox::Warning, windowTitle(), ShownText::breakable(words), QMessageBox::Close, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setObjectName(QStringLiteral("warning"));
    box->open();
}

void MainWindow::showLog()
{
    auto *dialog = new LogDialog(m_desk.logFile(), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void MainWindow::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
        m_offer.check();
    }
    QMainWindow::changeEvent(event);
}

void MainWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (!AddressOffer::addressIn(event->mimeData()).isEmpty()) {
        event->acceptProposedAction();
    }
}

void MainWindow::dropEvent(QDropEvent *event)
{
    const QString address = AddressOffer::addressIn(event->mimeData());
    if (!address.isEmpty()) {
        event->acceptProposedAction();
        read(address);
    }
}

} // namespace NoxDesk
