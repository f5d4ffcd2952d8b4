#include "tests/desk/DeskSandbox.h"
#include "tests/desk/DeskUser.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QSpinBox>
#include <QTableView>
#include <QtTest>

#include <memory>

using namespace NoxDesk;

#define QTRY_SOON(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, DeskSandbox::Patience)

/** Several downloads with stand-in programs: their queue, retrying, and what the user is told. */
class DeskQueueTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void modelKeepsToLimit();
    void modelRetries();
    void modelCancelsAll();
    void sixAddresses();
    void failureIsToldBesideOthers_data();
    void failureIsToldBesideOthers();
    void keys();
    void minimised();
    void sortingKeepsTheChoice();

private:
    void add(const QString &code);
    QString states() const;
    void download(int number);

    std::unique_ptr<DeskSandbox> m_stage;
    std::unique_ptr<DeskUser> m_user;
};

void DeskQueueTest::initTestCase()
{
    QLocale::setDefault(QLocale::c());
    QCoreApplication::setOrganizationName(QStringLiteral("noxwebmedia"));
    QCoreApplication::setApplicationName(QStringLiteral("desk-test"));
}

void DeskQueueTest::init()
{
    m_stage = std::make_unique<DeskSandbox>();
    DeskSandbox::installStandIns();
    QGuiApplication::clipboard()->clear();
    m_user = std::make_unique<DeskUser>();
}

void DeskQueueTest::cleanup()
{
    m_user.reset();
    QTRY_SOON(m_stage->isQuiet());
    m_stage.reset();
}

/** Asks the model for a download of the stream with that code, to a file named after it. */
void DeskQueueTest::add(const QString &code)
{
    Nox::MediaProfile stream;
    stream.setName(code);
    stream.setFormat(QStringLiteral("MP4"));
    stream.setMediaType(Nox::MEDIA_TYPE_VIDEO);
    m_user->desk().downloads().add(
        {QStringLiteral("http://x/"), stream, m_stage->videos() + QLatin1Char('/') + code + QStringLiteral(".mp4")});
}

/** The states from the oldest download to the newest, a letter for each. */
QString DeskQueueTest::states() const
{
    const DownloadListModel &model = m_user->desk().downloads();
    QString result;
    for (int row = model.rowCount() - 1; row >= 0; --row) {
        const auto state = model.index(row).data(DownloadListModel::StateRole).value<Download::State>();
        result += QStringLiteral("WR-FEC").at(static_cast<int>(state));
    }
    return result;
}

void DeskQueueTest::modelKeepsToLimit()
{
    DownloadListModel &model = m_user->desk().downloads();
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    DeskSandbox::play(QStringLiteral("a: announce mp4|wait a\nb: announce mp4|wait b\nc: announce mp4|hang\n"
                                     "d: announce mp4|hang"));
    model.setLimit(0); // counts as one
    for (const char *code : {"a", "b", "c", "d"})
        add(QString::fromLatin1(code));
    QCOMPARE(states(), QStringLiteral("RWWW"));
    QCOMPARE(m_user->desk().plan().isComplete(), false);
    m_stage->let(QStringLiteral("a"));
    QTRY_COMPARE_WITH_TIMEOUT(states(), QStringLiteral("FRWW"), DeskSandbox::Patience);
    model.setLimit(2);
    QCOMPARE(states(), QStringLiteral("FRRW"));
    model.setLimit(1); // those that run go on
    m_stage->let(QStringLiteral("b"));
    QTRY_COMPARE_WITH_TIMEOUT(states(), QStringLiteral("FFRW"), DeskSandbox::Patience);
    QCOMPARE(model.batchCount(), 4);
    QCOMPARE(model.batchEndedCount(), 2);
    QCOMPARE(model.batchPercent(), 50);
    QVERIFY(m_user->window().windowTitle().startsWith(QLatin1String("50 %, 2 of 4")));
    model.cancel(0); // waits: it is gone at once
    QCOMPARE(states(), QStringLiteral("FFRC"));
    QCOMPARE(model.batchPercent(), 75);
}

void DeskQueueTest::modelRetries()
{
    DownloadListModel &model = m_user->desk().downloads();
    DeskSandbox::play(QStringLiteral("a: announce mp4|err ERROR: gone|exit 1"));
    add(QStringLiteral("a"));
    QTRY_COMPARE_WITH_TIMEOUT(states(), QStringLiteral("E"), DeskSandbox::Patience);
    QVERIFY(!model.index(0).data(DownloadListModel::ProblemRole).toString().isEmpty());
    // Meanwhile somebody else has taken the name.
    QVERIFY(QFile(m_stage->videos() + QStringLiteral("/a.mp4")).open(QIODevice::WriteOnly));
    DeskSandbox::play(QStringLiteral("a: announce mp4|progress 50.0 100|wait a"));
    model.retry(0);
    QCOMPARE(states(), QStringLiteral("R"));
    QCOMPARE(model.index(0).data(DownloadListModel::ProblemRole).toString(), QString());
    model.retry(0); // not while it runs
    model.remove(0);
    QCOMPARE(states(), QStringLiteral("R"));
    m_stage->let(QStringLiteral("a"));
    QTRY_COMPARE_WITH_TIMEOUT(states(), QStringLiteral("F"), DeskSandbox::Patience);
    model.retry(0); // nor when it is done
    QCOMPARE(states(), QStringLiteral("F"));
    QCOMPARE(m_stage->files(), QStringList({QStringLiteral("a(1).mp4"), QStringLiteral("a.mp4")}));
}

void DeskQueueTest::modelCancelsAll()
{
    DownloadListModel &model = m_user->desk().downloads();
    QSignalSpy allEnded(&model, &DownloadListModel::allEnded);
    DeskSandbox::play(QStringLiteral("a: announce mp4|hang\nb: announce mp4|hang\nc: announce mp4|hang"));
    model.setLimit(2);
    for (const char *code : {"a", "b", "c"})
        add(QString::fromLatin1(code));
    QTRY_SOON(m_stage->hangs(QStringLiteral("a")) && m_stage->hangs(QStringLiteral("b")));
    QVERIFY(m_user->press("cancelAll"));
    QTRY_COMPARE_WITH_TIMEOUT(states(), QStringLiteral("CCC"), DeskSandbox::Patience);
    QCOMPARE(allEnded.size(), 1);
    QVERIFY(!m_stage->hangs(QStringLiteral("c")));
    QCOMPARE(m_stage->files(), QStringList());
    QVERIFY(!m_user->canPress("cancelAll"));
}

/** Reads the page with that number, whose only stream has a code after it, and downloads the stream. */
void DeskQueueTest::download(int number)
{
    const QString page =
        QStringLiteral("dump: out {\"title\":\"Clip %1\",\"duration\":60,\"formats\":[{\"format_id\":\"c%1\","
                       "\"ext\":\"mp4\",\"vcodec\":\"avc1\",\"acodec\":\"mp4a\",\"width\":640,"
                       "\"height\":360}]}\n")
            .arg(number);
    DeskSandbox::play(page
                      + QStringLiteral("c1: announce mp4|progress 50.0 100|wait one\n"
                                       "c2: announce mp4|err ERROR: no room|exit 1\n"
                                       "c3: announce mp4|hang\nc4: announce mp4|hang\n"
                                       "c5: announce mp4|wait five\nc6: announce mp4|hang"));
    m_user->readPage(QStringLiteral("http://x/%1").arg(number));
    QTRY_SOON(m_user->text("title") == QStringLiteral("Clip %1").arg(number));
    QVERIFY(m_user->press("download"));
    QTRY_SOON(m_user->sees("status", 0) || m_user->sees("failureWords", 0));
}

void DeskQueueTest::sixAddresses()
{
    m_user->openMenu(0);
    auto *limit = qobject_cast<QSpinBox *>(m_user->find("parallel"));
    QVERIFY(limit != nullptr && limit->value() == 3);
    limit->setValue(2);
    QTest::mouseClick(limit->window()->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok), Qt::LeftButton);
    const QSignalSpy noticed(&m_user->desk(), &Desk::noticed);
    int most = 0;
    const DownloadListModel &model = m_user->desk().downloads();
    connect(&model, &QAbstractItemModel::dataChanged, this, [&] { most = qMax(most, model.runningCount()); });

    download(1);
    download(2);
    QTRY_COMPARE_WITH_TIMEOUT(states(), QStringLiteral("RE"), DeskSandbox::Patience);
    for (int number = 3; number <= 6; ++number)
        download(number);
    QTRY_COMPARE_WITH_TIMEOUT(states(), QStringLiteral("RERWWW"), DeskSandbox::Patience);
    QVERIFY(m_user->text("status", 0).startsWith(QLatin1String("Waiting")));
    QVERIFY(m_user->window().windowTitle().contains(QLatin1String("1 of 6")));

    DeskSandbox::play(QStringLiteral("c2: announce mp4\nc3: announce mp4|hang\nc4: announce mp4|hang\n"
                                     "c5: announce mp4|wait five\nc6: announce mp4|hang"));
    m_user->find("retry", 4)->setFocus();
    QVERIFY(m_user->press("retry", 4)); // goes behind those that wait already
    QCOMPARE(states(), QStringLiteral("RWRWWW"));
    QCOMPARE(m_user->window().focusWidget(), m_user->find("cancel", 4));
    QVERIFY(m_user->press("cancel", 2));
    QCOMPARE(states(), QStringLiteral("RWRCWW"));
    QTRY_SOON(m_stage->hangs(QStringLiteral("c3")));
    QVERIFY(m_user->press("cancel", 3));
    QTRY_COMPARE_WITH_TIMEOUT(states(), QStringLiteral("RWCCRW"), DeskSandbox::Patience);
    m_stage->let(QStringLiteral("one"));
    QTRY_COMPARE_WITH_TIMEOUT(states(), QStringLiteral("FWCCRR"), DeskSandbox::Patience);
    m_stage->let(QStringLiteral("five"));
    QTRY_COMPARE_WITH_TIMEOUT(states(), QStringLiteral("FFCCFR"), DeskSandbox::Patience);
    QVERIFY(m_user->press("retry", 3) && m_user->press("retry", 2));
    QTRY_COMPARE_WITH_TIMEOUT(states(), QStringLiteral("FFRWFR"), DeskSandbox::Patience);
    QCOMPARE(most, 2);
    QCOMPARE(noticed.at(0).at(1).toString().section(QLatin1Char(':'), 0, 0),
             QStringLiteral("Clip 2.mp4")); // has failed
    QVERIFY(noticed.contains({QStringLiteral("Download finished"), QStringLiteral("Clip 5.mp4")}));
    QVERIFY(m_user->text("notice").startsWith(QLatin1String("Download finished: Clip")));

    QVERIFY(!m_user->window().close());
    QTRY_SOON(m_user->canPress("closeAnyway"));
    QVERIFY(m_user->press("closeAnyway"));
    QTRY_SOON(!m_user->window().isVisible());
    QCOMPARE(m_stage->files(),
             QStringList({QStringLiteral("Clip 1.mp4"), QStringLiteral("Clip 2.mp4"), QStringLiteral("Clip 5.mp4")}));
    QTRY_SOON(m_stage->isQuiet());
}

void DeskQueueTest::failureIsToldBesideOthers_data()
{
    QTest::addColumn<QString>("scenario");
    QTest::addColumn<QString>("words");
    QTest::newRow("tool") << "b: announce mp4|err ERROR: no room|exit 1"
                          << "no room";
    QTest::newRow("ffmpeg among its chatter")
        << "b: announce mp4\nffmpeg: err ffmpeg version 5\\n  built with gcc\\n  configuration: --enable-all\\n"
           "frame=1 time=00:00:01.00 speed=1x\\rframe=2 time=00:00:02.00 speed=1x\\r|err broken header\\n|exit 1"
        << "broken header";
}

void DeskQueueTest::failureIsToldBesideOthers()
{
    QFETCH(QString, scenario);
    DeskSandbox::play(QStringLiteral("a: announce mp4|err ERROR: of the other|hang\n") + scenario);
    add(QStringLiteral("a"));
    QTRY_SOON(m_stage->hangs(QStringLiteral("a")));
    Nox::MediaProfile stream;
    stream.setName(QStringLiteral("b"));
    stream.setFormat(QStringLiteral("MP4"));
    stream.setMediaType(Nox::MEDIA_TYPE_VIDEO);
    stream.setDash(true);
    stream.setPreferredDashAudioYdCode(QStringLiteral("140"));
    m_user->desk().downloads().add({QStringLiteral("http://x/"), stream, m_stage->videos() + QStringLiteral("/b.mp4")});
    QTRY_SOON(m_user->sees("toolWords", 0));
    QFETCH(QString, words);
    const QString told = m_user->text("toolWords", 0);
    QVERIFY2(told.contains(words), qPrintable(told));
    QVERIFY2(!told.contains(QLatin1String("frame=")) && !told.contains(QLatin1String("of the other")),
             qPrintable(told));
    QVERIFY2(told.count(QLatin1Char('\n')) < 8 && told.size() <= 600, qPrintable(told));
}

void DeskQueueTest::keys()
{
    m_user->readPage(QStringLiteral("http://x/1"));
    QTRY_SOON(m_user->sees("streams"));
    const int runs = m_stage->runCount();
    QTest::keyClick(&m_user->window(), Qt::Key_F5);
    QTRY_SOON(m_stage->runCount() == runs + 1 && m_user->desk().reader().state() == PageReader::State::Ready);

    QWidget *table = m_user->find("streams");
    table->setFocus();
    QGuiApplication::clipboard()->setText(QStringLiteral(" www.x/2 "));
    QTest::keyClick(table, Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(m_user->text("address"), QStringLiteral("https://www.x/2"));
    QTRY_SOON(m_user->desk().reader().url() == QLatin1String("https://www.x/2"));

    QTest::keyClick(m_user->find("streams"), Qt::Key_Return);
    QTRY_SOON(m_user->sees("openFile", 0));
    m_user->find("openFile", 0)->setFocus();
    QTest::keyClick(m_user->find("openFile", 0), Qt::Key_Delete);
    QCOMPARE(m_user->desk().downloads().rowCount(), 0);
    QCOMPARE(m_user->desk().settings().recentAddresses(),
             QStringList({QStringLiteral("https://www.x/2"), QStringLiteral("http://x/1")}));
}

/** Rows that nobody sees are not kept up to date, but are right as soon as they are seen. */
void DeskQueueTest::minimised()
{
    DeskSandbox::play(QStringLiteral("a: announce mp4|wait a"));
    m_user->window().showMinimized();
    QTRY_SOON(m_user->window().isMinimized());
    add(QStringLiteral("a"));
    m_stage->let(QStringLiteral("a"));
    QTRY_COMPARE_WITH_TIMEOUT(states(), QStringLiteral("F"), DeskSandbox::Patience);
    QTRY_SOON(m_user->text("status", 0) == QLatin1String("Waiting for others to end"));
    m_user->window().showNormal();
    QTRY_SOON(m_user->text("status", 0).startsWith(QLatin1String("Finished")));
}

void DeskQueueTest::sortingKeepsTheChoice()
{
    DeskSandbox::play(DeskSandbox::pageScenario());
    m_user->readPage(QStringLiteral("http://x/"));
    QTRY_SOON(m_user->sees("streams"));
    auto *table = qobject_cast<QTableView *>(m_user->find("streams"));
    QCOMPARE(m_user->chosen(), QStringLiteral("137"));
    table->sortByColumn(StreamTableModel::Quality, Qt::AscendingOrder);
    QCOMPARE(m_user->chosen(), QStringLiteral("137"));
    QCOMPARE(table->model()->index(0, StreamTableModel::Quality).data().toString(), QStringLiteral("128K"));
    QCOMPARE(table->model()->index(4, StreamTableModel::Quality).data().toString(), QStringLiteral("1080P"));
    m_user->choose(QStringLiteral("360P"));
    QCOMPARE(m_user->chosen(), QStringLiteral("18"));
}

QTEST_MAIN(DeskQueueTest)
#include "DeskQueueTest.moc"
