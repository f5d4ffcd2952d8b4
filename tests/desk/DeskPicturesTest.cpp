#include "tests/desk/DeskTest.h"

#include <QApplication>
#include <QBuffer>
#include <QClipboard>
#include <QDir>
#include <QListWidget>
#include <QPainter>
#include <QSplitter>
#include <QStyle>
#include <QStyleFactory>
#include <QTableView>
#include <QTcpServer>
#include <QTcpSocket>

using namespace NoxDesk;

namespace {

/** A page's picture, served to whoever asks. */
class PictureServer
{
public:
    PictureServer()
    {
        QImage picture(640, 360, QImage::Format_RGB32);
        QPainter painter(&picture);
        QLinearGradient sky(0, 0, 0, 360);
        sky.setColorAt(0, QColor(250, 200, 120));
        sky.setColorAt(1, QColor(90, 110, 170));
        painter.fillRect(picture.rect(), sky);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(40, 50, 80));
        painter.drawPolygon(QPolygon({{0, 360}, {0, 260}, {180, 120}, {320, 260}, {470, 90}, {640, 280}, {640, 360}}));
        painter.end();
        QBuffer buffer(&m_png);
        picture.save(&buffer, "PNG");
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] { answer(); });
        m_server.listen(QHostAddress::LocalHost);
    }

    QString url() const { return "http://127.0.0.1:%1/p.png"_s.arg(m_server.serverPort()); }

private:
    void answer()
    {
        QTcpSocket *socket = m_server.nextPendingConnection();
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
            socket->readAll();
            socket->write("HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Type: image/png\r\nContent-Length: "
                          + QByteArray::number(m_png.size()) + "\r\n\r\n" + m_png);
            socket->disconnectFromHost();
        });
        QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    }

    QTcpServer m_server;
    QByteArray m_png;
};

QPalette darkPalette()
{
    QPalette result(QColor(49, 54, 59), QColor(42, 46, 50));
    result.setColor(QPalette::Base, QColor(27, 30, 32));
    result.setColor(QPalette::AlternateBase, QColor(35, 38, 41));
    result.setColor(QPalette::Highlight, QColor(61, 110, 160));
    result.setColor(QPalette::HighlightedText, Qt::white);
    result.setColor(QPalette::Link, QColor(120, 180, 240));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        result.setColor(role, QColor(252, 252, 252));
        result.setColor(QPalette::Disabled, role, QColor(140, 145, 150));
    }
    result.setColor(QPalette::ToolTipBase, QColor(49, 54, 59));
    result.setColor(QPalette::ToolTipText, Qt::white);
    result.setColor(QPalette::PlaceholderText, QColor(150, 155, 160));
    return result;
}

} // namespace

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
    static QString page(const QString &title, const QString &picture);
    void open();
    void read(int number, const QString &title);
    void download(const QString &code);
    void photograph(QWidget &window, const QString &scene);

    PictureServer m_pictures;
    QPalette m_light;
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
    m_light = QApplication::style()->standardPalette();
}

QString DeskPicturesTest::page(const QString &title, const QString &picture)
{
    const auto video = [](int code, const char *ext, int width, int height, bool hasSound) {
        return R"({"format_id":"%1","ext":"%2","vcodec":"avc1","acodec":"%3","width":%4,"height":%5,)"
               R"("filesize":%6},)"_s.arg(code)
                   .arg(QString::fromLatin1(ext), hasSound ? "mp4a"_s : "none"_s)
                   .arg(width)
                   .arg(height)
                   .arg(width * height * 90);
    };
    return R"(dump: out {"title":"%1","duration":754,"thumbnail":"%2","formats":[)"_s.arg(title, picture)
        + R"({"format_id":"251","ext":"webm","vcodec":"none","acodec":"opus","abr":160},)"
          R"({"format_id":"140","ext":"m4a","vcodec":"none","acodec":"mp4a","abr":128},)"_s
        + video(18, "mp4", 640, 360, true) + video(136, "mp4", 1280, 720, false) + video(247, "webm", 1280, 720, false)
        + video(137, "mp4", 1920, 1080, false) + video(248, "webm", 1920, 1080, false)
        + video(313, "webm", 3840, 2160, false).chopped(1) + "]}\n"_s;
}

/** A window in the colours of the row, "light" or "dark". */
void DeskPicturesTest::open()
{
    QFETCH_GLOBAL(QString, colours);
    QApplication::setPalette(colours == "dark"_s ? darkPalette() : m_light);
    m_user = std::make_unique<DeskUser>();
}

void DeskPicturesTest::read(int number, const QString &title)
{
    const QString figures = R"([download] %1% of 312.40MiB at 4.20MiB/s ETA 00:40\n)"_s;
    HostSandbox::play(page(title, m_pictures.url())
                      + "18: announce mp4|err ERROR: unable to download video data: HTTP Error 403: "
                        "Forbidden|exit 1\n137: announce mp4|out "_s
                      + figures.arg("61.5"_s) + "|hang\n136: announce mp4\n247: announce webm\n"_s
                      + "140: announce m4a\n251: announce webm\nffmpeg: write half|err frame=90 "
                        "time=00:04:10.00 bitrate=900kbits/s speed=2.5x\\r|hang"_s);
    m_user->readPage("https://video.example/watch/%1"_s.arg(number));
    QTRY_SOON(m_user->sees("streams") && m_user->controller().reader().url().endsWith(QString::number(number)));
    QTRY_SOON(!m_user->controller().thumbnail().picture().isNull());
    StreamTableModel &streams = m_user->controller().streams();
    for (int row = 0; row < streams.rowCount(); ++row) { // as servers would tell them
        const Nox::MediaProfile stream = streams.stream(row);
        const QSize picture = stream.getVResolution();
        streams.setSize(stream.getName(),
                        stream.getABitRate() * 94LL + qMax(0, picture.width()) * qMax(0LL, picture.height() * 90LL));
    }
}

/** Downloads the stream with that code. */
void DeskPicturesTest::download(const QString &code)
{
    auto *table = qobject_cast<QTableView *>(m_user->find("streams"));
    for (int row = 0; row < m_user->controller().streams().rowCount(); ++row) {
        if (m_user->controller().streams().stream(row).getName() == code)
            table->setCurrentIndex(table->model()->index(row, 0));
    }
    QCOMPARE(m_user->chosen(), code);
    QVERIFY(m_user->press("download"));
}

void DeskPicturesTest::photograph(QWidget &window, const QString &scene)
{
    QTest::qWait(100); // for layouts that follow from layouts
    const QPixmap picture = window.grab();
    QCOMPARE(picture.size(), (QSizeF(window.size()) * window.devicePixelRatioF()).toSize());
    const QString folder = qEnvironmentVariable("NOX_DESK_PICTURES");
    if (!folder.isEmpty()) {
        QFETCH_GLOBAL(QString, colours);
        const QString scale = picture.devicePixelRatio() > 1.5 ? "-2x"_s : QString();
        QVERIFY(QDir().mkpath(folder));
        QVERIFY(picture.save("%1/desk-%2-%3%4.png"_s.arg(folder, scene, colours, scale)));
    }
}

void DeskPicturesTest::firstRun()
{
    open();
    m_user->window().resize(640, 440);
    photograph(m_user->window(), "first-run"_s);
    HostSandbox::play("dump: wait first"_s);
    m_user->readPage();
    photograph(m_user->window(), "reading"_s);
    read(1, "Harbour lights"_s);
    HostSandbox::play("dump: wait go|err ERROR: gone|exit 1"_s);
    m_user->readPage("https://video.example/watch/2"_s);
    QTRY_SOON(m_user->sees("outdated"));
    photograph(m_user->window(), "outdated"_s);
    m_stage->let("go"_s);
    QTRY_SOON(m_user->sees("failureMessage"));
    photograph(m_user->window(), "failed"_s);
}

void DeskPicturesTest::longTitle()
{
    open();
    m_user->window().resize(600, 400);
    read(1,
         "The whole afternoon at the harbour, with all the ships, the lighthouse and "
         "thewordwithoutanyblanksthatgoesonandonandonandonandonandonandonandonandon 😀"_s);
    QCOMPARE(m_user->window().size(), QSize(600, 400));
    photograph(m_user->window(), "long-title"_s);
}

void DeskPicturesTest::queue()
{
    open();
    m_user->window().resize(960, 1140);
    m_user->window().findChild<QSplitter *>()->setSizes({400, 640}); // all rows are to be seen
    read(1, "Harbour lights"_s);
    DownloadListModel &downloads = m_user->downloads();
    downloads.setLimit(3);
    download("18"_s); // fails
    QTRY_SOON(m_user->sees("retry", 0));
    download("140"_s); // is done soon
    QTRY_SOON(m_user->sees("openFile", 0));
    read(2, "A day in the mountains"_s);
    download("247"_s); // must be converted
    QTRY_SOON(m_user->text("status", 0).contains("0:04:10"_s));
    for (int number = 3; number <= 5; ++number) {
        read(number, "A day in the mountains, part %1"_s.arg(number));
        download("137"_s);
    }
    QTRY_SOON(m_user->text("status", 1).contains("MB"_s));
    QCOMPARE(downloads.rowCount(), 6);
    QCOMPARE(downloads.runningCount(), 3);
    photograph(m_user->window(), "queue"_s);
}

/** A page with twelve videos, of which three are ticked. */
void DeskPicturesTest::videos()
{
    open();
    QString list =
        page("Harbour lights"_s, m_pictures.url()).trimmed() + R"(|err WARNING: [nox:videos] 12\n)"_s + "\nlist: "_s;
    for (int i = 1; i <= 12; ++i)
        list += R"(out {"nox_index":%1,"nox_url":"http://x/%1","title":"Harbour lights, part %1","duration":%2,)"
                R"("nox_count":12}\n|)"_s.arg(i)
                    .arg(500 + 37 * i);
    HostSandbox::play(list.chopped(1));
    m_user->readPage("https://video.example/list/1"_s);
    QTRY_SOON(m_user->press("showVideos"));
    auto *videos = qobject_cast<QListWidget *>(m_user->find("videos"));
    QTRY_SOON_COMPARE(videos->count(), 12);
    for (const int row : {1, 4, 5})
        videos->item(row)->setCheckState(Qt::Checked);
    photograph(*videos->window(), "videos"_s);
}

void DeskPicturesTest::preferences()
{
    open();
    HostSandbox::play("dump: out 2026.08.19\n"_s);
    m_user->openMenu(0);
    QTRY_SOON_COMPARE(m_user->text("toolVersion"), "2026.08.19"_s);
    photograph(*m_user->find("parallel")->window(), "preferences"_s);
}

QTEST_MAIN(DeskPicturesTest)
#include "DeskPicturesTest.moc"
