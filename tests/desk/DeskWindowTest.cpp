#include "hosts/desk/view/StreamPanel.h"
#include "tests/desk/DeskTest.h"
#include "tests/jobs/SampleStreams.h"
#include "tests/support/TextTable.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QComboBox>
#include <QDropEvent>
#include <QFileDialog>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QToolTip>

using namespace NoxDesk;

namespace {

/** Counts how often it is asked. */
class CountingStreams : public StreamTableModel
{
public:
    QVariant data(const QModelIndex &index, int role) const override
    {
        ++m_questions;
        return StreamTableModel::data(index, role);
    }

    /** Questions that the view has when a size becomes known in a list of @p count streams. */
    static int questions(int count)
    {
        QString streams;
        for (int i = 0; i < count; ++i)
            streams += "%1 MP4 %2x%3,"_s.arg(i).arg(320 + 2 * i).arg(180 + i);
        CountingStreams model;
        StreamPanel panel(model);
        panel.show();
        model.setStreams(Nox::StreamChoice(SampleStreams::page(streams)), 60);
        QCoreApplication::processEvents();
        model.m_questions = 0;
        model.setSize("0"_s, 1000);
        QCoreApplication::processEvents();
        return model.rowCount() < count ? 0 : model.m_questions;
    }

private:
    mutable int m_questions = 0;
};

} // namespace

/** The window with stand-in programs: pages and what becomes of them. */
class DeskWindowTest : public DeskTest
{
    Q_OBJECT

private Q_SLOTS:
    void describesPage();
    void unusedSettings();
    void manyStreams();
    void refusesAddress();
    void unreadablePage_data();
    void unreadablePage();
    void cancelsReading();
    void newestPageWins();
    void downloadsJoined();
    void cancelsDownload_data();
    void cancelsDownload();
    void failedDownload_data();
    void failedDownload();
    void twoDownloads();
    void badDestination();
    void missingFfmpeg();
    void closing();
    void dropAndClipboard();
    void remembers();
    void failedPageKeepsTheOther();
    void fileAppears();
    void logOpensAtItsEnd();
};

void DeskWindowTest::describesPage()
{
    m_user->readPage(QLatin1Char(' ') + DeskUser::pageAddress() + QLatin1Char(' '));
    QVERIFY(m_user->sees("busy"));
    QTRY_SOON(m_user->sees("streams"));
    QCOMPARE(m_user->text("title"), "Clip"_s);
    QCOMPARE(m_user->text("duration"), "Duration 1:02:05"_s);
    QCOMPARE(m_user->streams(),
             "1080p, with sound,1080P,MP4,video (DASH),;720p, with sound,720P,MP4,video (DASH),;"
             "360p, with sound,360P,MP4,video,;sound only, 160 kbit/s,160K,WEBM,audio (DASH),;"
             "sound only, 128 kbit/s,128K,M4A,audio (DASH),"_s);
    QCOMPARE(m_user->chosen(), "137"_s);
    QCOMPARE(m_user->text("destination"), m_stage->video("Clip.mp4"_s));
    const auto *sound = qobject_cast<QComboBox *>(m_user->find("sound"));
    m_user->choose("128K"_s);
    QCOMPARE(sound->currentText(), "The stream has sound only"_s);
    m_user->choose("360P"_s);
    QVERIFY(!m_user->canPress("sound"));
    QCOMPARE(sound->currentText(), "Part of the stream"_s);
    QVERIFY(m_user->press("showAll"));
    QCOMPARE(m_user->controller().streams().rowCount(), 6);
    QCOMPARE(m_user->chosen(), "18"_s);
    // What was chosen is gone from the thinned table: the best is chosen instead.
    m_user->controller().chooseStream(-1);
    QVERIFY(!m_user->canPress("download"));
}

/** Who has set a proxy must not take it for used. */
void DeskWindowTest::unusedSettings()
{
    const QString words = "/c/noxwebmedia/tool.conf is not used: others may write to it"_s;
    HostSandbox::play("dump: err WARNING: "_s + words + R"(\n|json Clip 18)"_s);
    m_user->readPage(DeskUser::pageAddress());
    QTRY_SOON(m_user->sees("streams"));
    QCOMPARE(m_user->text("pageWarnings"), "⚠ "_s + words);
    HostSandbox::play("dump: json Clip 18"_s);
    m_user->readPage("http://x/2"_s);
    QTRY_SOON(!m_user->sees("pageWarnings"));
}

/** Sizes come one by one: what each of them costs must not grow with the list. */
void DeskWindowTest::manyStreams()
{
    const int few = CountingStreams::questions(150);
    QVERIFY(few > 0);
    QCOMPARE(CountingStreams::questions(600), few);
}

void DeskWindowTest::refusesAddress()
{
    m_user->readPage("ftp://x/"_s);
    QVERIFY(m_user->text("addressError").contains("must start with http"_s));
    QCOMPARE(m_stage->runCount(), 0);
    QTest::keyClick(m_user->find("address"), Qt::Key_X);
    QVERIFY(!m_user->sees("addressError"));
}

void DeskWindowTest::unreadablePage_data()
{
    const TextTable row{"scenario", "words", "failureDetails"};
    row("tool's own words", "dump: err ERROR: Unsupported URL|exit 1", "could not read", "Unsupported URL");
    row("crash", "dump: kill SIGKILL", "crashed");
    row("no stream", "dump: json Clip ", "no video");
    row("no tool", "", "The download tool is missing");
}

void DeskWindowTest::unreadablePage()
{
    QFETCH(QString, scenario);
    QFETCH(QString, words);
    HostSandbox::play(scenario);
    if (scenario.isEmpty())
        QVERIFY(QFile::remove(QCoreApplication::applicationDirPath() + "/yt.zip"_s));
    m_user->readPage();
    QTRY_SOON(m_user->sees("failureMessage"));
    QVERIFY2(m_user->text("failureMessage").contains(words), qPrintable(m_user->text("failureMessage")));
    QFETCH(QString, failureDetails);
    QVERIFY2(m_user->text("failureDetails").contains(failureDetails), qPrintable(m_user->text("failureDetails")));
    QCOMPARE(m_user->text("failureDetails").isEmpty(), failureDetails.isEmpty());

    QVERIFY(m_user->press("showLog"));
    const auto *log = qobject_cast<QPlainTextEdit *>(m_user->find("logText"));
    QVERIFY(log != nullptr && log->toPlainText().contains(failureDetails));
}

void DeskWindowTest::cancelsReading()
{
    HostSandbox::play("dump: hang"_s);
    m_user->readPage();
    QTRY_SOON(m_stage->hangs("dump"_s));
    QVERIFY(m_user->press("cancelReading"));
    QTRY_SOON(m_user->controller().reader().state() == PageReader::State::Empty);
    QTRY_SOON(m_stage->isQuiet());
    QVERIFY(!m_user->sees("busy") && !m_user->sees("failureMessage"));
}

void DeskWindowTest::newestPageWins()
{
    HostSandbox::play("dump: hang"_s);
    m_user->readPage();
    QTRY_SOON(m_stage->hangs("dump"_s));
    const int runs = m_stage->runCount();
    m_user->readPage(); // is being read already
    HostSandbox::play("dump: json Second 1"_s);
    QVERIFY(!m_stage->isQuiet() && m_stage->runCount() == runs);
    m_user->readPage("http://y/"_s);
    QTRY_SOON(m_user->sees("streams"));
    QCOMPARE(m_user->text("title"), "Second"_s);
    QTRY_SOON(m_stage->isQuiet());
}

void DeskWindowTest::downloadsJoined()
{
    HostSandbox::playPage("137: announce mp4|progress 25.0 1000000|hang"_s);
    const QAbstractItemModelTester tester(&m_user->downloads(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    QVERIFY(m_user->beginDownload("1080P"_s));
    QTRY_SOON_COMPARE(m_user->text("status", 0), "Fetching video · 250.0 kB / 1.2 MB · 10 bytes/s · 26:23:20 left"_s);
    QCOMPARE(m_user->find("progress", 0)->property("value").toInt(), 20);
    QVERIFY(m_user->press("cancel", 0));
    QTRY_SOON_COMPARE(m_user->text("status", 0), "Cancelled"_s);

    HostSandbox::play(HostSandbox::pageScenario());
    QVERIFY(m_user->beginDownload("1080P"_s));
    QTRY_SOON(m_user->text("status", 0).startsWith("Finished, 7 bytes"_s)); // "137+140"
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
    QCOMPARE(m_user->downloads().rowCount(), 0);
    QVERIFY(QFile::exists(file));
}

void DeskWindowTest::cancelsDownload_data()
{
    const TextTable row{"quality", "scenario", "hanging", "status"};
    row("video", "1080P", "137: announce mp4|hang", "137", "Fetching video");
    row("audio", "1080P", "140: announce m4a|hang", "140", "Fetching audio");
    row("joining", "1080P", "ffmpeg: write half|hang", "ffmpeg", "Joining video and audio");
    row("with a child of its own", "360P", "18: announce mp4|spawn|hang", "18", "Fetching video");
    row("no answer", "360P", "18: announce mp4|err WARNING: [nox:waiting] 30 1 10\\n|hang", "18",
        "Fetching video · The server does not answer. It is asked again in 30 s (1 of 10).");
}

void DeskWindowTest::cancelsDownload()
{
    QFETCH(QString, quality);
    QFETCH(QString, scenario);
    QFETCH(QString, hanging);
    QFETCH(QString, status);
    HostSandbox::playPage(scenario);
    QVERIFY(m_user->beginDownload(quality));
    QTRY_SOON(m_stage->hangs(hanging));
    QVERIFY(!m_stage->files().isEmpty() && !m_stage->isQuiet());
    QTRY_SOON(m_user->text("status", 0).startsWith(status));
    QVERIFY(m_user->press("cancel", 0));
    QTRY_SOON_COMPARE(m_user->text("status", 0), "Cancelled"_s);
    QCOMPARE(m_stage->files(), QStringList());
    QTRY_SOON(m_stage->isQuiet());
    QVERIFY(!m_user->sees("cancel", 0) && !m_user->sees("openFile", 0) && !m_user->canPress("showFolder", 0));
}

void DeskWindowTest::failedDownload_data()
{
    const TextTable row{"scenario", "words", "failureDetails"};
    row("disk full", "137: announce mp4|err ERROR: No space left on device|exit 1", "The download tool gave up",
        "No space left on device");
    row("joining", "ffmpeg: err broken header|exit 1", "Joining video and audio failed", "broken header");
    row("crash", "140: announce m4a|kill SIGKILL", "crashed");
}

void DeskWindowTest::failedDownload()
{
    QFETCH(QString, scenario);
    QFETCH(QString, words);
    QFETCH(QString, failureDetails);
    HostSandbox::playPage(scenario);
    QVERIFY(m_user->beginDownload("1080P"_s));
    QTRY_SOON(m_user->seesFailure(0));
    QVERIFY(m_user->text("status", 0).contains(words));
    QVERIFY2(m_user->text("failureMessage", 0).contains(words), qPrintable(m_user->text("failureMessage", 0)));
    QVERIFY2(m_user->text("failureDetails", 0).contains(failureDetails), qPrintable(m_user->text("failureDetails", 0)));
    QCOMPARE(m_user->sees("failureDetails", 0), !failureDetails.isEmpty());
    QCOMPARE(m_stage->files(), QStringList());
    QVERIFY(m_user->press("showLog", 0));
    QVERIFY(m_user->sees("logText"));
}

void DeskWindowTest::twoDownloads()
{
    HostSandbox::playPage("137: announce mp4|progress 50.0 100|wait go\n18: announce mp4|hang"_s);
    QVERIFY(m_user->beginDownload("1080P"_s));
    QCOMPARE(m_user->text("destination"), m_stage->video("Clip(1).mp4"_s));
    QVERIFY(m_user->beginDownload("360P"_s));
    QTRY_SOON(m_stage->hangs("18"_s));
    QCOMPARE(m_user->downloads().activeCount(), 2);
    QCOMPARE(m_user->text("fileName", 1), "Clip(1).mp4"_s);
    QVERIFY(m_user->press("cancel", 1));
    QTRY_SOON_COMPARE(m_user->text("status", 1), "Cancelled"_s);
    QVERIFY(m_user->text("status", 0).startsWith("Fetching video"_s));

    m_stage->let("go"_s);
    QTRY_SOON(m_user->text("status", 0).startsWith("Finished"_s));
    QCOMPARE(m_stage->files(), QStringList("Clip.mp4"_s));
}

void DeskWindowTest::badDestination()
{
    QVERIFY(m_user->seesPage());
    m_user->type("destination", m_stage->video("a?.mp4"_s));
    QVERIFY(m_user->text("destinationError").contains("must not contain"_s));
    QVERIFY(!m_user->canPress("download"));
    QHelpEvent hover(QEvent::ToolTip, {}, m_user->find("destination")->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(m_user->find("destination"), &hover);
    QVERIFY(QToolTip::text().contains("a?.mp4"_s));
    QTest::keyClick(m_user->find("destination"), Qt::Key_Return);
    QCOMPARE(m_user->downloads().rowCount(), 0);

    QVERIFY(m_user->press("browse"));
    auto *dialog = m_user->window().findChild<QFileDialog *>();
    QVERIFY(dialog != nullptr);
    Q_EMIT dialog->fileSelected(m_stage->video("b"_s)); // as it is typed there
    dialog->reject();
    QVERIFY(!m_user->sees("destinationError") && m_user->canPress("download"));
    QCOMPARE(m_user->text("destination"), m_stage->video("b.mp4"_s));
}

void DeskWindowTest::missingFfmpeg()
{
    QVERIFY(QFile::remove(QCoreApplication::applicationDirPath() + "/ffmpeg"_s));
    QVERIFY(m_user->seesPage());
    QVERIFY(m_user->text("soundError").contains("cannot be joined"_s));
    QVERIFY(!m_user->canPress("download"));
    auto *sound = qobject_cast<QComboBox *>(m_user->find("sound"));
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
    m_user.reset();
    QTRY_SOON(m_stage->isQuiet());
}

void DeskWindowTest::dropAndClipboard()
{
    QMimeData data;
    data.setUrls({QUrl(DeskUser::pageAddress())});
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&m_user->window(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&m_user->window(), &drop);
    QTRY_SOON(m_user->sees("streams"));
    QCOMPARE(m_user->text("address"), DeskUser::pageAddress());

    QVERIFY(!m_user->sees("clipboardOffer"));
    QGuiApplication::clipboard()->setText("http://x/?a&b"_s);
    QTRY_SOON(m_user->sees("clipboardOffer"));
    QVERIFY(m_user->press("clipboardOffer"));
    QCOMPARE(m_user->text("address"), "http://x/?a&b"_s);
    QVERIFY(!m_user->sees("clipboardOffer"));
    QTRY_SOON(m_user->sees("streams"));
}

void DeskWindowTest::remembers()
{
    QVERIFY(QDir(m_stage->path(QString())).mkdir("mine"_s));
    QVERIFY(m_user->seesPage());
    m_user->type("destination", m_stage->path("mine/a.mp4"_s));
    QVERIFY(m_user->press("download"));
    QTRY_SOON(m_user->text("status", 0).startsWith("Finished"_s));
    m_user->window().resize(m_user->window().minimumSizeHint() + QSize(17, 13));
    const QSize size = m_user->window().size();
    QVERIFY(m_user->window().close());

    m_user = std::make_unique<DeskUser>();
    QCOMPARE(m_user->window().size(), size);
    QVERIFY(m_user->seesPage());
    QCOMPARE(m_user->text("destination"), m_stage->video("Clip.mp4"_s)); // saved elsewhere once
}

void DeskWindowTest::failedPageKeepsTheOther()
{
    QVERIFY(m_user->seesPage());
    m_user->choose("360P"_s);
    HostSandbox::play("dump: wait go|err ERROR: gone|exit 1"_s);
    m_user->readPage("http://y/"_s);
    QVERIFY(m_user->sees("busy") && m_user->sees("streams"));
    QVERIFY(m_user->sees("outdated") && !m_user->canPress("download") && !m_user->canPress("streams"));
    m_stage->let("go"_s);
    QTRY_SOON(m_user->sees("failureMessage"));
    QVERIFY(!m_user->sees("busy"));
    QCOMPARE(m_user->text("failedAddress"), "http://y/"_s);
    QCOMPARE(m_user->text("title"), "Clip"_s);
    QCOMPARE(m_user->chosen(), "18"_s);
    QVERIFY(m_user->sees("outdated") && !m_user->canPress("download"));
    QVERIFY(m_user->press("dismissFailure"));
    QVERIFY(!m_user->sees("failureMessage") && !m_user->sees("outdated"));
    HostSandbox::play(QString());
    QVERIFY(m_user->press("download"));
    QTRY_SOON(m_user->sees("openFile", 0));
}

/** The file of the plan comes to be by another program's hand. */
void DeskWindowTest::fileAppears()
{
    const auto make = [this](const QString &name) { return QFile(m_stage->video(name)).open(QIODevice::WriteOnly); };
    QVERIFY(m_user->seesPage());
    m_user->choose("360P"_s);
    QVERIFY(make("Clip.mp4"_s));
    QVERIFY(m_user->press("download"));
    QTRY_SOON(m_user->text("fileName", 0) == "Clip(1).mp4"_s);
    m_user->type("destination", "mine.mp4"_s);
    QVERIFY(make("mine.mp4"_s));
    QVERIFY(m_user->press("download"));
    QTRY_SOON(m_user->text("destinationError").contains("exists already"_s));
    QCOMPARE(m_user->downloads().rowCount(), 1);
}

void DeskWindowTest::logOpensAtItsEnd()
{
    QFile log(m_user->controller().logFile());
    QVERIFY(log.open(QIODevice::Append) && log.write(QByteArray("line\n").repeated(1000)) > 0);
    log.close();
    HostSandbox::play("dump: err ERROR: the last line|exit 1"_s);
    m_user->readPage();
    QTRY_SOON(m_user->press("showLog"));
    const auto *text = qobject_cast<QPlainTextEdit *>(m_user->find("logText"));
    QTRY_VERIFY(text->verticalScrollBar()->maximum() > 0);
    QCOMPARE(text->verticalScrollBar()->value(), text->verticalScrollBar()->maximum());
}

QTEST_MAIN(DeskWindowTest)
#include "DeskWindowTest.moc"
