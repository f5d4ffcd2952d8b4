#include "tests/desk/DeskTest.h"
#include "tests/support/TextTable.h"

#include <QCheckBox>
#include <QClipboard>
#include <QDialog>
#include <QDropEvent>
#include <QListWidget>
#include <QMimeData>

using namespace NoxDesk;

/** The list of downloads: what is kept from one start to the next, many addresses, and pages with several videos. */
class DeskListTest : public DeskTest
{
    Q_OBJECT

private Q_SLOTS:
    void nextStart_data();
    void nextStart();
    void listOfAKilledProgram();
    void unreadableList_data();
    void unreadableList();
    void pausing();
    void manyAddresses_data();
    void manyAddresses();
    void videosOfAPage();
    void sameStreamAgain();
    void soundAsMp3();

private:
    QString states() const;
    QString storeFile(int program = 1) const;
    void restart();

    static constexpr char some[] = "18: touch parts/a.part|announce mp4|hang";
};

/** What the rows tell, "file=status" each, without figures. */
QString DeskListTest::states() const
{
    QStringList result;
    for (int row = 0; row < m_user->downloads().rowCount(); ++row) {
        const QModelIndex index = m_user->downloads().index(row);
        result += index.data().toString() + QLatin1Char('=')
            + QString::fromLatin1(QMetaEnum::fromType<Download::State>().valueToKey(
                static_cast<int>(index.data(DownloadListModel::StateRole).value<Download::State>())));
    }
    return result.join(QLatin1Char(' '));
}

QString DeskListTest::storeFile(int program) const
{
    return m_stage->path("state/noxwebmedia/nox-desk-downloads-%1.json"_s.arg(program));
}

void DeskListTest::restart()
{
    m_user.reset();
    QTRY_SOON(m_stage->isQuiet());
    m_user = std::make_unique<DeskUser>();
}

void DeskListTest::nextStart_data()
{
    QTest::addColumn<bool>("goesOn");
    QTest::newRow("paused") << false;
    QTest::newRow("by preference at once") << true;
}

void DeskListTest::nextStart()
{
    QFETCH(bool, goesOn);
    Preferences preferences;
    preferences.resumesAtStart = goesOn;
    preferences.parallelDownloads = 1;
    m_user->controller().settings().setPreferences(preferences);
    m_user->controller().applySettings();
    HostSandbox::playPage("140: announce m4a\n251: announce webm|err ERROR: [nox:login] no entry\\n|exit 1\n"_s
                          + QLatin1String(some));
    QVERIFY(m_user->beginDownload("128K"_s));
    QTRY_SOON(m_user->sees("openFile", 0));
    QVERIFY(m_user->beginDownload("160K"_s));
    QTRY_SOON(m_user->sees("retry", 0));
    const QString told = m_user->text("status", 0);
    QVERIFY(m_user->beginDownload("360P"_s));
    QTRY_SOON(m_stage->hangs("18"_s));
    m_user->controller().addPages({"http://y/"_s}); // waits, and is not read yet
    m_user->window().closeAtOnce();                 // as for SIGTERM and at the end of the session
    HostSandbox::playPage(goesOn ? "18: announce mp4|hang"_s : QString());
    restart();
    const QString over = " Clip.webm=Failed Clip.m4a=Finished"_s;
    QCOMPARE(states(),
             goesOn ? "Clip.mp4=Running http://y/=Waiting"_s + over : "Clip.mp4=Paused http://y/=Paused"_s + over);
    QCOMPARE(m_user->text("status", 2), told);
    if (goesOn)
        return;
    QVERIFY(m_user->press("retry", 0));
    QTRY_SOON_COMPARE(states(), "http://y/=Paused Clip.mp4=Finished"_s + over);
    QVERIFY(m_user->press("remove", 0) && m_user->press("removeEnded"));
    QCOMPARE(m_stage->files(), QStringList({"Clip.m4a"_s, "Clip.mp4"_s})); // nothing is left of the parts
    restart();
    QCOMPARE(states(), QString());
}

/** Without a list, the hidden folders tell of it; the list of a program that is gone is taken over. */
void DeskListTest::listOfAKilledProgram()
{
    HostSandbox::playPage(QLatin1String(some));
    QVERIFY(m_user->beginDownload("360P"_s));
    QTRY_SOON(m_stage->hangs("18"_s));
    m_user.reset();
    QTRY_SOON(m_stage->isQuiet());
    QVERIFY(QFile::rename(storeFile(), storeFile(3)));
    m_user = std::make_unique<DeskUser>();
    QCOMPARE(states(), "Clip.mp4=Paused"_s);
    QVERIFY(!QFile::exists(storeFile(3)));
    m_user.reset();
    QVERIFY(QFile::remove(storeFile()));
    m_user = std::make_unique<DeskUser>();
    QCOMPARE(states(), "Clip.mp4=Paused"_s);
    QVERIFY(m_user->press("remove", 0));
    QCOMPARE(m_stage->files(), QStringList());
}

void DeskListTest::unreadableList_data()
{
    const TextTable row{"text"};
    row("cut off", R"({"downloads":[{"url":"http)");
    row("newer version", R"({"downloads":[],"version":2})");
    row("empty", "");
}

void DeskListTest::unreadableList()
{
    QFETCH(QString, text);
    m_user.reset();
    QFile file(storeFile());
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) == text.size());
    file.close();
    m_user = std::make_unique<DeskUser>();
    QTRY_SOON(m_user->text("warning").contains("renamed"_s));
    QFile aside(storeFile() + ".unreadable"_s);
    QVERIFY(aside.open(QIODevice::ReadOnly));
    QCOMPARE(QString::fromUtf8(aside.readAll()), text);
}

void DeskListTest::pausing()
{
    m_user->downloads().setLimit(1);
    HostSandbox::playPage(QLatin1String(some));
    QVERIFY(m_user->beginDownload("360P"_s));
    QTRY_SOON(m_stage->hangs("18"_s));
    HostSandbox::play("dump: hang"_s);
    m_user->controller().addPages({"http://y/"_s, "http://z/"_s});
    m_user->find("pause", 0)->setFocus();
    QTest::keyClick(m_user->find("pause", 0), Qt::Key_P, Qt::ControlModifier);
    QTRY_SOON(m_stage->hangs("dump"_s)); // the next one takes its place, and is read
    QCOMPARE(states(), "http://y/=Running http://z/=Waiting Clip.mp4=Paused"_s);
    QCOMPARE(m_user->text("retry", 2), "Resume"_s);
    QVERIFY(m_user->press("pauseAll"));
    QTRY_SOON_COMPARE(states(), "http://y/=Paused http://z/=Paused Clip.mp4=Paused"_s);
    QVERIFY(!m_user->canPress("pauseAll") && !m_user->canPress("removeEnded"));
    QTRY_SOON(m_stage->isQuiet());
    HostSandbox::play(HostSandbox::pageScenario());
    QVERIFY(m_user->press("resumeAll"));
    QTRY_SOON_COMPARE(states(), "Clip.mp4=Finished Clip(2).mp4=Finished Clip(1).mp4=Finished"_s);
}

void DeskListTest::manyAddresses_data()
{
    const TextTable row{"way"};
    row("pasted into the window", "paste");
    row("pasted into the field", "field");
    row("dropped text file", "drop");
    row("handed over by another start", "start");
}

/** Several addresses become rows that are read and downloaded by the preferences; a bad one ends by itself. */
void DeskListTest::manyAddresses()
{
    QFETCH(QString, way);
    const QString text = "# two pages\nhttp://x/1\nexample.org/2\nhttp://x/1\n"_s;
    HostSandbox::play(way == "start"_s ? "dump: err ERROR: [nox:not-found] gone\\n|exit 1"_s
                                       : HostSandbox::pageScenario());
    Preferences preferences;
    preferences.stream.soundOnly = true;
    m_user->controller().settings().setPreferences(preferences);
    if (way == "paste"_s) {
        QGuiApplication::clipboard()->setText(text);
        m_user->find("read")->setFocus();
        QTest::keyClick(m_user->find("read"), Qt::Key_V, Qt::ControlModifier);
    } else if (way == "field"_s) {
        QGuiApplication::clipboard()->setText(text);
        m_user->find("address")->setFocus();
        QTest::keyClick(m_user->find("address"), Qt::Key_V, Qt::ControlModifier);
        QTest::keyClick(m_user->find("address"), Qt::Key_Return);
    } else if (way == "drop"_s) {
        QFile file(m_stage->path("list.txt"_s));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) > 0);
        file.close();
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(file.fileName())});
        QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&m_user->window(), &enter);
        QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&m_user->window(), &drop);
    } else {
        m_user->window().takeOver({"http://x/1"_s, "https://example.org/2"_s});
    }
    QCOMPARE(m_user->downloads().rowCount(), 2);
    QTRY_SOON(m_user->downloads().activeCount() == 0);
    if (way == "start"_s) {
        QVERIFY(m_user->seesFailure(0) && m_user->seesFailure(1));
        QCOMPARE(m_stage->files(), QStringList());
    } else {
        QCOMPARE(m_stage->files(), QStringList({"Clip(1).webm"_s, "Clip.webm"_s}));
    }
}

void DeskListTest::videosOfAPage()
{
    HostSandbox::play("dump: err WARNING: [nox:videos] 3\\n|json Clip 18\n"
                      R"(list: out {"nox_index":1,"nox_url":"http://x/a","title":"A","duration":61,"nox_count":3}\n|)"
                      R"(out {"nox_index":2,"nox_url":"http://x/b","title":"B"}\n|out {"nox_more":true}\n)"_s);
    QVERIFY(m_user->seesPage());
    QVERIFY(m_user->text("showVideos").contains("first of 3 videos"_s) && m_user->press("showVideos"));
    auto *list = qobject_cast<QListWidget *>(m_user->find("videos"));
    QVERIFY(list != nullptr && !m_user->canPress("downloadVideos"));
    QTRY_SOON(m_user->sees("moreVideos"));
    QCOMPARE(m_user->text("videosState"), "2 of 3 videos are listed."_s);
    QCOMPARE(list->item(0)->text(), "1. A (0:01:01)"_s);
    HostSandbox::play(R"(list: out {"nox_index":3,"nox_url":"http://x/c","title":"C","nox_count":3}\n)"_s);
    QVERIFY(m_user->press("moreVideos"));
    QTRY_SOON_COMPARE(list->count(), 3);
    QTRY_SOON(!m_user->sees("moreVideos"));
    QVERIFY(m_user->press("allVideos"));
    m_user->downloads().setLimit(1); // one after the other
    list->item(1)->setCheckState(Qt::Unchecked);
    HostSandbox::play(HostSandbox::pageScenario());
    QVERIFY(m_user->press("downloadVideos"));
    QTRY_SOON_COMPARE(states(), "Clip(1).mp4=Finished Clip.mp4=Finished"_s);
    QCOMPARE(m_user->downloads().index(1).data(DownloadListModel::AddressRole).toString(), "http://x/a"_s);
    QCOMPARE(m_user->downloads().index(0).data(DownloadListModel::AddressRole).toString(), "http://x/c"_s);
}

/** What is in the list already is asked for once; another stream of the page is not. */
void DeskListTest::sameStreamAgain()
{
    QVERIFY(m_user->beginDownload("360P"_s));
    QTRY_SOON(m_user->sees("openFile", 0));
    QVERIFY(m_user->press("download"));
    QTRY_SOON(m_user->sees("downloadAgain"));
    QCOMPARE(m_user->downloads().rowCount(), 1);
    QVERIFY(m_user->press("downloadAgain"));
    QTRY_SOON_COMPARE(states(), "Clip(1).mp4=Finished Clip.mp4=Finished"_s);
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

void DeskListTest::soundAsMp3()
{
    m_user->openMenu(0);
    auto *box = qobject_cast<QCheckBox *>(m_user->find("mp3"));
    QVERIFY(box != nullptr && !box->isChecked());
    box->setChecked(true);
    qobject_cast<QDialog *>(box->window())->accept();
    QVERIFY(m_user->seesPage());
    QCOMPARE(m_user->text("destination"), m_stage->video("Clip.mp4"_s));
    m_user->choose("128K"_s);
    QCOMPARE(m_user->text("destination"), m_stage->video("Clip.mp3"_s));
    HostSandbox::playPage("ffmpeg: write sound"_s);
    QVERIFY(m_user->press("download"));
    QTRY_SOON(m_user->sees("openFile", 0));
    QCOMPARE(m_stage->files(), QStringList("Clip.mp3"_s));
}

QTEST_MAIN(DeskListTest)
#include "DeskListTest.moc"
