#include "hosts/desk/view/ThumbnailView.h"
#include "tests/desk/DeskTest.h"

#include <QApplication>
#include <QListWidget>
#include <QPainter>
#include <QSplitter>
#include <QStyle>
#include <QStyleFactory>

using namespace NoxDesk;

/**
 * Takes pictures of the window, to be looked at: into the folder that NOX_DESK_PICTURES names, or else only to see that
 * every scene can be set up and fills its picture.
 */
class DeskPicturesTest : public DeskTest
{
    Q_OBJECT

private Q_SLOTS:
    static void initTestCase_data();
    void initTestCase();
    void firstRun();
    void longTitle();
    void queue();
    void videos();
    void preferences();

private:
    void open(const QSize &size);
    void read(const QString &title);
    void photograph(QWidget &window, const QString &scene);
};

void DeskPicturesTest::initTestCase_data()
{
    QTest::addColumn<QString>("colours");
    QTest::newRow("light") << "light";
    QTest::newRow("dark") << "dark";
}

void DeskPicturesTest::initTestCase()
{
    DeskTest::initTestCase();
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
    QApplication::setStyle(QStyleFactory::create("Fusion"_s));
}

/** A window in the colours of the row, "light" or "dark". */
void DeskPicturesTest::open(const QSize &size)
{
    QFETCH_GLOBAL(QString, colours);
    const QPalette dark(QColor(49, 54, 59), QColor(42, 46, 50));
    QApplication::setPalette(colours == "dark"_s ? dark : QApplication::style()->standardPalette());
    m_user = std::make_unique<DeskUser>();
    m_user->window().resize(size);
}

void DeskPicturesTest::read(const QString &title)
{
    const QString progress = R"(out [download] 61.5% of 312.40MiB at 4.20MiB/s ETA 00:40\n)"_s;
    HostSandbox::play(
        HostSandbox::pageScenario().replace("Clip"_s, title)
        + "\n18: announce mp4|err ERROR: unable to download video data: HTTP Error 403: Forbidden|exit 1\n"
          "137: announce mp4|"_s
        + progress + "|hang\nffmpeg: write half|err frame=90 time=00:04:10.00 speed=2.5x\\r|hang"_s);
    m_user->readPage("https://video.example/watch/%1"_s.arg(m_stage->runCount()));
    QTRY_SOON(m_user->text("title") == title);
    QImage picture(640, 360, QImage::Format_RGB32);
    QPainter(&picture).fillRect(picture.rect(), QGradient::SunnyMorning);
    const QList<ThumbnailView *> views = m_user->window().findChildren<ThumbnailView *>();
    for (ThumbnailView *view : views) {
        view->setPicture(picture);
        view->show();
    }
    StreamTableModel &streams = m_user->controller().streams();
    for (int row = 0; row < streams.rowCount(); ++row)
        streams.setSize(streams.stream(row).getName(), 312400000LL / (row * row + 1));
}

void DeskPicturesTest::photograph(QWidget &window, const QString &scene)
{
    QTest::qWait(100); // for layouts that follow from layouts
    const QPixmap picture = window.grab();
    QCOMPARE(picture.size(), (QSizeF(window.size()) * window.devicePixelRatioF()).toSize());
    const QString folder = qEnvironmentVariable("NOX_DESK_PICTURES");
    if (!folder.isEmpty()) {
        QFETCH_GLOBAL(QString, colours);
        QVERIFY(QDir().mkpath(folder));
        QVERIFY(picture.save("%1/desk-%2-%3.png"_s.arg(folder, scene, colours)));
    }
}

void DeskPicturesTest::firstRun()
{
    open({640, 440});
    photograph(m_user->window(), "first-run"_s);
    HostSandbox::play("dump: hang"_s);
    m_user->readPage();
    photograph(m_user->window(), "reading"_s);
}

void DeskPicturesTest::longTitle()
{
    open({600, 400});
    read("The whole afternoon at the harbour, with all the ships, the lighthouse and "
         "thewordwithoutanyblanksthatgoesonandonandonandonandonandonandonandonandon 😀"_s);
    photograph(m_user->window(), "long-title"_s);
}

void DeskPicturesTest::queue()
{
    open({960, 1140});
    m_user->window().findChild<QSplitter *>()->setSizes({400, 640}); // all rows are to be seen
    read("Harbour lights"_s);
    QVERIFY(m_user->beginDownload("360P"_s)); // fails
    QTRY_SOON(m_user->sees("retry", 0));
    QVERIFY(m_user->beginDownload("128K"_s)); // is done soon
    QTRY_SOON(m_user->sees("openFile", 0));
    read("A day in the mountains"_s);
    QVERIFY(m_user->beginDownload("720P"_s));
    QTRY_SOON(m_user->text("status", 0).contains("0:04:10"_s));
    for (const QString &part : {"1"_s, "2"_s, "3"_s}) {
        read("A day in the mountains, part "_s + part);
        QVERIFY(m_user->beginDownload("1080P"_s));
    }
    QTRY_SOON(m_user->text("status", 1).contains("MB"_s));
    QCOMPARE(m_user->downloads().rowCount(), 6);
    photograph(m_user->window(), "queue"_s);
}

/** A page with twelve videos, of which three are ticked. */
void DeskPicturesTest::videos()
{
    open({960, 720});
    QString list = HostSandbox::pageScenario() + R"(|err WARNING: [nox:videos] 12\n)"_s + "\nlist: exit 0"_s;
    for (int i = 12; i >= 1; --i)
        list.replace(
            "list: "_s,
            R"(list: out {"nox_index":%1,"nox_url":"http://x/%1","title":"Part %1","duration":5%1,"nox_count":12}\n|)"_s
                .arg(i));
    HostSandbox::play(list);
    m_user->readPage("https://video.example/list"_s);
    QTRY_SOON(m_user->press("showVideos"));
    auto *videos = m_user->find<QListWidget>("videos");
    QTRY_SOON_COMPARE(videos->count(), 12);
    for (const int row : {1, 4, 5})
        videos->item(row)->setCheckState(Qt::Checked);
    photograph(*videos->window(), "videos"_s);
}

void DeskPicturesTest::preferences()
{
    open({960, 720});
    HostSandbox::play("dump: out 2026.08.19\n"_s);
    QDialog *dialog = m_user->openPreferences();
    QTRY_SOON_COMPARE(m_user->text("toolVersion"), "2026.08.19"_s);
    photograph(*dialog, "preferences"_s);
}

QTEST_MAIN(DeskPicturesTest)
#include "DeskPicturesTest.moc"
