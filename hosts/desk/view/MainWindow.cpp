#include "hosts/desk/view/MainWindow.h"

#include "hosts/desk/model/DeskController.h"
#include "hosts/desk/view/AddressBar.h"
#include "hosts/desk/view/AddressOfferBar.h"
#include "hosts/desk/view/DownloadsPanel.h"
#include "hosts/desk/view/ElidedLabel.h"
#include "hosts/desk/view/InfoDialog.h"
#include "hosts/desk/view/LogDialog.h"
#include "hosts/desk/view/Notifier.h"
#include "hosts/desk/view/PagePanel.h"
#include "hosts/desk/view/PlaylistDialog.h"
#include "hosts/desk/view/PreferencesDialog.h"
#include "hosts/desk/view/ShownText.h"
#include "hosts/desk/view/ToolVersionLabel.h"

#include <nox/jobs/AddressList.h>

#include <QAccessible>
#include <QClipboard>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QGuiApplication>
#include <QMenu>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QSplitter>
#include <QStatusBar>
#include <QTimer>
#include <QVBoxLayout>

namespace NoxDesk {

MainWindow::MainWindow(DeskController &controller, QWidget *parent)
    : QMainWindow(parent)
    , m_controller(controller)
    , m_addressBar(new AddressBar)
    , m_offerBar(new AddressOfferBar)
    , m_splitter(new QSplitter(Qt::Vertical))
    , m_downloads(new DownloadsPanel(controller.downloads()))
    , m_notice(new ElidedLabel(Qt::ElideMiddle))
    , m_noticeTimer(new QTimer(this))
    , m_notifier(new Notifier(this))
{
    setAcceptDrops(true);
    layOut();
    addShortcuts();
    addMenu();
    restore();
    connect(m_addressBar, &AddressBar::readRequested, this, &MainWindow::useText);
    connect(&m_controller.reader(), &PageReader::refused, m_addressBar, &AddressBar::showError);
    connect(m_addressBar, &AddressBar::addressChanged, m_offerBar, &AddressOfferBar::setKnown);
    connect(qApp, &QGuiApplication::commitDataRequest, this, [this] { m_isClosing = true; }); // at logout
    connect(&m_controller, &DeskController::startedTwice, this, [this] {
        askToRepeat(tr("The list already has a download of this stream."), [this] { m_controller.startAgain(); });
    });
    connect(&m_controller, &DeskController::pagesAddedTwice, this, [this](const QStringList &addresses) {
        askToRepeat(tr("The list already has %1 of these pages.").arg(addresses.size()),
                    [this, addresses] { m_controller.addPagesAgain(addresses); });
    });
    connect(&m_controller, &DeskController::noticed, this, &MainWindow::notice);
    connect(&m_controller, &DeskController::warned, this, &MainWindow::warn);
    connect(&m_controller.downloads(), &Nox::DownloadQueue::countsChanged, this, &MainWindow::showProgress);
    connect(&m_controller.downloads(), &QAbstractItemModel::dataChanged, this, &MainWindow::showProgress);
    connect(&m_controller.reader(), &PageReader::pageChanged, this, &MainWindow::applySettings);
    showProgress();
    applySettings();
    m_addressBar->focusField();
}

void MainWindow::layOut()
{
    auto *page = new PagePanel(m_controller);
    connect(&m_controller.reader(), &PageReader::stateChanged, this, [this, page](PageReader::State state) {
        if (state == PageReader::State::Ready && m_addressBar->isDone())
            page->focusStreams();
    });
    connect(m_downloads, &DownloadsPanel::openingFailed, this, &MainWindow::warn);
    connect(m_downloads, &DownloadsPanel::readRequested, this, &MainWindow::read);
    connect(page, &PagePanel::listRequested, this, [this] {
        auto *dialog = new PlaylistDialog(m_controller.reader().url(), m_controller.tools(), this);
        connect(dialog, &PlaylistDialog::chosen, &m_controller, &DeskController::addPages);
        dialog->open();
    });
    connect(page, &PagePanel::logRequested, this, &MainWindow::showLog);
    connect(m_downloads, &DownloadsPanel::logRequested, this, &MainWindow::showLog);

    m_splitter->addWidget(page);
    m_splitter->addWidget(m_downloads);
    m_splitter->setStretchFactor(0, 1);
    m_splitter->setStretchFactor(1, 1);
    m_splitter->setChildrenCollapsible(false);
    m_splitter->setHandleWidth(3 * m_splitter->handleWidth());
    auto *centre = new QWidget;
    auto *layout = new QVBoxLayout(centre);
    layout->addWidget(m_addressBar);
    layout->addSpacing(layout->spacing());
    layout->addWidget(m_splitter, 1);
    setCentralWidget(centre);

    connect(m_offerBar, &AddressOfferBar::accepted, this, &MainWindow::use);
    m_notice->setObjectName(QStringLiteral("notice"));
    m_noticeTimer->setObjectName(QStringLiteral("noticeTimer"));
    m_noticeTimer->setSingleShot(true);
    constexpr int noticeMs = 20000;
    m_noticeTimer->setInterval(noticeMs);
    connect(m_noticeTimer, &QTimer::timeout, this, [this] {
        if (isActiveWindow()) // otherwise the user has not seen it
            m_notice->setText(QString());
    });
    statusBar()->addWidget(m_notice, 1);
    statusBar()->addPermanentWidget(m_offerBar, 1);
}

void MainWindow::addShortcuts()
{
    new QShortcut(QKeySequence(QStringLiteral("Ctrl+L")), this, m_addressBar, &AddressBar::focusField);
    new QShortcut(Qt::Key_Escape, this, &m_controller.reader(), &PageReader::cancel);
    new QShortcut(QKeySequence::Quit, this, this, &MainWindow::quit);
    auto *again = new QShortcut(Qt::Key_F5, this, &m_controller.reader(), &PageReader::readAgain);
    again->setAutoRepeat(false);
    // A field with the focus handles the key itself.
    new QShortcut(QKeySequence::Paste, this, this,
                  [this] { use(Nox::AddressList::in(QGuiApplication::clipboard()->mimeData())); });
}

void MainWindow::addMenu()
{
    auto *menu = new QMenu(this);
    menu->addAction(tr("&Preferences…"), this, &MainWindow::showPreferences);
    menu->addAction(tr("&Addresses from a file…"), this, &MainWindow::openList);
    menu->addAction(tr("&Log…"), this, &MainWindow::showLog);
    menu->addAction(tr("Keyboard &shortcuts…"), this, &MainWindow::showShortcuts);
    menu->addAction(tr("A&bout…"), this, &MainWindow::showAbout);
    menu->addSeparator();
    menu->addAction(tr("&Quit"), this, &MainWindow::quit);
    m_addressBar->addMenu(menu);
}

/** Handles the text of the address field: usually one address, or a text that contains several. */
void MainWindow::useText(const QString &text)
{
    const QStringList addresses = Nox::AddressList::in(text);
    const bool isOneWord = text.simplified().count(QLatin1Char(' ')) == 0;
    if (addresses.isEmpty() || isOneWord)
        m_controller.reader().read(text); // completes the address, or shows the error
    else
        use(addresses);
}

void MainWindow::use(const QStringList &addresses)
{
    if (addresses.size() == 1) {
        read(addresses.first());
    } else if (!addresses.isEmpty()) {
        m_addressBar->setAddress(QString());
        m_controller.addPages(addresses);
    }
}

void MainWindow::openList()
{
    auto *dialog = new QFileDialog(this, tr("Addresses from a file"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &path) {
        const QStringList addresses = Nox::AddressList::inFile(path);
        if (addresses.isEmpty())
            warn(tr("There are no addresses in \"%1\".").arg(path));
        use(addresses);
    });
    dialog->open();
}

void MainWindow::askToRepeat(const QString &message, const std::function<void()> &repeat)
{
    auto *question = new QMessageBox(QMessageBox::Question, tr("Nox Desk"), message, QMessageBox::Cancel, this);
    question->setAttribute(Qt::WA_DeleteOnClose);
    QPushButton *button = question->addButton(tr("Download &again"), QMessageBox::AcceptRole);
    button->setObjectName(QStringLiteral("downloadAgain"));
    connect(button, &QPushButton::clicked, this, repeat);
    question->open();
}

void MainWindow::showProgress()
{
    const QString progress = m_controller.progressText();
    m_downloads->setVisible(m_controller.downloads().rowCount() > 0);
    m_taskbar.show(progress.isEmpty() ? -1 : m_controller.downloads().batchPercent());
    setWindowTitle(progress.isEmpty() ? tr("Nox Desk") : tr("%1 – Nox Desk", "progress").arg(progress));
}

void MainWindow::applySettings()
{
    m_offerBar->setOffering(m_controller.settings().preferences().offersClipboard);
    m_addressBar->setRecentAddresses(m_controller.settings().recentAddresses());
}

void MainWindow::notice(const QString &title, const QString &message)
{
    m_notice->setText(tr("%1: %2", "what has happened, to which file").arg(title, message));
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0) // older versions have no announcements
    QAccessibleAnnouncementEvent event(m_notice, m_notice->text());
#else
    QAccessibleEvent event(m_notice, QAccessible::Alert);
#endif
    QAccessible::updateAccessibility(&event);
    m_noticeTimer->start();
    m_notifier->notify(title, message);
}

void MainWindow::restore()
{
    // By the size of the font, so that it works with any scale factor; at most the size of the screen.
    const QSize wanted(fontMetrics().averageCharWidth() * 125, fontMetrics().lineSpacing() * 56);
    resize(wanted.boundedTo(screen()->availableSize() * 0.9));
    m_splitter->setSizes({2 * wanted.height() / 3, wanted.height() / 3});
    restoreGeometry(m_controller.settings().windowState(QStringLiteral("geometry")));
    m_splitter->restoreState(m_controller.settings().windowState(QStringLiteral("splitter")));
}

void MainWindow::read(const QString &address)
{
    m_addressBar->setAddress(address);
    m_addressBar->focusField(); // the focused widget may be disabled while the page is read
    m_controller.reader().read(address);
}

void MainWindow::takeOver(const QStringList &addresses)
{
    m_notifier->showWindow();
    use(addresses);
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    m_controller.settings().setWindowState(QStringLiteral("geometry"), saveGeometry());
    m_controller.settings().setWindowState(QStringLiteral("splitter"), m_splitter->saveState());
    m_isClosing = m_isClosing && !event->spontaneous(); // the user can close it, so a logout was stopped
    if (m_isClosing || m_controller.downloads().activeCount() == 0) {
        QMainWindow::closeEvent(event);
    } else {
        event->ignore();
        askToClose();
    }
}

void MainWindow::askToClose()
{
    if (const QMessageBox *shown = m_question.data(); shown != nullptr && shown->isVisible())
        return;
    const int count = m_controller.downloads().activeCount();
    auto *question = new QMessageBox(QMessageBox::Question, tr("Nox Desk"),
                                     tr("Downloads still running: %1. Stop them and close?").arg(count),
                                     QMessageBox::NoButton, this);
    m_question = question;
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->setInformativeText(tr("They stay in the list and can be resumed later."));
    QPushButton *closeButton = question->addButton(tr("&Stop and close"), QMessageBox::DestructiveRole);
    closeButton->setObjectName(QStringLiteral("closeAnyway"));
    QPushButton *stayButton = question->addButton(tr("&Keep downloading"), QMessageBox::RejectRole);
    stayButton->setObjectName(QStringLiteral("stay"));
    question->setDefaultButton(stayButton);
    question->setEscapeButton(stayButton);
    connect(closeButton, &QPushButton::clicked, this, &MainWindow::closeAtOnce);
    connect(&m_controller.downloads(), &Nox::DownloadQueue::countsChanged, question, [this, question] {
        if (m_controller.downloads().activeCount() == 0 && question->close()) // nothing is left to ask about
            close();
    });
    question->open();
}

void MainWindow::quit()
{
    m_isClosing = false; // a logout was stopped
    close();
}

void MainWindow::closeAtOnce()
{
    m_isClosing = true;
    close();
}

void MainWindow::warn(const QString &message)
{
    auto *box =
        new QMessageBox(QMessageBox::Warning, tr("Nox Desk"), ShownText::breakable(message), QMessageBox::Close, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setObjectName(QStringLiteral("warning"));
    box->open();
}

void MainWindow::showLog()
{
    auto *dialog = new LogDialog(m_controller.logFile(), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void MainWindow::showPreferences()
{
    auto *dialog = new PreferencesDialog(m_controller.settings(), this);
    connect(dialog, &QDialog::finished, this, [this] {
        m_controller.applySettings();
        applySettings();
    });
    dialog->open();
}

void MainWindow::showShortcuts()
{
    auto *dialog = new InfoDialog(tr("Keyboard shortcuts"), this);
    const QPair<QKeySequence, QString> rows[] = {
        {QKeySequence(QKeySequence::Paste), tr("read the page whose address is on the clipboard")},
        {QKeySequence(QStringLiteral("Ctrl+L")), tr("go to the address")},
        {QKeySequence(Qt::Key_F5), tr("read the page again")},
        {QKeySequence(Qt::Key_Escape), tr("stop reading the page")},
        {QKeySequence(Qt::Key_Return), tr("download the stream that is chosen")},
        {QKeySequence(QStringLiteral("Shift+F10")), tr("open the menu of the download, which shows its other keys")},
        {QKeySequence(Qt::Key_Delete), tr("remove the ended download from the list")},
        {QKeySequence(Qt::Key_F10), tr("open the menu")},
        {QKeySequence(QKeySequence::Quit), tr("quit")},
    };
    for (const auto &[keys, meaning] : rows)
        dialog->addRow(keys.toString(QKeySequence::NativeText), meaning);
    dialog->open();
}

void MainWindow::showAbout()
{
    auto *dialog = new InfoDialog(tr("About Nox Desk"), this);
    dialog->addRow(tr("Nox Desk and its library:"), QCoreApplication::applicationVersion());
    dialog->addRow(tr("Qt:"), QString::fromLatin1(qVersion()));
    auto *version = new ToolVersionLabel;
    version->ask(m_controller.tools());
    dialog->addRow(tr("Download tool:"), version);
    dialog->open();
}

void MainWindow::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
        m_offerBar->check();
        m_downloads->refresh(); // files may have been removed meanwhile
        m_noticeTimer->start();
        m_notifier->clear();
    }
    if (event->type() == QEvent::WindowStateChange && !isMinimized())
        m_downloads->refresh();
    QMainWindow::changeEvent(event);
}

void MainWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (!Nox::AddressList::in(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent *event)
{
    event->acceptProposedAction();
    use(Nox::AddressList::in(event->mimeData()));
}

} // namespace NoxDesk
