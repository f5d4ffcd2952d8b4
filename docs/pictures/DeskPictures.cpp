// Takes the pictures of the window that the documents show, with stand-ins for the tool and ffmpeg.
//
//     desk_pictures FOLDER     writes desk-*.png there

#include "hosts/desk/view/ThumbnailView.h"
#include "tests/desk/DeskUser.h"
#include "tests/jobs/HostSandbox.h"
#include "tests/util/Rows.h"

#include <QApplication>
#include <QListWidget>
#include <QPainter>
#include <QSplitter>
#include <QStyle>
#include <QStyleFactory>

#include <functional>
#include <memory>

using namespace NoxDesk;

/** Sets up the scenes one after the other, and takes a picture of each. Ends the program if one cannot be set up. */
class DeskPictures
{
public:
    explicit DeskPictures(QString folder)
        : m_folder(std::move(folder))
    {
    }

    void takeAll();

private:
    void open(const QSize &size);
    void readPage(const QString &title);
    void startDownload(const QString &quality, const std::function<bool()> &isReady);
    void take(QWidget &window, const QString &name) const;

    void firstRun();
    void longTitle();
    void queue(const QString &colours);
    void videos();
    void preferences();

    QString m_folder;
    std::unique_ptr<HostSandbox> m_sandbox;
    std::unique_ptr<DeskUser> m_user;
};

namespace {

void waitFor(const std::function<bool()> &isReady, const char *what)
{
    if (!QTest::qWaitFor(isReady, HostSandbox::Timeout))
        qFatal("not reached: %s", what);
}

/** Mountains in the evening. */
QImage thumbnail()
{
    QImage result(640, 360, QImage::Format_RGB32);
    QPainter painter(&result);
    QLinearGradient sky(0, 0, 0, 360);
    sky.setColorAt(0, QColor(250, 200, 120));
    sky.setColorAt(1, QColor(90, 110, 170));
    painter.fillRect(result.rect(), sky);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(40, 50, 80));
    painter.drawPolygon(QPolygon({{0, 360}, {0, 260}, {180, 120}, {320, 260}, {470, 90}, {640, 280}, {640, 360}}));
    return result;
}

} // namespace

void DeskPictures::takeAll()
{
    const QPalette light = QApplication::style()->standardPalette();
    QApplication::setPalette(light);
    firstRun();
    longTitle();
    videos();
    preferences();
    queue("light"_s);
    QApplication::setPalette(QPalette(QColor(49, 54, 59), QColor(42, 46, 50)));
    queue("dark"_s);
    m_user.reset();
}

/** A new window with settings of its own. */
void DeskPictures::open(const QSize &size)
{
    m_user.reset();
    m_sandbox.reset(); // first, because it restores an environment variable
    m_sandbox = std::make_unique<HostSandbox>();
    HostSandbox::installStandIns();
    m_user = std::make_unique<DeskUser>();
    m_user->window().resize(size);
}

void DeskPictures::readPage(const QString &title)
{
    const QString progress = R"(out [download] 61.5% of 312.40MiB at 4.20MiB/s ETA 00:40\n)"_s;
    HostSandbox::play(
        HostSandbox::pageScenario().replace("Clip"_s, title)
        + "\n18: announce mp4|err ERROR: unable to download video data: HTTP Error 403: Forbidden|exit 1\n"
          "137: announce mp4|"_s
        + progress + "|hang\nffmpeg: write half|err frame=90 time=00:04:10.00 speed=2.5x\\r|hang"_s);
    m_user->readPage("https://video.example/watch/%1"_s.arg(m_sandbox->runCount()));
    waitFor([this, &title] { return m_user->text("title") == title; }, "a page");
    const QImage picture = thumbnail();
    const QList<ThumbnailView *> views = m_user->window().findChildren<ThumbnailView *>();
    for (ThumbnailView *view : views) {
        view->setPicture(picture);
        view->show();
    }
    StreamTableModel &streams = m_user->controller().streams();
    for (int row = 0; row < streams.rowCount(); ++row)
        streams.setSize(streams.stream(row).getName(), 312400000LL / (row * row + 1));
}

void DeskPictures::startDownload(const QString &quality, const std::function<bool()> &isReady)
{
    if (!m_user->beginDownload(quality))
        qFatal("no download of %s", qPrintable(quality));
    waitFor(isReady, qPrintable("the download of "_s + quality));
}

void DeskPictures::take(QWidget &window, const QString &name) const
{
    QTest::qWait(100); // for layouts that follow from layouts
    const QString file = "%1/desk-%2.png"_s.arg(m_folder, name);
    if (!window.grab().save(file))
        qFatal("cannot write %s", qPrintable(file));
}

void DeskPictures::firstRun()
{
    open({640, 440});
    take(m_user->window(), "first-run-light"_s);
    HostSandbox::play("dump: hang"_s);
    m_user->readPage();
    take(m_user->window(), "reading-light"_s);
}

void DeskPictures::longTitle()
{
    open({600, 400});
    readPage("The whole afternoon at the harbour, with all the ships, the lighthouse and "
             "thewordwithoutanyblanksthatgoesonandonandonandonandonandonandonandonandon 😀"_s);
    take(m_user->window(), "long-title-light"_s);
}

void DeskPictures::queue(const QString &colours)
{
    open({960, 1140});
    m_user->window().findChild<QSplitter *>()->setSizes({400, 640}); // all rows are to be seen
    readPage("Harbour lights"_s);
    startDownload("360P"_s, [this] { return m_user->sees("retry", 0); }); // fails
    startDownload("128K"_s, [this] { return m_user->sees("openFile", 0); });
    readPage("A day in the mountains"_s);
    startDownload("720P"_s, [this] { return m_user->text("status", 0).contains("0:04:10"_s); });
    for (const int part : {1, 2, 3}) { // the last one waits
        readPage("A day in the mountains, part %1"_s.arg(part));
        startDownload("1080P"_s, [this, part] { return m_user->text("status", qMin(part, 2)).contains("MB"_s); });
    }
    take(m_user->window(), "queue-"_s + colours);
}

/** A page with twelve videos, of which three are ticked. */
void DeskPictures::videos()
{
    open({960, 720});
    QString scenario = HostSandbox::pageScenario() + R"(|err WARNING: [nox:videos] 12\n)"_s + "\nlist: "_s;
    for (int i = 1; i <= 12; ++i) {
        scenario += R"(out {"nox_index":%1,"nox_url":"http://x/%1","title":"Harbour lights, part %1",)"
                    R"("duration":%2,"nox_count":12}\n|)"_s.arg(i)
                        .arg(500 + 37 * i);
    }
    HostSandbox::play(scenario + "exit 0"_s);
    m_user->readPage("https://video.example/list"_s);
    waitFor([this] { return m_user->press("showVideos"); }, "a page with videos");
    auto *videos = m_user->find<QListWidget>("videos");
    waitFor([videos] { return videos->count() == 12; }, "the list of the videos");
    for (const int row : {1, 4, 5})
        videos->item(row)->setCheckState(Qt::Checked);
    take(*videos->window(), "videos-light"_s);
}

void DeskPictures::preferences()
{
    open({960, 720});
    HostSandbox::play("dump: out 2026.08.19\n"_s);
    QDialog *dialog = m_user->openPreferences();
    waitFor([this] { return m_user->text("toolVersion") == "2026.08.19"_s; }, "the version of the tool");
    take(*dialog, "preferences-light"_s);
}

int main(int argc, char *argv[])
{
    const QApplication app(argc, argv);
    if (argc != 2) {
        qCritical("usage: desk_pictures FOLDER");
        return 2;
    }
    qunsetenv("XDG_STATE_HOME"); // the list of downloads is kept in the sandbox
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
    QCoreApplication::setOrganizationName("noxwebmedia"_s);
    QCoreApplication::setApplicationName("desk-pictures"_s);
    QApplication::setStyle(QStyleFactory::create("Fusion"_s));
    DeskPictures(QCoreApplication::arguments().at(1)).takeAll();
    return 0;
}
