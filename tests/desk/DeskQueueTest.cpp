#include "tests/desk/DeskTest.h"
#include "tests/jobs/SampleStreams.h"
#include "tests/support/TextTable.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QSpinBox>
#include <QTableView>

using namespace NoxDesk;

/** Several downloads with stand-in programs: their queue, retrying, and what the user is told. */
class DeskQueueTest : public DeskTest
{
    Q_OBJECT

private Q_SLOTS:
    void modelKeepsToLimit();
    void modelRetries();
    void modelCancelsAll();
    void waitingRowsChangePlaces();
    void sixAddresses();
    void failureIsToldBesideOthers_data();
    void failureIsToldBesideOthers();
    void keys();
    void minimised();
    void sortingKeepsTheChoice();

private:
    void add(const QString &words);
    QString states() const;
    QString files() const;
    void download(int number);
};

/** The files' names without suffix, in the order of the rows. */
QString DeskQueueTest::files() const
{
    QStringList result;
    for (int row = 0; row < m_user->downloads().rowCount(); ++row)
        result += QFileInfo(m_user->downloads().index(row).data().toString()).completeBaseName();
    return result.join(QLatin1Char(' '));
}

/** The user changes the order of those that wait; nothing else changes places. */
void DeskQueueTest::waitingRowsChangePlaces()
{
    DownloadListModel &model = m_user->downloads();
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    HostSandbox::play("a: announce mp4|wait a\nb: announce mp4|hang\nc: announce mp4|hang\n"
                      "d: announce mp4|hang"_s);
    model.setLimit(1);
    for (const QString &words : {"a MP4"_s, "b MP4"_s, "c MP4"_s, "d MP4"_s})
        add(words);
    QTRY_SOON(m_user->sees("cancel", 3));
    QVERIFY(!m_user->canPress("moveDown", 0) && m_user->canPress("moveUp", 3));
    m_user->find("cancel", 3)->setFocus();
    QTest::keyClick(m_user->find("cancel", 3), Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(files(), "a b d c"_s);
    QCOMPARE(m_user->window().focusWidget(), m_user->find("cancel", 2));
    QVERIFY(m_user->press("moveUp", 2) && m_user->press("moveUp", 1)); // what runs stays in front
    QCOMPARE(files(), "a d b c"_s);
    QVERIFY(m_user->press("moveDown", 2) && m_user->press("moveDown", 3));
    QCOMPARE(files(), "a d c b"_s);
    QCOMPARE(m_user->text("fileName", 2), "c.mp4"_s);
    m_stage->let("a"_s);
    QTRY_SOON_COMPARE(states(), "FWWR"_s);
    QCOMPARE(files(), "d c b a"_s);
}

/** Asks the model for a download of the stream of these words, to a file named after its code. */
void DeskQueueTest::add(const QString &words)
{
    const Nox::MediaProfile stream = SampleStreams::stream(words);
    m_user->downloads().add({DeskUser::pageAddress(), stream, m_stage->video(stream.getName() + ".mp4"_s)});
}

/** The states in the order of the files' names, a letter for each. */
QString DeskQueueTest::states() const
{
    const DownloadListModel &model = m_user->downloads();
    QMap<QString, QChar> states;
    for (int row = 0; row < model.rowCount(); ++row) {
        const auto state = model.index(row).data(DownloadListModel::StateRole).value<Download::State>();
        states.insert(model.index(row).data().toString(), "WR-FECPp"_s.at(static_cast<int>(state)));
    }
    QString result;
    for (const QChar state : std::as_const(states))
        result += state;
    return result;
}

void DeskQueueTest::modelKeepsToLimit()
{
    DownloadListModel &model = m_user->downloads();
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    HostSandbox::play("a: announce mp4|wait a\nb: announce mp4|wait b\nc: announce mp4|hang\n"
                      "d: announce mp4|hang"_s);
    model.setLimit(0); // counts as one
    for (const QString &words : {"a MP4"_s, "b MP4"_s, "c MP4"_s, "d MP4"_s})
        add(words);
    QCOMPARE(states(), "RWWW"_s);
    QCOMPARE(m_user->controller().plan().isComplete(), false);
    m_stage->let("a"_s);
    QTRY_SOON_COMPARE(states(), "FRWW"_s);
    model.setLimit(2);
    QCOMPARE(states(), "FRRW"_s);
    model.setLimit(1); // those that run go on
    m_stage->let("b"_s);
    QTRY_SOON_COMPARE(states(), "FFRW"_s);
    QCOMPARE(model.batchCount(), 4);
    QCOMPARE(model.batchEndedCount(), 2);
    QCOMPARE(model.batchPercent(), 50);
    QVERIFY(m_user->window().windowTitle().startsWith("50 %, 2 of 4"_s));
    QCOMPARE(files(), "c d b a"_s);
    model.cancel(1); // waits: it is ended at once
    QCOMPARE(states(), "FFRC"_s);
    QCOMPARE(model.batchPercent(), 75);
}

void DeskQueueTest::modelRetries()
{
    DownloadListModel &model = m_user->downloads();
    HostSandbox::play("a: announce mp4|err ERROR: gone|exit 1"_s);
    add("a MP4"_s);
    QTRY_SOON_COMPARE(states(), "E"_s);
    QVERIFY(!model.index(0).data(DownloadListModel::ErrorRole).toString().isEmpty());
    // Meanwhile somebody else has taken the name.
    QVERIFY(QFile(m_stage->video("a.mp4"_s)).open(QIODevice::WriteOnly));
    HostSandbox::play("a: announce mp4|progress 50.0 100|wait a"_s);
    model.retry(0);
    QCOMPARE(states(), "R"_s);
    QCOMPARE(model.index(0).data(DownloadListModel::ErrorRole).toString(), QString());
    model.retry(0); // not while it runs
    model.remove(0);
    QCOMPARE(states(), "R"_s);
    m_stage->let("a"_s);
    QTRY_SOON_COMPARE(states(), "F"_s);
    model.retry(0); // nor when it is done
    QCOMPARE(states(), "F"_s);
    QCOMPARE(m_stage->files(), QStringList({"a(1).mp4"_s, "a.mp4"_s}));
}

void DeskQueueTest::modelCancelsAll()
{
    DownloadListModel &model = m_user->downloads();
    QSignalSpy allEnded(&model, &DownloadListModel::allEnded);
    HostSandbox::play("a: announce mp4|hang\nb: announce mp4|hang\nc: announce mp4|hang"_s);
    model.setLimit(2);
    for (const QString &words : {"a MP4"_s, "b MP4"_s, "c MP4"_s})
        add(words);
    QTRY_SOON(m_stage->hangs("a"_s) && m_stage->hangs("b"_s));
    QVERIFY(m_user->press("cancelAll"));
    QTRY_SOON_COMPARE(states(), "CCC"_s);
    QCOMPARE(allEnded.size(), 1);
    QVERIFY(!m_stage->hangs("c"_s));
    QCOMPARE(m_stage->files(), QStringList());
    QVERIFY(!m_user->canPress("cancelAll"));
}

/** Reads the page with that number, whose only stream has a code after it, and downloads the stream. */
void DeskQueueTest::download(int number)
{
    HostSandbox::play("dump: json Clip-%1 c%1\n"_s.arg(number)
                      + "c1: announce mp4|progress 50.0 100|wait one\n"
                        "c2: announce mp4|err ERROR: no room|exit 1\n"
                        "c3: announce mp4|hang\nc4: announce mp4|hang\n"
                        "c5: announce mp4|wait five\nc6: announce mp4|hang"_s);
    m_user->readPage("http://x/%1"_s.arg(number));
    QTRY_SOON(m_user->text("title") == "Clip-%1"_s.arg(number));
    QVERIFY(m_user->press("download"));
}

void DeskQueueTest::sixAddresses()
{
    m_user->openMenu(0);
    auto *limit = qobject_cast<QSpinBox *>(m_user->find("parallel"));
    QVERIFY(limit != nullptr && limit->value() == 3);
    limit->setValue(2);
    QTest::mouseClick(limit->window()->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok), Qt::LeftButton);
    const QSignalSpy noticed(&m_user->controller(), &DeskController::noticed);
    int most = 0;
    const DownloadListModel &model = m_user->downloads();
    connect(&model, &QAbstractItemModel::dataChanged, this, [&] { most = qMax(most, model.runningCount()); });

    download(1);
    download(2);
    QTRY_SOON_COMPARE(states(), "RE"_s);
    for (int number = 3; number <= 6; ++number)
        download(number);
    QTRY_SOON_COMPARE(states(), "RERWWW"_s);
    QCOMPARE(files(), "Clip-1 Clip-3 Clip-4 Clip-5 Clip-6 Clip-2"_s);
    QTRY_SOON(m_user->text("status", 4).startsWith("Waiting"_s));
    QVERIFY(m_user->window().windowTitle().contains("1 of 6"_s));

    HostSandbox::play("c2: announce mp4\nc3: announce mp4|hang\nc4: announce mp4|hang\n"
                      "c5: announce mp4|wait five\nc6: announce mp4|hang"_s);
    m_user->find("retry", 5)->setFocus();
    QVERIFY(m_user->press("retry", 5)); // goes behind those that wait already
    QCOMPARE(states(), "RWRWWW"_s);
    QCOMPARE(m_user->window().focusWidget(), m_user->find("cancel", 5));
    QVERIFY(m_user->press("cancel", 2));
    QCOMPARE(states(), "RWRCWW"_s);
    QCOMPARE(files(), "Clip-1 Clip-3 Clip-5 Clip-6 Clip-2 Clip-4"_s);
    QTRY_SOON(m_stage->hangs("c3"_s));
    QVERIFY(m_user->press("cancel", 1));
    QTRY_SOON_COMPARE(states(), "RWCCRW"_s);
    m_stage->let("one"_s);
    QTRY_SOON_COMPARE(states(), "FWCCRR"_s);
    m_stage->let("five"_s);
    QTRY_SOON_COMPARE(states(), "FFCCFR"_s);
    QCOMPARE(files(), "Clip-6 Clip-2 Clip-5 Clip-1 Clip-3 Clip-4"_s); // the last one to end is the first of these
    QTRY_SOON(m_user->sees("retry", 4) && m_user->sees("retry", 5));
    QVERIFY(m_user->press("retry", 4) && m_user->press("retry", 5));
    QTRY_SOON_COMPARE(states(), "FFRWFR"_s);
    QCOMPARE(most, 2);
    QCOMPARE(noticed.at(0).at(1).toString().section(QLatin1Char(':'), 0, 0), "Clip-2.mp4"_s); // has failed
    QVERIFY(noticed.contains({"Download finished"_s, "Clip-5.mp4"_s}));
    QVERIFY(m_user->text("notice").startsWith("Download finished: Clip"_s));

    QVERIFY(!m_user->window().close());
    QTRY_SOON(m_user->canPress("closeAnyway"));
    QVERIFY(m_user->press("closeAnyway"));
    QTRY_SOON(!m_user->window().isVisible());
    m_user.reset();
    QTRY_SOON(m_stage->isQuiet());
    QCOMPARE(m_stage->files().filter("Clip"_s), QStringList({"Clip-1.mp4"_s, "Clip-2.mp4"_s, "Clip-5.mp4"_s}));

    // The list is there again; what was not finished goes on when the user wants it.
    m_user = std::make_unique<DeskUser>();
    QCOMPARE(states(), "FFppFp"_s);
    QCOMPARE(files(), "Clip-6 Clip-3 Clip-4 Clip-2 Clip-5 Clip-1"_s);
    HostSandbox::play("c3: announce mp4\nc4: announce mp4|hang\nc6: announce mp4"_s);
    QVERIFY(m_user->press("resumeAll"));
    QTRY_SOON_COMPARE(states(), "FFFRFF"_s);
    QVERIFY(!m_user->sees("resumeAll"));
    QTRY_SOON(m_stage->hangs("c4"_s));
    QVERIFY(m_user->press("pause", 0));
    QTRY_SOON_COMPARE(states(), "FFFpFF"_s);
    QVERIFY(m_user->press("remove", 0)); // leaves nothing
    QCOMPARE(m_stage->files().size(), 5);
}

void DeskQueueTest::failureIsToldBesideOthers_data()
{
    const TextTable row{"scenario", "words"};
    row("tool", "b: announce mp4|err ERROR: no room|exit 1", "no room");
    row("ffmpeg among its chatter",
        "b: announce mp4\nffmpeg: err ffmpeg version 5\\n  built with gcc\\n  configuration: --enable-all\\n"
        "frame=1 time=00:00:01.00 speed=1x\\rframe=2 time=00:00:02.00 speed=1x\\r|err broken header\\n|exit 1",
        "broken header");
}

void DeskQueueTest::failureIsToldBesideOthers()
{
    QFETCH(QString, scenario);
    HostSandbox::play("a: announce mp4|err ERROR: of the other|hang\n"_s + scenario);
    add("a MP4"_s);
    QTRY_SOON(m_stage->hangs("a"_s));
    add("b MP4 dash +140"_s);
    QTRY_SOON(m_user->seesFailure(1));
    QFETCH(QString, words);
    const QString told = m_user->text("failureDetails", 1);
    QVERIFY2(told.contains(words), qPrintable(told));
    QVERIFY2(!told.contains("frame="_s) && !told.contains("of the other"_s), qPrintable(told));
    QVERIFY2(told.count(QLatin1Char('\n')) < 8 && told.size() <= 600, qPrintable(told));
}

void DeskQueueTest::keys()
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
    QCOMPARE(m_user->downloads().rowCount(), 0);
    QCOMPARE(m_user->controller().settings().recentAddresses(), QStringList({"https://www.x/2"_s, "http://x/1"_s}));
}

/** Rows that nobody sees are not kept up to date, but are right as soon as they are seen. */
void DeskQueueTest::minimised()
{
    HostSandbox::play("a: announce mp4|wait a"_s);
    m_user->window().showMinimized();
    QTRY_SOON(m_user->window().isMinimized());
    add("a MP4"_s);
    m_stage->let("a"_s);
    QTRY_SOON_COMPARE(states(), "F"_s);
    QTRY_SOON(m_user->text("status", 0) == "Waiting for other downloads"_s);
    m_user->window().showNormal();
    QTRY_SOON(m_user->text("status", 0).startsWith("Finished"_s));
}

void DeskQueueTest::sortingKeepsTheChoice()
{
    HostSandbox::play(HostSandbox::pageScenario());
    QVERIFY(m_user->seesPage());
    auto *table = qobject_cast<QTableView *>(m_user->find("streams"));
    QCOMPARE(m_user->chosen(), "137"_s);
    table->sortByColumn(StreamTableModel::Quality, Qt::AscendingOrder);
    QCOMPARE(m_user->chosen(), "137"_s);
    QCOMPARE(table->model()->index(0, StreamTableModel::Quality).data().toString(), "128K"_s);
    QCOMPARE(table->model()->index(4, StreamTableModel::Quality).data().toString(), "1080P"_s);
    m_user->choose("360P"_s);
    QCOMPARE(m_user->chosen(), "18"_s);
}

QTEST_MAIN(DeskQueueTest)
#include "DeskQueueTest.moc"
