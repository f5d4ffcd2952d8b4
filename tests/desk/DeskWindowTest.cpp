#include "hosts/desk/view/StreamPanel.h"
#include "tests/desk/DeskTest.h"
#include "tests/jobs/SampleStreams.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFileDialog>
#include <QHelpEvent>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTableView>
#include <QToolTip>

using namespace NoxDesk;

namespace {

/** Counts how often it is asked. */
class CountingStreams : public StreamTableModel
{
public:
    QVariant data(const QModelIndex &index, int role) const override
    {
        ++questions;
        return StreamTableModel::data(index, role);
    }

    mutable int questions = 0;
};

} // namespace

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
    void missingFfmpeg();
    void closing();
    void dropAndClipboard();
    void remembers();
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
    HostSandbox::play(HostSandbox::pageScenario());
    m_user->readPage(" http://y/ "_s);
    QVERIFY(m_user->sees("busy"));
    QTRY_SOON(m_user->text("title") == "Clip"_s);
    QVERIFY(!m_user->sees("busy") && !m_user->sees("pageWarnings"));
    QCOMPARE(m_user->text("duration"), "Duration 1:02:05"_s);
    QCOMPARE(m_user->text("destination"), m_stage->video("Clip.mp4"_s));

    auto *table = m_user->find<QTableView>("streams");
    table->sortByColumn(StreamTableModel::Quality, Qt::AscendingOrder);
    QCOMPARE(m_user->chosen(), "137"_s);
    QCOMPARE(table->model()->index(0, StreamTableModel::Quality).data().toString(), "128K"_s);
    QCOMPARE(table->model()->index(4, StreamTableModel::Quality).data().toString(), "1080P"_s);
    const auto *sound = m_user->find<QComboBox>("sound");
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
    QList<int> questions;
    for (const int count : {150, 600}) {
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
        questions += model.questions;
    }
    QVERIFY(questions.at(0) > 0);
    QCOMPARE(questions.at(1), questions.at(0));
}

void DeskWindowTest::newestPageWins()
{
    HostSandbox::play("dump: hang"_s);
    m_user->readPage();
    QTRY_SOON(m_stage->hangs("dump"_s));
    QSignalSpy states(&m_user->controller().reader(), &PageReader::stateChanged);
    m_user->readPage(); // is being read already
    QCOMPARE(states.size(), 0);
    HostSandbox::play("dump: json Second 1"_s);
    m_user->readPage("http://y/"_s);
    QTRY_SOON(m_user->text("title") == "Second"_s);
    QTRY_SOON(m_stage->isQuiet());

    HostSandbox::play("dump: hang"_s);
    m_user->readPage();
    QVERIFY(m_user->press("cancelReading"));
    QTRY_SOON(!m_user->sees("busy"));
    QVERIFY(!m_user->sees("failureMessage") && m_user->canPress("download"));
}

/** What the tool says about a page is told, and the log ends with it. The page before cannot be taken for that one. */
void DeskWindowTest::failedPage()
{
    QFile log(m_user->controller().logFile());
    QVERIFY(log.open(QIODevice::Append) && log.write(QByteArray("line\n").repeated(1000)) > 0);
    log.close();
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

    HostSandbox::playPage("ffmpeg: merge|wait joined"_s);
    QVERIFY(m_user->beginDownload("1080P"_s));
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
    const QSize hint = m_user->find("notice")->sizeHint();
    m_user->window().findChild<QTimer *>("noticeTimer"_s)->setInterval(0);
    QTRY_COMPARE(m_user->text("notice"), QString());    // what is over is forgotten
    QCOMPARE(m_user->find("notice")->sizeHint(), hint); // a text that changes often is not measured each time
    QVERIFY(m_user->press("details", 0) && m_user->text("detailsText", 0).contains(file));
    QVERIFY(m_user->press("remove", 1) && m_user->press("removeEnded"));
    QCOMPARE(m_user->list(), QString());
    QVERIFY(QFile::exists(file));
}

/** A name that cannot be used, one that is chosen in the dialog, and files that come to be by another program's hand.
 */
void DeskWindowTest::destinations()
{
    const auto make = [this](const QString &name) { return QFile(m_stage->video(name)).open(QIODevice::WriteOnly); };
    QVERIFY(m_user->seesPage());
    m_user->choose("360P"_s);
    QVERIFY(make("Clip.mp4"_s));
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
    Q_EMIT dialog->fileSelected(m_stage->video("b"_s)); // as it is typed there
    dialog->reject();
    QVERIFY(!m_user->sees("destinationError"));
    QCOMPARE(m_user->text("destination"), m_stage->video("b.mp4"_s));
    QVERIFY(make("b.mp4"_s));
    QVERIFY(m_user->press("download"));
    QTRY_SOON(m_user->text("destinationError").contains("exists already"_s));
    QCOMPARE(m_user->downloads().rowCount(), 1);
}

void DeskWindowTest::missingFfmpeg()
{
    QVERIFY(QFile::remove(QCoreApplication::applicationDirPath() + "/ffmpeg"_s));
    QVERIFY(m_user->seesPage());
    QVERIFY(m_user->text("soundError").contains("cannot be joined"_s));
    QVERIFY(!m_user->canPress("download"));
    auto *sound = m_user->find<QComboBox>("sound");
    sound->setCurrentIndex(sound->count() - 1); // none
    QVERIFY(!m_user->sees("soundError") && m_user->canPress("download"));
}

void DeskWindowTest::closing()
{
    HostSandbox::playPage("18: announce mp4|hang"_s);
    QVERIFY(m_user->beginDownload("360P"_s));
    QTRY_SOON(m_stage->hangs("18"_s));
    QVERIFY(!m_user->window().close());
    QTRY_SOON(m_user->canPress("stay"));
    QCOMPARE(m_user->find("stay")->window()->windowTitle(), "Nox Desk"_s); // no progress that stands still
    QVERIFY(m_user->press("stay"));
    QTRY_SOON(!m_user->sees("stay"));
    QVERIFY(m_user->window().isVisible() && !m_stage->isQuiet());

    QVERIFY(!m_user->window().close());
    QTRY_SOON(m_user->canPress("closeAnyway"));
    QVERIFY(m_user->press("closeAnyway"));
    QTRY_SOON(!m_user->window().isVisible());
}

void DeskWindowTest::dropAndClipboard()
{
    QMimeData data;
    data.setUrls({QUrl(DeskUser::pageAddress())});
    QVERIFY(m_user->drop(data));
    QTRY_SOON(m_user->sees("streams"));
    QCOMPARE(m_user->text("address"), DeskUser::pageAddress());

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
}

void DeskWindowTest::remembers()
{
    QVERIFY(QDir(m_stage->path(QString())).mkdir("mine"_s));
    QVERIFY(m_user->seesPage());
    m_user->type("destination", m_stage->path("mine/a.mp4"_s));
    QVERIFY(m_user->press("download"));
    QTRY_SOON(m_user->sees("openFile", 0));
    m_user->window().resize(m_user->window().minimumSizeHint() + QSize(17, 13));
    const QSize size = m_user->window().size();
    QVERIFY(m_user->window().close());
    restart();
    QCOMPARE(m_user->window().size(), size);
    QVERIFY(m_user->seesPage());
    QCOMPARE(m_user->text("destination"), m_stage->video("Clip.mp4"_s)); // saved elsewhere once
}

QTEST_MAIN(DeskWindowTest)
#include "DeskWindowTest.moc"
