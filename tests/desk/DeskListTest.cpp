#include "tests/desk/DeskTest.h"
#include "tests/jobs/SampleStreams.h"

using namespace NoxDesk;

/** A text on the clipboard that counts how often it is read. */
class CountedText : public QMimeData
{
public:
    explicit CountedText(const QString &text) { setText(text); }

    bool hasFormat(const QString &type) const override
    {
        ++m_reads;
        return QMimeData::hasFormat(type);
    }

    int reads() const { return m_reads; }

private:
    mutable int m_reads = 0;
};

/** The list of downloads: queue, failures, what is kept for the next start, many addresses, pages of several videos. */
class DeskListTest : public DeskTest
{
    Q_OBJECT

private Q_SLOTS:
    void keepsToLimit();
    void figuresOfSeveral();
    void waitingRowsChangePlaces();
    void failureIsToldBesideOthers();
    void keys();
    void nextStart();
    void unreadableList_data();
    void unreadableList();
    void pausing();
    void manyAddresses_data();
    void manyAddresses();
    void addingManyIsLinear();
    void videosOfAPage();
    void sameStreamAgain();

private:
    bool eventFilter(QObject *, QEvent *event) override
    {
        m_raised += event->type() == QEvent::ZOrderChange ? 1 : 0;
        return false;
    }
    void add(const QString &streams);
    QString storeFile(int program = 1) const;

    int m_raised = 0; // how often the first row was put into its place
};

/** Downloads each of these streams, such as "a MP4,b MP4", to a file named after its code. */
void DeskListTest::add(const QString &streams)
{
    const QStringList all = streams.split(QLatin1Char(','));
    for (const QString &words : all) {
        const Nox::MediaProfile stream = SampleStreams::stream(words);
        m_user->downloads().add({DeskUser::pageAddress(), stream, m_stage->video(stream.getName() + ".mp4"_s)});
    }
}

/** No more run than the preferences allow. The order is: running, waiting, ended, of these the last one first. */
void DeskListTest::keepsToLimit()
{
    QDialog *dialog = m_user->openPreferences();
    m_user->find<QSpinBox>("parallel")->setValue(2);
    dialog->accept();
    QSignalSpy noticed(&m_user->controller(), &DeskController::noticed);

    HostSandbox::play("a: announce mp4|progress 50.0 100|wait a\nb: announce mp4|err ERROR: no room|exit 1"_s);
    add("a MP4,b MP4"_s);
    QTRY_SOON_COMPARE(m_user->list(), "a=Running b=Failed"_s);
    HostSandbox::play("b: announce mp4\nc: announce mp4|hang\ne: announce mp4|hang\n"
                      "d: announce mp4|wait d"_s);
    add("c MP4,d MP4,e MP4"_s);
    QCOMPARE(m_user->list(), "a=Running c=Running d=Waiting e=Waiting b=Failed"_s);
    QTRY_SOON(m_user->sees("cancel", 3));
    QVERIFY(!m_user->press("remove", 0) && !m_user->press("retryAction", 0));
    m_user->find("cancel", 3)->setFocus();
    QTest::keyClick(m_user->find("cancel", 3), Qt::Key_Space); // waits: it is ended at once
    QCOMPARE(m_user->list(), "a=Running c=Running d=Waiting e=Cancelled b=Failed"_s);
    QCOMPARE(m_user->window().focusWidget(), m_user->find("retry", 3));
    m_user->find("retry", 4)->setFocus();
    QVERIFY(m_user->press("retry", 4)); // goes behind those that wait already
    QCOMPARE(m_user->list(), "a=Running c=Running d=Waiting b=Waiting e=Cancelled"_s);
    QCOMPARE(m_user->window().focusWidget(), m_user->find("cancel", 3));

    Files::write(m_stage->video("a.mp4"_s)); // somebody else takes the name
    m_user->downloads().setLimit(1);         // those that run go on
    m_stage->let("a"_s);
    QTRY_SOON_COMPARE(m_user->list(), "c=Running d=Waiting b=Waiting a(1)=Finished e=Cancelled"_s);
    QVERIFY(m_user->window().windowTitle().startsWith("40 %, 2 of 5"_s));
    m_user->downloads().setLimit(2);
    QCOMPARE(m_user->list(), "c=Running d=Running b=Waiting a(1)=Finished e=Cancelled"_s);
    QVERIFY(m_user->press("cancel", 0));
    QVERIFY(!m_user->canPress("cancel", 0) && !m_user->canPress("pause", 0)); // until it has ended
    QTRY_SOON_COMPARE(m_user->list(), "d=Running b=Finished c=Cancelled a(1)=Finished e=Cancelled"_s);
    QVERIFY(noticed.at(0).at(1).toString().startsWith("b.mp4: "_s)); // has failed
    m_user->window().showMinimized(); // rows that nobody sees are right as soon as they are seen
    m_stage->let("d"_s);
    QTRY_SOON(m_user->window().windowTitle() == "Nox Desk"_s);
    m_user->window().showNormal();
    QTRY_SOON(m_user->text("status", 0).startsWith("Finished"_s));
}

/** All figures are shown, and no bar that nobody sees keeps the processor busy. */
void DeskListTest::figuresOfSeveral()
{
    const auto isAnimated = [](QWidget *bar) {
        QEvent event(QEvent::StyleAnimationUpdate);
        event.setAccepted(false);
        QCoreApplication::sendEvent(bar, &event);
        return event.isAccepted();
    };
    const QString letters = "abcdefghijkl"_s;
    QString script;
    for (const QChar letter : letters)
        script += letter + ": announce mp4|progress 50.0 100|hang\n"_s;
    HostSandbox::play(script);
    m_user->downloads().setLimit(static_cast<int>(letters.size()));
    for (const QChar letter : letters)
        add(letter + " MP4"_s);
    for (int row = 0; row < letters.size(); ++row)
        QTRY_SOON(m_user->find<QProgressBar>("progress", row)->value() == 50);
    QVERIFY(isAnimated(m_user->find("progress", 0)));
    QVERIFY(!isAnimated(m_user->find("progress", static_cast<int>(letters.size()) - 1))); // is out of view
    m_user->window().showMinimized();
    QVERIFY(!isAnimated(m_user->find("progress", 0)));
}

/** The user changes the order of those that wait; nothing else changes places. */
void DeskListTest::waitingRowsChangePlaces()
{
    HostSandbox::play("d: announce mp4|hang\na: announce mp4|wait a"_s);
    m_user->downloads().setLimit(1);
    add("a MP4,b MP4,c MP4,d MP4"_s);
    QTRY_SOON(m_user->sees("cancel", 3));
    QVERIFY(!m_user->canPress("moveDown", 0) && m_user->canPress("moveUp", 3));
    QTest::mouseClick(m_user->find("fileName", 1), Qt::LeftButton);
    QCOMPARE(m_user->window().focusWidget(), m_user->row(1)); // has the focus, and so its keys work
    QTest::keyClick(m_user->row(1), Qt::Key_Down);
    QTest::keyClick(m_user->window().focusWidget(), Qt::Key_Down);
    QCOMPARE(m_user->window().focusWidget(), m_user->row(3));
    QTest::keyClick(m_user->find("cancel", 3), Qt::Key_Down); // there is no row below
    QTest::keyClick(m_user->row(3), Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(m_user->list(), "a=Running b=Waiting d=Waiting c=Waiting"_s);
    QCOMPARE(m_user->window().focusWidget(), m_user->row(2));
    QVERIFY(m_user->press("moveUp", 2) && m_user->press("moveUp", 1)); // what runs stays in front
    QCOMPARE(m_user->list(), "a=Running d=Waiting b=Waiting c=Waiting"_s);
    QVERIFY(m_user->press("moveDown", 2) && m_user->press("moveDown", 3));
    QCOMPARE(m_user->list(), "a=Running d=Waiting c=Waiting b=Waiting"_s);
    m_stage->let("a"_s);
    QTRY_SOON_COMPARE(m_user->list(), "d=Running c=Waiting b=Waiting a=Finished"_s);
    QTRY_SOON(m_stage->hangs("d"_s));
    QVERIFY(m_user->press("cancelAll"));
    QTRY_SOON_COMPARE(m_user->list(), "d=Cancelled c=Cancelled b=Cancelled a=Finished"_s);
    QVERIFY(!m_user->canPress("cancelAll"));
    QTest::mouseClick(m_user->find("status", 0), Qt::LeftButton);
    QTest::keyClick(m_user->window().focusWidget(), Qt::Key_Delete);
    QCOMPARE(m_user->list(), "c=Cancelled b=Cancelled a=Finished"_s);
    QCOMPARE(m_stage->files(), QStringList("a.mp4"_s));
}

/** Each failure is told with what the programs said about it, and not with what they said about another download. */
void DeskListTest::failureIsToldBesideOthers()
{
    HostSandbox::play("a: announce mp4|err ERROR: of the other|hang\n"
                      "ffmpeg: err frame=1 time=00:00:01.00 speed=1x\\r|err broken header\\n|exit 1"_s);
    add("a MP4"_s);
    QTRY_SOON(m_stage->hangs("a"_s));
    add("b MP4 dash +140"_s);
    QTRY_SOON(m_user->seesFailure(1));
    QVERIFY(m_user->text("failureMessage", 1).contains("Joining video and audio failed"_s));
    const QString details = m_user->text("failureDetails", 1);
    QVERIFY2(details.contains("broken header"_s), qPrintable(details));
    QVERIFY2(!details.contains("frame="_s) && !details.contains("of the other"_s), qPrintable(details));
    QVERIFY(m_user->press("showLog", 1) && m_user->sees("logText"));
}

void DeskListTest::keys()
{
    m_user->readPage("http://x/1"_s);
    QTRY_SOON(m_user->sees("streams"));
    const int runs = m_stage->runCount();
    QTest::keyClick(&m_user->window(), Qt::Key_F5);
    QTRY_SOON(m_stage->runCount() == runs + 1 && m_user->controller().reader().state() == PageReader::State::Ready);

    QWidget *table = m_user->find("streams");
    table->setFocus();
    QGuiApplication::clipboard()->setText(" www.x/2 "_s);
    QTest::keyClick(table, Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(m_user->text("address"), "https://www.x/2"_s);
    QTRY_SOON(m_user->controller().reader().url() == "https://www.x/2"_s);

    QTest::keyClick(m_user->find("streams"), Qt::Key_Return);
    QTRY_SOON(m_user->sees("openFile", 0));
    m_user->find("openFile", 0)->setFocus();
    QTest::keyClick(m_user->find("openFile", 0), Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), "https://www.x/2"_s);
    QTest::keyClick(m_user->find("openFile", 0), Qt::Key_R, Qt::ControlModifier);
    QCOMPARE(m_user->controller().reader().state(), PageReader::State::Reading);
    m_user->find("openFile", 0)->setFocus();
    QTest::keyClick(m_user->find("openFile", 0), Qt::Key_Delete);
    QCOMPARE(m_user->list(), QString());
    QCOMPARE(m_user->controller().settings().recentAddresses(), QStringList({"https://www.x/2"_s, "http://x/1"_s}));

    auto *copied = new CountedText("http://x/5 http://x/6"_s);
    QGuiApplication::clipboard()->setMimeData(copied);
    QTRY_SOON(m_user->sees("clipboardOffer"));
    const int reads = copied->reads();
    m_user->type("address", "abc"_s);
    QCOMPARE(copied->reads(), reads); // a long clipboard would make each key slow
}

QString DeskListTest::storeFile(int program) const
{
    return m_stage->path("state/noxwebmedia/nox-desk-downloads-%1.json"_s.arg(program));
}

/** What did not end is in the list again: paused, or resumed if that is preferred; also after a program was killed. */
void DeskListTest::nextStart()
{
    Preferences preferences;
    preferences.parallelDownloads = 1;
    m_user->controller().settings().setPreferences(preferences);
    m_user->controller().applySettings();
    HostSandbox::playPage("140: announce m4a\n251: announce webm|err ERROR: [nox:login] no entry\\n|exit 1\n"
                          "18: touch parts/a.part|announce mp4|hang"_s);
    QVERIFY(m_user->beginDownload("128K"_s));
    QTRY_SOON(m_user->sees("openFile", 0));
    QVERIFY(m_user->beginDownload("160K"_s));
    QTRY_SOON(m_user->sees("retry", 0));
    const QString message = m_user->text("status", 0);
    QVERIFY(m_user->beginDownload("360P"_s));
    QTRY_SOON(m_stage->hangs("18"_s));
    m_user->controller().addPages({"http://y/"_s}); // waits, and is not read yet
    m_user->window().closeAtOnce();                 // as for SIGTERM and at the end of the session
    restart();
    const QString ended = " Clip.webm=Failed Clip.m4a=Finished"_s;
    QCOMPARE(m_user->list(), "Clip=Paused http://y/=Paused"_s + ended);
    QCOMPARE(m_user->text("status", 2), message);

    preferences.resumesAtStart = true;
    m_user->controller().settings().setPreferences(preferences);
    m_user.reset();
    QVERIFY(QFile::rename(storeFile(), storeFile(3))); // of a program that is gone
    restart();
    QVERIFY(!QFile::exists(storeFile(3)));
    QCOMPARE(m_user->list(), "Clip=Running http://y/=Waiting"_s + ended);
    m_user.reset();
    QVERIFY(QFile::remove(storeFile())); // without a list, the hidden folders tell of it
    HostSandbox::play(HostSandbox::pageScenario());
    restart();
    QTRY_SOON_COMPARE(m_user->list(), "Clip=Finished"_s);
    QCOMPARE(m_stage->files(), QStringList({"Clip.m4a"_s, "Clip.mp4"_s})); // nothing is left of the parts
    QVERIFY(m_user->press("removeEnded"));
    restart();
    QCOMPARE(m_user->list(), QString());
}

void DeskListTest::unreadableList_data()
{
    const TextTable row{"text"};
    row("cut off", R"({"downloads":[{"url":"http)");
    row("newer version", R"({"downloads":[],"version":2})");
}

void DeskListTest::unreadableList()
{
    QFETCH(QString, text);
    m_user.reset();
    Files::write(storeFile(), text.toUtf8());
    m_user = std::make_unique<DeskUser>();
    QTRY_SOON(m_user->text("warning").contains("renamed"_s));
    QCOMPARE(Files::content(storeFile() + ".unreadable"_s), text.toUtf8());
}

void DeskListTest::pausing()
{
    m_user->downloads().setLimit(1);
    HostSandbox::playPage("18: touch parts/a.part|announce mp4|hang"_s);
    QVERIFY(m_user->beginDownload("360P"_s));
    QTRY_SOON(m_stage->hangs("18"_s));
    HostSandbox::play("dump: hang"_s);
    m_user->controller().addPages({"http://y/"_s, "http://z/"_s});
    m_user->find("pause", 0)->setFocus();
    QTest::keyClick(m_user->find("pause", 0), Qt::Key_P, Qt::ControlModifier);
    QCOMPARE(m_user->list(), "Clip=Pausing http://y/=Waiting http://z/=Waiting"_s);
    QVERIFY(!m_user->canPress("pause", 0) && !m_user->canPress("pauseAction", 0) && m_user->canPress("cancel", 0));
    QCOMPARE(m_user->window().focusWidget(), m_user->row(0)); // not the button beside it
    QTRY_SOON(m_stage->hangs("dump"_s));                      // the next one takes its place, and is read
    QCOMPARE(m_user->list(), "http://y/=Running http://z/=Waiting Clip=Paused"_s);
    QCOMPARE(m_user->text("retry", 2), "Resume"_s);
    QCOMPARE(m_user->find("retry", 2)->accessibleName(), "Resume: Clip.mp4"_s);
    QVERIFY(m_user->row(2)->findChild<QAction *>("remove"_s)->text().endsWith("with any partial file"_s));
    QVERIFY(m_user->find("removeEnded")->toolTip().contains("failed downloads with a partial file"_s));
    QVERIFY(m_user->press("pauseAll"));
    QTRY_SOON_COMPARE(m_user->list(), "http://y/=Paused http://z/=Paused Clip=Paused"_s);
    QVERIFY(!m_user->canPress("pauseAll") && !m_user->canPress("removeEnded"));
    HostSandbox::play(HostSandbox::pageScenario());
    QVERIFY(m_user->press("resumeAll"));
    QTRY_SOON_COMPARE(m_user->list(), "Clip=Finished Clip(2)=Finished Clip(1)=Finished"_s);
    QVERIFY(!m_user->sees("resumeAll"));
}

void DeskListTest::manyAddresses_data()
{
    const TextTable row{"way"}; // or the widget with the focus
    row("pasted into the window", "read");
    row("pasted into the field", "address");
    row("dropped text file", "drop");
    row("offered", "clipboardOffer");
}

/** Several addresses become rows that are read and downloaded by the preferences; a bad one ends by itself. */
void DeskListTest::manyAddresses()
{
    QFETCH(QString, way);
    const QByteArray text = "# two pages\nhttp://x/1\nexample.org/2\nhttp://x/1\n";
    const bool isRefused = way == "drop"_s;
    HostSandbox::play(isRefused ? "dump: err ERROR: [nox:not-found] gone\\n|exit 1"_s : HostSandbox::pageScenario());
    Preferences preferences;
    preferences.stream.soundOnly = true;
    m_user->controller().settings().setPreferences(preferences);
    if (way == "drop"_s) {
        Files::write(m_stage->path("list.txt"_s), text);
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(m_stage->path("list.txt"_s))});
        QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&m_user->window(), &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&m_user->window(), &drop);
    } else if (way == "clipboardOffer"_s) {
        QGuiApplication::clipboard()->setText(QString::fromUtf8(text));
        QTRY_SOON(m_user->canPress("clipboardOffer"));
        QVERIFY(m_user->press("clipboardOffer") && !m_user->sees("clipboardOffer")); // is not offered twice
    } else {
        QWidget *focused = m_user->find(qPrintable(way));
        focused->setFocus();
        QGuiApplication::clipboard()->setText(QString::fromUtf8(text));
        QTest::keyClick(focused, Qt::Key_V, Qt::ControlModifier);
        if (way == "address"_s)
            QTest::keyClick(focused, Qt::Key_Return);
    }
    QCOMPARE(m_user->downloads().rowCount(), 2);
    QTRY_SOON(m_user->downloads().activeCount() == 0);
    QCOMPARE(m_user->seesFailure(0) && m_user->seesFailure(1), isRefused);
    QCOMPARE(m_stage->files(), isRefused ? QStringList() : QStringList({"Clip(1).webm"_s, "Clip.webm"_s}));
}

void DeskListTest::addingManyIsLinear()
{
    HostSandbox::play("dump: hang"_s);
    m_user->controller().addPages({"http://x/"_s});
    QTRY_SOON(m_user->sees("cancel", 0));
    m_user->row(0)->installEventFilter(this);
    QStringList addresses;
    for (int i = 0; i < 30; ++i)
        addresses += "http://x/%1"_s.arg(i);
    m_user->controller().addPages(addresses);
    QTRY_SOON(m_user->sees("cancel", 30));
    m_user->find("rowMenu", 29)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), m_user->find("details", 30));
    QCOMPARE(m_raised, 1); // not for each of the others
    m_user->downloads().cancelAll();
}

void DeskListTest::videosOfAPage()
{
    HostSandbox::play("dump: err WARNING: [nox:videos] 3\\n|json Clip 18\n"
                      R"(list: out {"nox_index":1,"nox_url":"ftp://x/0","nox_count":4}\n|)"
                      R"(out {"nox_index":2,"nox_url":"http://x/a","title":"A","duration":61}\n|)"
                      R"(out {"nox_index":3,"nox_url":"http://x/b","title":"B"}\n|out {"nox_more":true}\n)"_s);
    QVERIFY(m_user->seesPage());
    QVERIFY(m_user->text("showVideos").contains("first of 3 videos"_s) && m_user->press("showVideos"));
    auto *list = m_user->find<QListWidget>("videos");
    QVERIFY(list != nullptr && !m_user->canPress("downloadVideos"));
    QTRY_SOON(m_user->sees("moreVideos"));
    QCOMPARE(m_user->text("videosState"), "2 of 4 videos are listed."_s);
    QCOMPARE(list->item(0)->text(), "2. A (0:01:01)"_s);
    HostSandbox::play(R"(list: out {"nox_more":true}\n)"_s); // none of this step has an address
    QVERIFY(m_user->press("moreVideos") && !m_user->sees("moreVideos"));
    QTRY_SOON(m_user->sees("moreVideos"));
    HostSandbox::play(R"(list: out {"nox_index":204,"nox_url":"http://x/c","title":"C","nox_count":4}\n)"_s);
    QVERIFY(m_user->press("moreVideos"));
    QTRY_SOON_COMPARE(list->count(), 3);
    QTRY_SOON(!m_user->sees("moreVideos"));
    const QByteArray runs = Files::content(m_stage->path("notes/runs"_s));
    QVERIFY(runs.contains("\x1f"
                          "4:203\x1f")
            && runs.contains("\x1f"
                             "204:403\x1f"));
    QVERIFY(m_user->press("allVideos") && m_user->canPress("downloadVideos"));
    m_user->downloads().setLimit(1); // one after the other
    list->item(1)->setCheckState(Qt::Unchecked);
    HostSandbox::play(HostSandbox::pageScenario());
    QVERIFY(m_user->press("downloadVideos"));
    QTRY_SOON_COMPARE(m_user->list(), "Clip(1)=Finished Clip=Finished"_s);
    QCOMPARE(m_user->downloads().index(1).data(Nox::DownloadQueue::AddressRole).toString(), "http://x/a"_s);
    QCOMPARE(m_user->downloads().index(0).data(Nox::DownloadQueue::AddressRole).toString(), "http://x/c"_s);
}

/** A double click and a key that is held down download once. What is in the list already is asked for once. */
void DeskListTest::sameStreamAgain()
{
    QVERIFY(m_user->seesPage());
    m_user->choose("360P"_s);
    m_user->type("destination", m_stage->video("mine.mp4"_s));
    QWidget *button = m_user->find("download");
    button->setFocus();
    QTest::mouseClick(button, Qt::LeftButton);
    QTest::mouseDClick(button, Qt::LeftButton);
    QTest::mouseRelease(button, Qt::LeftButton);
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r"_s, true);
    QApplication::sendEvent(m_user->find("destination"), &held);
    QVERIFY(m_user->downloads().rowCount() == 1 && !m_user->sees("downloadAgain"));
    QCOMPARE(QApplication::focusWidget(), button);
    QCOMPARE(m_user->text("destination"), m_stage->video("mine(1).mp4"_s));
    QTRY_SOON(m_user->sees("openFile", 0));
    QVERIFY(m_user->press("download"));
    QTRY_SOON(m_user->sees("downloadAgain"));
    QCOMPARE(m_user->downloads().rowCount(), 1);
    QVERIFY(m_user->press("downloadAgain"));
    QTRY_SOON_COMPARE(m_user->list(), "mine(1)=Finished mine=Finished"_s);
    m_user->choose("128K"_s);
    QVERIFY(m_user->press("download"));
    QTRY_SOON(!m_user->sees("downloadAgain") && m_user->downloads().rowCount() == 3);
    // Of several addresses, the new ones are added at once.
    m_user->window().takeOver({m_user->controller().reader().url(), "http://new/"_s});
    QCOMPARE(m_user->downloads().rowCount(), 4);
    QTRY_SOON(m_user->sees("downloadAgain"));
    QVERIFY(m_user->press("downloadAgain"));
    QCOMPARE(m_user->downloads().rowCount(), 5);
}

QTEST_MAIN(DeskListTest)
#include "DeskListTest.moc"
