#include "hosts/desk/view/StreamPanel.h"
#include "tests/desk/DeskTest.h"
#include "tests/jobs/SampleStreams.h"

using namespace NoxDesk;

/** The window with stand-in programs: pages and what becomes of them. */
class DeskWindowTest : public DeskTest
{
    Q_OBJECT

private Q_SLOTS:
    void describesPage();
    void manyStreams();
    void newestPageWins();
    void failedPage();
    void downloadsJoined();
    void destinations();
    void closing();
    void unsavedList();
    void clipboard();
};

void DeskWindowTest::describesPage()
{
    m_user->readPage("ftp://x/"_s);
    QVERIFY(m_user->text("addressError").contains("must start with http"_s));
    QTest::keyClick(m_user->find("address"), Qt::Key_X);
    QVERIFY(!m_user->sees("addressError"));
    // Who has set a proxy must not take it for used.
    const QString warning = "/c/noxwebmedia/tool.conf is not used: others may write to it"_s;
    HostSandbox::play("dump: err WARNING: "_s + warning + R"(\n|json Other 18)"_s);
    QVERIFY(m_user->seesPage());
    QCOMPARE(m_user->text("pageWarnings"), "⚠ "_s + warning);
    QTRY_COMPARE(QApplication::focusWidget()->objectName(), "streams"_s);
    HostSandbox::play(HostSandbox::pageScenario());
    m_user->readPage(" http://y/ "_s);
    QTRY_SOON(m_user->text("title") == "Clip"_s);
    QVERIFY(!m_user->sees("busy") && !m_user->sees("pageWarnings"));
    QCOMPARE(m_user->text("duration"), "Duration 1:02:05"_s);
    QCOMPARE(m_user->text("destination"), m_stage->video("Clip.mp4"_s));

    auto *table = m_user->find<QTableView>("streams");
    table->sortByColumn(StreamTableModel::Quality, Qt::AscendingOrder);
    QCOMPARE(m_user->chosen(), "137"_s);
    QCOMPARE(table->model()->index(0, StreamTableModel::Quality).data().toString(), "128K"_s);
    auto *sound = m_user->find<QComboBox>("sound");
    sound->showPopup();
    sound->view()->setCurrentIndex(sound->model()->index(1, 0));
    m_user->controller().plan().setTaken({"/another.mp4"_s}); // a download starts meanwhile
    QCOMPARE(sound->view()->currentIndex().row(), 1);
    sound->hidePopup();
    m_user->choose("128K"_s);
    QCOMPARE(sound->currentText(), "The stream has sound only"_s);
    m_user->choose("360P"_s);
    QVERIFY(!m_user->canPress("sound"));
    QCOMPARE(sound->currentText(), "Part of the stream"_s);
    QVERIFY(m_user->press("showAll"));
    QCOMPARE(m_user->controller().streams().rowCount(), 6);
    QCOMPARE(m_user->chosen(), "18"_s);
}

/** Sizes come one by one: what each of them costs must not grow with the list. */
void DeskWindowTest::manyStreams()
{
    struct CountingStreams : StreamTableModel {
        QVariant data(const QModelIndex &index, int role) const override
        {
            ++questions;
            return StreamTableModel::data(index, role);
        }
        mutable int questions = 0;
    };
    const auto questions = [](int count) {
        QString streams;
        for (int i = 0; i < count; ++i)
            streams += "%1 MP4 %2x%3,"_s.arg(i).arg(320 + 2 * i).arg(180 + i);
        CountingStreams model;
        StreamPanel panel(model);
        panel.show();
        model.setStreams(Nox::StreamChoice(SampleStreams::page(streams)), 60);
        QCoreApplication::processEvents();
        model.questions = 0;
        model.setSize("0"_s, 1000);
        QCoreApplication::processEvents();
        return model.questions;
    };
    QVERIFY(questions(150) > 0);
    QCOMPARE(questions(600), questions(150));
}

void DeskWindowTest::newestPageWins()
{
    HostSandbox::play("dump: hang"_s);
    m_user->readPage();
    QTRY_SOON(m_stage->hangs("dump"_s));
    QSignalSpy states(&m_user->controller().reader(), &PageReader::stateChanged);
    m_user->readPage(); // is being read already
    QCOMPARE(states.size(), 0);
    HostSandbox::play("dump: wait go|json Second 1"_s);
    m_user->readPage("http://y/"_s);
    QTest::keyClicks(QApplication::focusWidget(), "http://z/"_s); // the focus stays there
    m_stage->let("go"_s);
    QTRY_SOON(m_user->text("title") == "Second"_s);
    QCOMPARE(m_user->text("address"), "http://z/"_s);
    QCOMPARE(QApplication::focusWidget()->objectName(), "address"_s);
    QTRY_SOON(m_stage->isQuiet());

    HostSandbox::play("dump: hang"_s);
    m_user->readPage();
    QVERIFY(m_user->press("cancelReading"));
    QTRY_SOON(!m_user->sees("busy"));
    QVERIFY(!m_user->sees("failureMessage") && m_user->canPress("download"));
    m_user->readPage();
    HostSandbox::play("dump: json Third 1"_s);
    QVERIFY(m_user->press("cancelReading"));
    m_user->readPage(); // while the tool is still ending
    QTRY_SOON(m_user->text("title") == "Third"_s);
}

/** What the tool says about a page is told, and the log ends with it. The page before cannot be taken for that one. */
void DeskWindowTest::failedPage()
{
    Files::write(m_user->controller().logFile(), QByteArray("line\n").repeated(1000));
    QVERIFY(m_user->seesPage());
    m_user->choose("360P"_s);
    HostSandbox::play("dump: wait go|err ERROR: gone|exit 1"_s);
    m_user->readPage("http://y/"_s);
    QVERIFY(m_user->sees("busy") && m_user->sees("streams"));
    QVERIFY(m_user->sees("outdated") && !m_user->canPress("download") && !m_user->canPress("streams"));
    m_stage->let("go"_s);
    QTRY_SOON(m_user->sees("failureMessage"));
    QVERIFY(m_user->text("failureMessage").contains("could not read"_s) && !m_user->sees("busy"));
    QVERIFY(m_user->text("failureDetails").contains("gone"_s));
    QCOMPARE(m_user->text("failedAddress"), "http://y/"_s);
    QCOMPARE(m_user->text("title"), "Clip"_s);
    QVERIFY(m_user->sees("outdated") && !m_user->canPress("download"));

    QVERIFY(m_user->press("showLog"));
    const auto *text = m_user->find<QPlainTextEdit>("logText");
    QVERIFY(text->toPlainText().contains("gone"_s));
    QTRY_VERIFY(text->verticalScrollBar()->maximum() > 0);
    QCOMPARE(text->verticalScrollBar()->value(), text->verticalScrollBar()->maximum());
    text->window()->close();

    HostSandbox::play("dump: kill SIGKILL"_s);
    m_user->readPage("http://z/"_s);
    QTRY_SOON(m_user->text("failureMessage").contains("crashed"_s));
    QVERIFY(!m_user->sees("failureDetails"));
    QVERIFY(m_user->press("dismissFailure"));
    QVERIFY(!m_user->sees("failureMessage") && !m_user->sees("outdated"));
    QCOMPARE(m_user->chosen(), "18"_s);
    QVERIFY(m_user->press("download"));
    QTRY_SOON(m_user->sees("openFile", 0));
}

void DeskWindowTest::downloadsJoined()
{
    HostSandbox::playPage(
        "137: announce mp4|progress 25.0 1000000|wait on|err WARNING: [nox:waiting] 30 1 10\\n|hang"_s);
    QVERIFY(m_user->beginDownload("1080P"_s));
    QTRY_SOON_COMPARE(m_user->text("status", 0), "Fetching video · 250.0 kB / 1.2 MB · 10 bytes/s · 26:23:20 left"_s);
    QCOMPARE(m_user->find("progress", 0)->property("value").toInt(), 20);
    m_stage->let("on"_s);
    QTRY_SOON_COMPARE(m_user->text("status", 0),
                      "Fetching video · The server does not answer. It is asked again in 30 s (1 of 10)."_s);
    QVERIFY(m_user->press("cancel", 0));
    QTRY_SOON_COMPARE(m_user->text("status", 0), "Cancelled"_s);
    QCOMPARE(m_stage->files(), QStringList());
    QVERIFY(!m_user->sees("cancel", 0) && !m_user->sees("openFile", 0) && !m_user->canPress("showFolder", 0));

    HostSandbox::playPage("140: announce m4a|wait audio\nffmpeg: merge|wait joined"_s);
    QVERIFY(m_user->beginDownload("1080P"_s));
    QTRY_SOON(m_user->text("status", 0).startsWith("Fetching audio"_s));
    m_stage->let("audio"_s);
    QTRY_SOON_COMPARE(m_user->text("status", 0), "Joining video and audio"_s);
    m_stage->let("joined"_s);
    QTRY_SOON_COMPARE(m_user->text("status", 0), "Finished, 7 bytes"_s); // "137+140"
    const QString file = m_stage->video("Clip.mp4"_s);
    QCOMPARE(m_stage->files(), QStringList("Clip.mp4"_s));
    QVERIFY(m_user->press("openFile", 0));
    QTRY_SOON(opened().size() == 1);
    QVERIFY(m_user->press("showFolder", 0));
    // There is no session bus, and so no file manager that would select the file.
    QTRY_SOON_COMPARE(opened(), QStringList({"file://"_s + file, "file://"_s + m_stage->videos()}));
    QVERIFY(m_user->text("notice").startsWith("Download finished"_s));
    QVERIFY(m_user->find("notice")->width() > m_user->window().width() * 4 / 5);
    m_user->window().findChild<QTimer *>("noticeTimer"_s)->setInterval(0);
    QTRY_COMPARE(m_user->text("notice"), QString()); // what is over is forgotten
    QVERIFY(m_user->press("details", 0) && m_user->text("detailsText", 0).contains(file));
    QVERIFY(m_user->press("remove", 1) && m_user->press("removeEnded"));
    QCOMPARE(m_user->list(), QString());
    QVERIFY(QFile::exists(file));
}

/** Without ffmpeg; a name that cannot be used; one that is chosen in the dialog; files that other programs make. */
void DeskWindowTest::destinations()
{
    QVERIFY(QFile::remove(QCoreApplication::applicationDirPath() + "/ffmpeg"_s));
    QVERIFY(m_user->seesPage());
    QVERIFY(m_user->text("soundError").contains("cannot be joined"_s));
    QVERIFY(!m_user->canPress("download"));
    auto *sound = m_user->find<QComboBox>("sound");
    sound->setCurrentIndex(sound->count() - 1); // none
    QVERIFY(!m_user->sees("soundError") && m_user->canPress("download"));
    Files::write(m_stage->video("Clip.mp4"_s));
    QVERIFY(m_user->press("download"));
    QTRY_SOON(m_user->text("fileName", 0) == "Clip(1).mp4"_s);

    m_user->type("destination", m_stage->video("a?.mp4"_s));
    QVERIFY(m_user->text("destinationError").contains("must not contain"_s));
    QVERIFY(!m_user->canPress("download"));
    QHelpEvent hover(QEvent::ToolTip, {}, m_user->find("destination")->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(m_user->find("destination"), &hover);
    QVERIFY(QToolTip::text().contains("a?.mp4"_s));
    QTest::keyClick(m_user->find("destination"), Qt::Key_Return);

    QVERIFY(m_user->press("browse"));
    auto *dialog = m_user->window().findChild<QFileDialog *>();
    QVERIFY(dialog != nullptr);
    QVERIFY(QDir(m_stage->videos()).mkdir("mine"_s));
    Q_EMIT dialog->fileSelected(m_stage->video("mine/b"_s)); // as it is typed there
    dialog->reject();
    QVERIFY(!m_user->sees("destinationError"));
    QCOMPARE(m_user->text("destination"), m_stage->video("mine/b.mp4"_s));
    Files::write(m_stage->video("mine/b.mp4"_s));
    QVERIFY(m_user->press("download"));
    QTRY_SOON(m_user->text("destinationError").contains("exists already"_s));
    QCOMPARE(m_user->downloads().rowCount(), 1);
    m_user->choose("360P"_s);
    m_user->type("destination", m_stage->video("mine/c.mp4"_s));
    QVERIFY(m_user->press("download"));
    QTRY_SOON(m_user->sees("openFile", 0) && m_user->sees("openFile", 1));
    m_user->readPage();
    QTRY_SOON(m_user->text("destination") == m_stage->video("Clip(2).mp4"_s)); // not the folder that was used once
}

void DeskWindowTest::closing()
{
    HostSandbox::playPage("18: touch parts/a.part|announce mp4|hang"_s);
    QVERIFY(m_user->beginDownload("360P"_s));
    QTRY_SOON(m_stage->hangs("18"_s));
    QVERIFY(!m_user->window().close());
    QTRY_SOON(m_user->canPress("stay"));
    QCOMPARE(m_user->find("stay")->window()->windowTitle(), "Nox Desk"_s); // no progress that stands still
    QVERIFY(m_user->press("stay"));
    QTRY_SOON(!m_user->sees("stay"));
    QVERIFY(m_user->window().isVisible() && !m_stage->isQuiet());

    int manager = 0; // the window does not use it
    QVERIFY(QMetaObject::invokeMethod(qApp, "commitDataRequest", Qt::DirectConnection,
                                      QGenericArgument("QSessionManager&", &manager)));
    m_user->find<QToolButton>("menu")->menu()->actions().last()->trigger(); // another program has stopped the logout
    QTRY_SOON(m_user->canPress("stay"));
    QVERIFY(m_user->press("stay"));
    QTRY_SOON(!m_user->sees("stay"));
    QVERIFY(!m_user->window().close());
    QTRY_SOON(m_user->canPress("closeAnyway"));
    const QSize size(617, 513);
    m_user->window().resize(size);
    QVERIFY(m_user->press("closeAnyway"));
    QTRY_SOON(!m_user->window().isVisible());
    restart();
    QCOMPARE(m_user->window().size(), size);
    QCOMPARE(DeskUser().list(), QString()); // another window must not take the paused download

    HostSandbox::playPage("18: announce mp4|wait go"_s);
    QVERIFY(m_user->press("retry", 0));
    QVERIFY(!m_user->window().close());
    QTRY_SOON(m_user->canPress("stay"));
    m_stage->let("go"_s);
    QTRY_SOON(!m_user->window().isVisible()); // nothing is left to ask about
}

/** As on a full disk. The user is not asked to close the message again and again. */
void DeskWindowTest::unsavedList()
{
    QVERIFY(QDir().mkpath(m_stage->path("state/noxwebmedia/nox-desk-downloads-1.json"_s)));
    QVERIFY(m_user->beginDownload("360P"_s));
    QTRY_SOON(m_user->text("warning").contains("disk full"_s));
    m_user->find("warning")->close();
    QTRY_SOON(m_user->sees("openFile", 0));
    QVERIFY(m_user->press("removeEnded"));
    QTest::qWait(300); // longer than changes are collected
    QVERIFY(!m_user->sees("warning"));
}

void DeskWindowTest::clipboard()
{
    QVERIFY(!m_user->sees("clipboardOffer"));
    QGuiApplication::clipboard()->setText("http://x/?a&b"_s);
    QTRY_SOON(m_user->canPress("clipboardOffer"));
    QVERIFY(m_user->press("clipboardOffer"));
    QCOMPARE(m_user->text("address"), "http://x/?a&b"_s);
    QVERIFY(!m_user->sees("clipboardOffer"));
    QTRY_SOON(m_user->controller().reader().url() == "http://x/?a&b"_s);
    QGuiApplication::clipboard()->setText("http://x/3"_s);
    QTRY_SOON(m_user->canPress("dismissOffer"));
    QVERIFY(m_user->press("dismissOffer"));
    QEvent activation(QEvent::ActivationChange); // looks at the clipboard again
    QApplication::sendEvent(&m_user->window(), &activation);
    QVERIFY(!m_user->sees("clipboardOffer"));
    HostSandbox::play("dump: hang"_s);
    QSignalSpy counts(&m_user->downloads(), &Nox::DownloadQueue::countsChanged);
    m_user->window().takeOver({"x.org/1"_s, " www.x/2"_s, "x.org/1"_s}); // of the command line
    QCOMPARE(counts.size(), 1);                                          // one by one, many would take long
    QCOMPARE(m_user->list(), "https://x.org/1=Running https://www.x/2=Running"_s);
}

QTEST_MAIN(DeskWindowTest)
#include "DeskWindowTest.moc"
