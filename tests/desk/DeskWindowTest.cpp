#include "hosts/desk/Translation.h"
#include "hosts/desk/view/ElidedLabel.h"
#include "hosts/desk/view/StreamPanel.h"
#include "tests/desk/DeskSandbox.h"
#include "tests/desk/DeskUser.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QComboBox>
#include <QDesktopServices>
#include <QDropEvent>
#include <QFileDialog>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QTranslator>
#include <QtTest>

#include <memory>

using namespace NoxDesk;

#define QTRY_SOON(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, DeskSandbox::Patience)

namespace {

const QString pageAddress = QStringLiteral("http://x/");

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
        Nox::WebMediaInfo page(pageAddress);
        for (int i = 0; i < count; ++i) {
            Nox::MediaProfile stream;
            stream.setName(QString::number(i));
            stream.setFormat(QStringLiteral("MP4"));
            stream.setMediaType(Nox::MEDIA_TYPE_VIDEO);
            stream.setVResolution({320 + 2 * i, 180 + i});
            page.addMediaProfile(stream);
        }
        CountingStreams model;
        StreamPanel panel(model);
        panel.show();
        model.setStreams(NoxHost::StreamChoice(page), 60);
        QCoreApplication::processEvents();
        model.m_questions = 0;
        model.setSize(QStringLiteral("0"), 1000);
        QCoreApplication::processEvents();
        return model.rowCount() < count ? 0 : model.m_questions;
    }

private:
    mutable int m_questions = 0;
};

} // namespace

/** The window with stand-in programs. */
class DeskWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();
    void describesPage();
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
    void keyboard_data();
    void keyboard();
    void fitsLargeScaling();
    void longTexts_data();
    void longTexts();
    void textHasNoSay();
    void titleFollowsTheWidth();
    void cancelKeepsFocus();
    void rowsAreReachedInOrder();
    void typingWhileReading_data();
    void typingWhileReading();
    void failedPageKeepsTheOther();
    void oneDownloadForTwoClicks();
    void downloadKeepsFocus();
    void fileAppears();
    void openingFails();
    void preferredFolder();
    void logOpensAtItsEnd();

public Q_SLOTS:
    void openedUrl(const QUrl &url) { m_opened += url.toLocalFile(); }

private:
    void beginDownload(const QString &quality);
    int rowWithFocus() const;
    QString cutControls() const;

    std::unique_ptr<DeskSandbox> m_stage;
    std::unique_ptr<DeskUser> m_user;
    QStringList m_opened;
};

void DeskWindowTest::initTestCase()
{
    QLocale::setDefault(QLocale::c());
    QCoreApplication::setOrganizationName(QStringLiteral("noxwebmedia"));
    QCoreApplication::setApplicationName(QStringLiteral("desk-test"));
    QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "openedUrl");
}

void DeskWindowTest::cleanupTestCase()
{
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
}

void DeskWindowTest::init()
{
    m_stage = std::make_unique<DeskSandbox>();
    DeskSandbox::installStandIns();
    QGuiApplication::clipboard()->clear();
    m_opened.clear();
    m_user = std::make_unique<DeskUser>();
}

void DeskWindowTest::cleanup()
{
    m_user.reset();
    qDeleteAll(QCoreApplication::instance()->findChildren<QTranslator *>());
    QTRY_SOON(m_stage->isQuiet());
    m_stage.reset();
}

void DeskWindowTest::beginDownload(const QString &quality)
{
    if (m_user->desk().reader().state() != PageReader::State::Ready) {
        m_user->readPage(pageAddress);
        QTRY_SOON(m_user->sees("streams"));
    }
    m_user->choose(quality);
    QVERIFY(m_user->press("download"));
}

/** The row of the downloads that holds the focus, or -1. */
int DeskWindowTest::rowWithFocus() const
{
    for (int row = 0; row < m_user->desk().downloads().rowCount(); ++row) {
        if (m_user->row(row)->isAncestorOf(QApplication::focusWidget()))
            return row;
    }
    return -1;
}

/** Names of the controls that cannot be seen in their full width when the keyboard comes to them. */
QString DeskWindowTest::cutControls() const
{
    QStringList result;
    const QList<QWidget *> widgets = m_user->window().findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        if ((widget->focusPolicy() & Qt::TabFocus) == 0 || !widget->isVisible() || !widget->isEnabled())
            continue;
        widget->setFocus(Qt::TabFocusReason);
        for (QWidget *area = widget->parentWidget(); area != nullptr; area = area->parentWidget()) {
            if (auto *scrolled = qobject_cast<QScrollArea *>(area))
                scrolled->ensureWidgetVisible(widget);
        }
        const QRect place(widget->mapTo(&m_user->window(), QPoint()), widget->size());
        const QSize seen = widget->visibleRegion().boundingRect().size();
        const bool isWide = place.left() < 0 || place.right() > m_user->window().width();
        const bool isScrolled = widget->inherits("QAbstractScrollArea"); // may be higher than what shows it
        if (isWide || (!isScrolled && seen != widget->size()))
            result += widget->objectName();
    }
    return result.join(QLatin1Char(' '));
}

void DeskWindowTest::describesPage()
{
    m_user->readPage(QLatin1Char(' ') + pageAddress + QLatin1Char(' '));
    QVERIFY(m_user->sees("busy"));
    QTRY_SOON(m_user->sees("streams"));
    QCOMPARE(m_user->text("title"), QStringLiteral("Clip"));
    QCOMPARE(m_user->text("duration"), QStringLiteral("Duration 1:02:05"));
    QCOMPARE(
        m_user->streams(),
        QStringLiteral("1080p, with sound,1080P,MP4,video only (DASH),;720p, with sound,720P,MP4,video only (DASH),;"
                       "360p, with sound,360P,MP4,video,;sound only, 160 kbit/s,160K,WEBM,audio (DASH),;"
                       "sound only, 128 kbit/s,128K,M4A,audio (DASH),"));
    QCOMPARE(m_user->chosen(), QStringLiteral("137"));
    QCOMPARE(m_user->text("destination"), m_stage->videos() + QStringLiteral("/Clip.mp4"));
    m_user->choose(QStringLiteral("360P"));
    QVERIFY(!m_user->canPress("sound"));
    QVERIFY(m_user->press("showAll"));
    QCOMPARE(m_user->desk().streams().rowCount(), 6);
    QCOMPARE(m_user->chosen(), QStringLiteral("18"));
    // What was chosen is gone from the thinned table: the best is chosen instead.
    m_user->desk().chooseStream(-1);
    QVERIFY(!m_user->canPress("download"));
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
    m_user->readPage(QStringLiteral("ftp://x/"));
    QVERIFY(m_user->text("addressProblem").contains(QLatin1String("must start with http")));
    QCOMPARE(m_stage->runCount(), 0);
    QTest::keyClick(m_user->find("address"), Qt::Key_X);
    QVERIFY(!m_user->sees("addressProblem"));
}

void DeskWindowTest::unreadablePage_data()
{
    QTest::addColumn<QString>("scenario");
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("toolWords");
    QTest::newRow("tool's own words") << "dump: err ERROR: Unsupported URL|exit 1"
                                      << "could not read"
                                      << "Unsupported URL";
    QTest::newRow("crash") << "dump: kill SIGKILL"
                           << "crashed"
                           << "";
    QTest::newRow("no stream") << "dump: json Clip "
                               << "no stream"
                               << "";
    QTest::newRow("no tool") << ""
                             << "The download tool is missing"
                             << "";
}

void DeskWindowTest::unreadablePage()
{
    QFETCH(QString, scenario);
    QFETCH(QString, words);
    DeskSandbox::play(scenario);
    if (scenario.isEmpty())
        QVERIFY(QFile::remove(QCoreApplication::applicationDirPath() + QStringLiteral("/yt.zip")));
    m_user->readPage(pageAddress);
    QTRY_SOON(m_user->sees("failureWords"));
    QVERIFY2(m_user->text("failureWords").contains(words), qPrintable(m_user->text("failureWords")));
    QFETCH(QString, toolWords);
    QVERIFY2(m_user->text("toolWords").contains(toolWords), qPrintable(m_user->text("toolWords")));
    QCOMPARE(m_user->text("toolWords").isEmpty(), toolWords.isEmpty());

    QVERIFY(m_user->press("showLog"));
    const auto *log = qobject_cast<QPlainTextEdit *>(m_user->find("logText"));
    QVERIFY(log != nullptr && log->toPlainText().contains(toolWords));
}

void DeskWindowTest::cancelsReading()
{
    DeskSandbox::play(QStringLiteral("dump: hang"));
    m_user->readPage(pageAddress);
    QTRY_SOON(m_stage->hangs(QStringLiteral("dump")));
    QVERIFY(m_user->press("cancelReading"));
    QTRY_SOON(m_user->desk().reader().state() == PageReader::State::Empty);
    QTRY_SOON(m_stage->isQuiet());
    QVERIFY(!m_user->sees("busy") && !m_user->sees("failureWords"));
}

void DeskWindowTest::newestPageWins()
{
    DeskSandbox::play(QStringLiteral("dump: hang"));
    m_user->readPage(pageAddress);
    QTRY_SOON(m_stage->hangs(QStringLiteral("dump")));
    DeskSandbox::play(QStringLiteral("dump: json Second 1"));
    m_user->readPage(pageAddress);
    QTRY_SOON(m_user->sees("streams"));
    QCOMPARE(m_user->text("title"), QStringLiteral("Second"));
    QTRY_SOON(m_stage->isQuiet());
}

void DeskWindowTest::downloadsJoined()
{
    DeskSandbox::play(DeskSandbox::pageScenario()
                      + QStringLiteral("\n137: announce mp4|progress 25.0 1000000|hang\nffmpeg: merge|hang"));
    const QAbstractItemModelTester tester(&m_user->desk().downloads(),
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    beginDownload(QStringLiteral("1080P"));
    QTRY_COMPARE_WITH_TIMEOUT(m_user->text("status", 0),
                              QStringLiteral("Fetching video · 250.0 kB / 1.2 MB · 10 bytes/s · 26:23:20 left"),
                              DeskSandbox::Patience);
    QCOMPARE(m_user->find("progress", 0)->property("value").toInt(), 20);
    QVERIFY(m_user->press("cancel", 0));
    QTRY_SOON(m_user->text("status", 0) == QLatin1String("Cancelled"));

    DeskSandbox::play(DeskSandbox::pageScenario() + QStringLiteral("\nffmpeg: merge|hang"));
    beginDownload(QStringLiteral("1080P"));
    QTRY_SOON(m_user->text("status", 0).startsWith(QLatin1String("Joining video and audio")));
    QVERIFY(m_user->press("cancel", 0));
    QTRY_SOON(m_user->text("status", 0) == QLatin1String("Cancelled"));
    QCOMPARE(m_stage->files(), QStringList());

    DeskSandbox::play(DeskSandbox::pageScenario());
    beginDownload(QStringLiteral("1080P"));
    QTRY_SOON(m_user->text("status", 0).startsWith(QLatin1String("Finished, 7 bytes"))); // "137+140"
    const QString file = m_stage->videos() + QStringLiteral("/Clip.mp4");
    QCOMPARE(m_stage->files(), QStringList(QStringLiteral("Clip.mp4")));
    QVERIFY(m_user->press("openFile", 0) && m_user->press("showFolder", 0));
    // There is no session bus, and so no file manager that would select the file.
    QTRY_COMPARE(m_opened, QStringList({file, m_stage->videos()}));
    QVERIFY(m_user->press("remove", 1) && m_user->press("removeEnded"));
    QCOMPARE(m_user->desk().downloads().rowCount(), 0);
    QVERIFY(QFile::exists(file));
}

void DeskWindowTest::cancelsDownload_data()
{
    QTest::addColumn<QString>("quality");
    QTest::addColumn<QString>("scenario");
    QTest::addColumn<QString>("hanging");
    QTest::newRow("video") << "1080P"
                           << "137: announce mp4|hang"
                           << "137";
    QTest::newRow("audio") << "1080P"
                           << "140: announce m4a|hang"
                           << "140";
    QTest::newRow("joining") << "1080P"
                             << "ffmpeg: write half|hang"
                             << "ffmpeg";
    QTest::newRow("with a child of its own") << "360P"
                                             << "18: announce mp4|spawn|hang"
                                             << "18";
}

void DeskWindowTest::cancelsDownload()
{
    QFETCH(QString, quality);
    QFETCH(QString, scenario);
    QFETCH(QString, hanging);
    DeskSandbox::play(DeskSandbox::pageScenario() + QLatin1Char('\n') + scenario);
    beginDownload(quality);
    QTRY_SOON(m_stage->hangs(hanging));
    QVERIFY(!m_stage->files().isEmpty() && !m_stage->isQuiet());
    QVERIFY(m_user->press("cancel", 0));
    QTRY_SOON(m_user->text("status", 0) == QLatin1String("Cancelled"));
    QCOMPARE(m_stage->files(), QStringList());
    QTRY_SOON(m_stage->isQuiet());
    QVERIFY(!m_user->sees("cancel", 0) && !m_user->sees("openFile", 0));
}

void DeskWindowTest::failedDownload_data()
{
    QTest::addColumn<QString>("scenario");
    QTest::addColumn<QString>("words");
    QTest::addColumn<QString>("toolWords");
    QTest::newRow("disk full") << "137: announce mp4|err ERROR: No space left on device|exit 1"
                               << "The download tool gave up"
                               << "No space left on device";
    QTest::newRow("joining") << "ffmpeg: err broken header|exit 1"
                             << "Joining video and audio failed"
                             << "broken header";
    QTest::newRow("crash") << "140: announce m4a|kill SIGKILL"
                           << "crashed"
                           << "";
}

void DeskWindowTest::failedDownload()
{
    QFETCH(QString, scenario);
    QFETCH(QString, words);
    QFETCH(QString, toolWords);
    DeskSandbox::play(DeskSandbox::pageScenario() + QLatin1Char('\n') + scenario);
    beginDownload(QStringLiteral("1080P"));
    QTRY_SOON(m_user->sees("failureWords", 0));
    QVERIFY2(m_user->text("failureWords", 0).contains(words), qPrintable(m_user->text("failureWords", 0)));
    QVERIFY2(m_user->text("toolWords", 0).contains(toolWords), qPrintable(m_user->text("toolWords", 0)));
    QCOMPARE(m_user->sees("toolWords", 0), !toolWords.isEmpty());
    QCOMPARE(m_stage->files(), QStringList());
    QVERIFY(m_user->press("showLog", 0));
    QVERIFY(m_user->sees("logText"));
}

void DeskWindowTest::twoDownloads()
{
    DeskSandbox::play(DeskSandbox::pageScenario()
                      + QStringLiteral("\n137: announce mp4|progress 50.0 100|wait go\n18: announce mp4|hang"));
    beginDownload(QStringLiteral("1080P"));
    QCOMPARE(m_user->text("destination"), m_stage->videos() + QStringLiteral("/Clip(1).mp4"));
    beginDownload(QStringLiteral("360P"));
    QTRY_SOON(m_stage->hangs(QStringLiteral("18")));
    QCOMPARE(m_user->desk().downloads().activeCount(), 2);
    QCOMPARE(m_user->text("fileName", 0), QStringLiteral("Clip(1).mp4"));
    QVERIFY(m_user->press("cancel", 0));
    QTRY_SOON(m_user->text("status", 0) == QLatin1String("Cancelled"));
    QVERIFY(m_user->text("status", 1).startsWith(QLatin1String("Fetching video")));

    m_stage->let(QStringLiteral("go"));
    QTRY_SOON(m_user->text("status", 1).startsWith(QLatin1String("Finished")));
    QCOMPARE(m_stage->files(), QStringList(QStringLiteral("Clip.mp4")));
}

void DeskWindowTest::badDestination()
{
    m_user->readPage(pageAddress);
    QTRY_SOON(m_user->sees("streams"));
    m_user->type("destination", m_stage->videos() + QStringLiteral("/a?.mp4"));
    QVERIFY(m_user->text("destinationProblem").contains(QLatin1String("must not hold")));
    QVERIFY(!m_user->canPress("download"));
    QVERIFY(m_user->find("destination")->toolTip().contains(QLatin1String("a?.mp4")));
    QTest::keyClick(m_user->find("destination"), Qt::Key_Return);
    QCOMPARE(m_user->desk().downloads().rowCount(), 0);

    QVERIFY(m_user->press("browse"));
    auto *dialog = m_user->window().findChild<QFileDialog *>();
    QVERIFY(dialog != nullptr);
    Q_EMIT dialog->fileSelected(m_stage->videos() + QStringLiteral("/b")); // as it is typed there
    dialog->reject();
    QVERIFY(!m_user->sees("destinationProblem") && m_user->canPress("download"));
    QCOMPARE(m_user->text("destination"), m_stage->videos() + QStringLiteral("/b.mp4"));
}

void DeskWindowTest::missingFfmpeg()
{
    DeskSandbox::removeFfmpeg();
    m_user->readPage(pageAddress);
    QTRY_SOON(m_user->sees("streams"));
    QVERIFY(m_user->text("soundProblem").contains(QLatin1String("cannot be joined")));
    QVERIFY(!m_user->canPress("download"));
    auto *sound = qobject_cast<QComboBox *>(m_user->find("sound"));
    sound->setCurrentIndex(sound->count() - 1); // none
    QVERIFY(!m_user->sees("soundProblem") && m_user->canPress("download"));
}

void DeskWindowTest::closing()
{
    DeskSandbox::play(DeskSandbox::pageScenario() + QStringLiteral("\n18: announce mp4|hang"));
    beginDownload(QStringLiteral("360P"));
    QTRY_SOON(m_stage->hangs(QStringLiteral("18")));
    QVERIFY(!m_user->window().close());
    QTRY_SOON(m_user->canPress("stay"));
    QCOMPARE(m_user->find("stay")->window()->windowTitle(),
             QStringLiteral("Nox Desk")); // no progress that stands still
    QVERIFY(m_user->press("stay"));
    QTRY_SOON(!m_user->sees("stay"));
    QVERIFY(m_user->window().isVisible() && !m_stage->isQuiet());

    QVERIFY(!m_user->window().close());
    QTRY_SOON(m_user->canPress("closeAnyway"));
    QVERIFY(m_user->press("closeAnyway"));
    QTRY_SOON(!m_user->window().isVisible());
    QCOMPARE(m_stage->files(), QStringList());
    QTRY_SOON(m_stage->isQuiet());
}

void DeskWindowTest::dropAndClipboard()
{
    QMimeData data;
    data.setUrls({QUrl(pageAddress)});
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&m_user->window(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&m_user->window(), &drop);
    QTRY_SOON(m_user->sees("streams"));
    QCOMPARE(m_user->text("address"), pageAddress);

    QVERIFY(!m_user->sees("clipboardOffer"));
    QGuiApplication::clipboard()->setText(QStringLiteral("http://x/?a&b"));
    QTRY_SOON(m_user->sees("clipboardOffer"));
    QVERIFY(m_user->press("clipboardOffer"));
    QCOMPARE(m_user->text("address"), QStringLiteral("http://x/?a&b"));
    QVERIFY(!m_user->sees("clipboardOffer"));
    QTRY_SOON(m_user->sees("streams"));
}

void DeskWindowTest::remembers()
{
    QVERIFY(QDir(m_stage->path(QString())).mkdir(QStringLiteral("mine")));
    m_user->readPage(pageAddress);
    QTRY_SOON(m_user->sees("streams"));
    m_user->type("destination", m_stage->path(QStringLiteral("mine/a.mp4")));
    QVERIFY(m_user->press("download"));
    QTRY_SOON(m_user->text("status", 0).startsWith(QLatin1String("Finished")));
    m_user->window().resize(m_user->window().minimumSizeHint() + QSize(17, 13));
    const QSize size = m_user->window().size();
    QVERIFY(m_user->window().close());

    m_user = std::make_unique<DeskUser>();
    QCOMPARE(m_user->window().size(), size);
    m_user->readPage(pageAddress);
    QTRY_SOON(m_user->sees("streams"));
    QCOMPARE(m_user->text("destination"), m_stage->path(QStringLiteral("mine/Clip.mp4")));
}

void DeskWindowTest::keyboard_data()
{
    QTest::addColumn<QLocale::Language>("language");
    QTest::newRow("English") << QLocale::English;
    QTest::newRow("German") << QLocale::German;
}

/** Every control can be reached by Tab, has a name of its own for screen readers, and a mnemonic of its own. */
void DeskWindowTest::keyboard()
{
    QFETCH(QLocale::Language, language);
    m_user.reset();
    installTranslation(QLocale(language));
    m_user = std::make_unique<DeskUser>();
    beginDownload(QStringLiteral("1080P"));
    QTRY_SOON(m_user->sees("openFile", 0));
    QGuiApplication::clipboard()->setText(QStringLiteral("http://x/other"));
    QTRY_SOON(m_user->sees("clipboardOffer"));
    QCOMPARE(m_user->find("read")->property("text").toString(),
             language == QLocale::German ? QStringLiteral("Seite &lesen") : QStringLiteral("&Read page"));

    QSet<QWidget *> reached;
    for (int i = 0; i < 60; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        reached += QApplication::focusWidget();
    }
    QHash<QChar, QString> mnemonics;
    const QList<QWidget *> widgets = m_user->window().findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        const QString text = widget->property("text").toString();
        const auto mark = text.indexOf(QLatin1Char('&'));
        if (widget->isVisible() && mark >= 0 && qobject_cast<QLineEdit *>(widget) == nullptr) {
            const QChar key = text.at(mark + 1).toLower();
            QVERIFY2(!mnemonics.contains(key), qPrintable(text + QLatin1Char('/') + mnemonics.value(key)));
            mnemonics.insert(key, text);
        }
        const bool isControl = (widget->focusPolicy() & Qt::TabFocus) != 0 && widget->focusProxy() == nullptr;
        if (!isControl || !widget->isVisible() || !widget->isEnabled() || widget->objectName().startsWith(u"qt_"))
            continue;
        QVERIFY2(reached.contains(widget), qPrintable(widget->objectName()));
        QVERIFY2(!widget->accessibleName().isEmpty() || !text.isEmpty(), qPrintable(widget->objectName()));
    }
    QVERIFY(mnemonics.size() >= 9);
}

/** A full-HD screen at 200 % has half its pixels, some of which the desktop takes. */
void DeskWindowTest::fitsLargeScaling()
{
    m_user->readPage(pageAddress);
    QTRY_SOON(m_user->sees("streams"));
    const QSize least = m_user->window().minimumSizeHint();
    QVERIFY2(least.width() <= 960 && least.height() <= 480,
             qPrintable(QStringLiteral("%1x%2").arg(least.width()).arg(least.height())));
}

void DeskWindowTest::longTexts_data()
{
    keyboard_data();
}

/** No text decides how wide the window is, and in a small one everything can be seen and reached. */
void DeskWindowTest::longTexts()
{
    QFETCH(QLocale::Language, language);
    m_user.reset();
    installTranslation(QLocale(language));
    m_user = std::make_unique<DeskUser>();
    const QString text(700, u'W');
    const QString page = DeskSandbox::pageScenario().replace(QLatin1String("Clip"), text);
    DeskSandbox::play(page + QStringLiteral("\n137: announce mp4|err ERROR: ") + text
                      + QStringLiteral("|exit 1\n18: announce mp4|hang"));
    beginDownload(QStringLiteral("1080P"));
    QTRY_SOON(m_user->sees("failureWords", 0));
    m_user->choose(QStringLiteral("360P"));
    m_user->type("destination", m_stage->videos() + QLatin1Char('/') + text.left(200) + QStringLiteral(".mp4"));
    QVERIFY(m_user->press("download"));
    m_user->type("destination", m_stage->path(text + QLatin1Char('/') + text)); // for the words that refuse it
    DeskSandbox::play(QStringLiteral("dump: err ERROR: ") + text + QStringLiteral("|exit 1"));
    m_user->readPage(pageAddress + text);
    QTRY_SOON(m_user->sees("dismissFailure"));
    QGuiApplication::clipboard()->setText(QStringLiteral("http://y/") + text);
    QTRY_SOON(m_user->sees("clipboardOffer"));

    const QSize size(600, 400);
    QTest::qWait(0); // for layouts that are still to be made
    const QSize least = m_user->window().minimumSizeHint();
    QVERIFY2(least.width() <= size.width() && least.height() <= size.height(),
             qPrintable(QStringLiteral("%1x%2").arg(least.width()).arg(least.height())));
    m_user->window().resize(size);
    QTRY_COMPARE(m_user->window().size(), size);
    QCOMPARE(cutControls(), QString());
}

/** A label whose text changes often is not measured anew each time. */
void DeskWindowTest::textHasNoSay()
{
    ElidedLabel label(Qt::ElideMiddle);
    const QSize empty = label.sizeHint();
    label.setText(QString(200, QLatin1Char('n')));
    QCOMPARE(label.sizeHint(), empty);
    QVERIFY(empty.height() >= label.fontMetrics().height());
}

void DeskWindowTest::titleFollowsTheWidth()
{
    DeskSandbox::play(QStringLiteral("dump: json %1 137").arg(QString(80, QLatin1Char('n'))));
    m_user->window().resize(1000, 700);
    m_user->readPage(pageAddress);
    QTRY_SOON(m_user->sees("title"));
    auto *title = qobject_cast<QTextEdit *>(m_user->find("title"));
    const auto isWhole = [title] { return title->document()->size().height() <= title->height(); };
    QTRY_SOON(isWhole());
    const int before = title->height();
    m_user->window().resize(500, 700);
    QTRY_SOON(title->height() > before && isWhole());
    m_user->window().resize(1000, 700);
    QTRY_COMPARE_WITH_TIMEOUT(title->height(), before, DeskSandbox::Patience);
}

void DeskWindowTest::cancelKeepsFocus()
{
    DeskSandbox::play(DeskSandbox::pageScenario() + QStringLiteral("\n18: announce mp4|hang"));
    beginDownload(QStringLiteral("360P"));
    beginDownload(QStringLiteral("360P"));
    QTRY_SOON(m_user->sees("cancel", 0) && m_user->sees("cancel", 1));
    m_user->find("cancel", 1)->setFocus();
    QTest::keyClick(m_user->find("cancel", 1), Qt::Key_Space);
    QCOMPARE(rowWithFocus(), 1);
    QTRY_COMPARE_WITH_TIMEOUT(m_user->text("status", 1), QStringLiteral("Cancelled"), DeskSandbox::Patience);
    QCOMPARE(rowWithFocus(), 1);
    QVERIFY(m_user->sees("cancel", 0));
}

void DeskWindowTest::rowsAreReachedInOrder()
{
    for (int i = 0; i < 3; ++i)
        beginDownload(QStringLiteral("360P"));
    QTRY_SOON(m_user->sees("openFile", 0) && m_user->sees("openFile", 1) && m_user->sees("openFile", 2));
    m_user->find("read")->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget()->objectName(), QStringLiteral("menu"));
    m_user->find("downloads")->setFocus();
    QStringList reached;
    for (int i = 0; i < 9; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        reached += QStringLiteral("%1%2").arg(rowWithFocus()).arg(QApplication::focusWidget()->objectName());
    }
    QCOMPARE(reached.join(QLatin1Char(' ')),
             QStringLiteral("0openFile 0showFolder 0remove 1openFile 1showFolder 1remove 2openFile 2showFolder "
                            "2remove"));
}

void DeskWindowTest::typingWhileReading_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("focused");
    QTest::newRow("the next address") << "http://y/"
                                      << "address";
    QTest::newRow("nothing") << ""
                             << "streams";
}

void DeskWindowTest::typingWhileReading()
{
    DeskSandbox::play(QStringLiteral("dump: wait go|json Clip 137"));
    m_user->readPage(pageAddress);
    QFETCH(QString, typed);
    QTest::keyClicks(QApplication::focusWidget(), typed);
    m_stage->let(QStringLiteral("go"));
    QTRY_SOON(m_user->sees("streams"));
    QTest::qWait(0);
    QCOMPARE(m_user->text("address"), typed.isEmpty() ? pageAddress : typed);
    QTEST(QApplication::focusWidget()->objectName(), "focused");
}

void DeskWindowTest::failedPageKeepsTheOther()
{
    m_user->readPage(pageAddress);
    QTRY_SOON(m_user->sees("streams"));
    m_user->choose(QStringLiteral("360P"));
    DeskSandbox::play(QStringLiteral("dump: wait go|err ERROR: gone|exit 1"));
    m_user->readPage(QStringLiteral("http://y/"));
    QVERIFY(m_user->sees("busy") && m_user->sees("streams"));
    m_stage->let(QStringLiteral("go"));
    QTRY_SOON(m_user->sees("failureWords"));
    QVERIFY(!m_user->sees("busy"));
    QCOMPARE(m_user->text("failedAddress"), QStringLiteral("http://y/"));
    QCOMPARE(m_user->text("title"), QStringLiteral("Clip"));
    QCOMPARE(m_user->chosen(), QStringLiteral("18"));
    QVERIFY(m_user->press("dismissFailure"));
    QVERIFY(!m_user->sees("failureWords"));
    DeskSandbox::play(QString());
    QVERIFY(m_user->press("download"));
    QTRY_SOON(m_user->sees("openFile", 0));
}

void DeskWindowTest::oneDownloadForTwoClicks()
{
    m_user->readPage(pageAddress);
    QTRY_SOON(m_user->sees("streams"));
    QWidget *button = m_user->find("download");
    QTest::mouseClick(button, Qt::LeftButton);
    QTest::mouseDClick(button, Qt::LeftButton);
    QTest::mouseRelease(button, Qt::LeftButton);
    QCOMPARE(m_user->desk().downloads().rowCount(), 1);
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), true);
    QApplication::sendEvent(m_user->find("destination"), &held);
    QCOMPARE(m_user->desk().downloads().rowCount(), 1);
}

/** The name that was given is taken from then on, but another one is there at once. */
void DeskWindowTest::downloadKeepsFocus()
{
    m_user->readPage(pageAddress);
    QTRY_SOON(m_user->sees("streams"));
    m_user->type("destination", m_stage->videos() + QStringLiteral("/mine.mp4"));
    m_user->find("download")->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QCOMPARE(QApplication::focusWidget()->objectName(), QStringLiteral("download"));
    QCOMPARE(m_user->text("destination"), m_stage->videos() + QStringLiteral("/mine(1).mp4"));
    QTRY_SOON(m_user->sees("openFile", 0));
    QCOMPARE(m_user->text("fileName", 0), QStringLiteral("mine.mp4"));
}

/** The file of the plan comes to be by another program's hand. */
void DeskWindowTest::fileAppears()
{
    const auto make = [this](const QString &name) {
        QFile file(m_stage->videos() + QLatin1Char('/') + name);
        return file.open(QIODevice::WriteOnly);
    };
    m_user->readPage(pageAddress);
    QTRY_SOON(m_user->sees("streams"));
    m_user->choose(QStringLiteral("360P"));
    QVERIFY(make(QStringLiteral("Clip.mp4")));
    QVERIFY(m_user->press("download"));
    QTRY_SOON(m_user->text("fileName", 0) == QLatin1String("Clip(1).mp4"));
    m_user->type("destination", QStringLiteral("mine.mp4"));
    QVERIFY(make(QStringLiteral("mine.mp4")));
    QVERIFY(m_user->press("download"));
    QTRY_SOON(m_user->text("destinationProblem").contains(QLatin1String("exists already")));
    QCOMPARE(m_user->desk().downloads().rowCount(), 1);
}

void DeskWindowTest::openingFails()
{
    beginDownload(QStringLiteral("360P"));
    QTRY_SOON(m_user->sees("openFile", 0));
    QDesktopServices::unsetUrlHandler(QStringLiteral("file")); // the tests' platform opens nothing
    QVERIFY(m_user->press("openFile", 0));
    QTRY_SOON(m_user->text("warning").contains(QLatin1String("No program")));
    qobject_cast<QDialog *>(m_user->find("warning"))->reject();
    QTRY_SOON(!m_user->sees("warning"));
    QVERIFY(QFile::remove(m_stage->videos() + QStringLiteral("/Clip.mp4")));
    QVERIFY(m_user->press("openFile", 0));
    QTRY_SOON(m_user->text("warning").contains(QLatin1String("not there any more")));
    QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "openedUrl");
}

/** A folder that cannot be used is not passed over in silence; one that is missing is made when it is asked for. */
void DeskWindowTest::preferredFolder()
{
    m_user->openMenu(0);
    QTRY_SOON(m_user->sees("preferredFolder"));
    auto *dialog = qobject_cast<QDialog *>(m_user->find("preferredFolder")->window());
    m_user->type("preferredFolder", QStringLiteral("/dev/null"));
    dialog->accept();
    QVERIFY(m_user->sees("preferredFolderProblem") && !m_user->sees("makePreferredFolder"));
    m_user->type("preferredFolder", QStringLiteral("~/new/deep "));
    dialog->accept();
    QVERIFY(dialog->isVisible());
    QVERIFY(m_user->text("preferredFolderProblem").contains(m_stage->path(QStringLiteral("new/deep"))));
    QVERIFY(m_user->press("makePreferredFolder"));
    QVERIFY(!dialog->isVisible());
    QCOMPARE(m_user->desk().settings().folder(), m_stage->path(QStringLiteral("new/deep")));
    m_user->readPage(pageAddress);
    QTRY_SOON(m_user->sees("streams"));
    QCOMPARE(m_user->text("destination"), m_stage->path(QStringLiteral("new/deep/Clip.mp4")));
}

void DeskWindowTest::logOpensAtItsEnd()
{
    QFile log(m_user->desk().logFile());
    QVERIFY(log.open(QIODevice::Append) && log.write(QByteArray("line\n").repeated(1000)) > 0);
    log.close();
    DeskSandbox::play(QStringLiteral("dump: err ERROR: the last line|exit 1"));
    m_user->readPage(pageAddress);
    QTRY_SOON(m_user->press("showLog"));
    const auto *text = qobject_cast<QPlainTextEdit *>(m_user->find("logText"));
    QTRY_VERIFY(text->verticalScrollBar()->maximum() > 0);
    QCOMPARE(text->verticalScrollBar()->value(), text->verticalScrollBar()->maximum());
}

QTEST_MAIN(DeskWindowTest)
#include "DeskWindowTest.moc"
