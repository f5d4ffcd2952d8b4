#include "tests/desk/DeskTest.h"

#include <QDeadlineTimer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>

#include <sys/stat.h>

using namespace NoxDesk;

/** The preferences, and the settings of the tool that they change. */
class DeskPreferencesTest : public DeskTest
{
    Q_OBJECT

private Q_SLOTS:
    void folderAndSound();
    void toolSettings_data();
    void toolSettings();
    void ownRequests_data();
    void ownRequests();
    void renewsTool_data();
    void renewsTool();
};

/** A folder that cannot be used is not passed over in silence; one that is missing is made when it is asked for. */
void DeskPreferencesTest::folderAndSound()
{
    QDialog *dialog = m_user->openPreferences();
    m_user->find<QCheckBox>("mp3")->setChecked(true);
    m_user->type("preferredFolder", "/dev/null"_s);
    dialog->accept();
    QVERIFY(m_user->sees("preferredFolderError") && !m_user->sees("makePreferredFolder"));
    m_user->type("preferredFolder", "~/new/deep "_s);
    dialog->accept();
    QVERIFY(dialog->isVisible());
    QVERIFY(m_user->text("preferredFolderError").contains(m_stage->path("new/deep"_s)));
    QVERIFY(m_user->press("makePreferredFolder"));
    QVERIFY(!dialog->isVisible());
    QCOMPARE(m_user->controller().settings().folder(), m_stage->path("new/deep"_s));
    QVERIFY(m_user->seesPage());
    QCOMPARE(m_user->text("destination"), m_stage->path("new/deep/Clip.mp4"_s));
    m_user->choose("128K"_s);
    QCOMPARE(m_user->text("destination"), m_stage->path("new/deep/Clip.mp3"_s));
    HostSandbox::playPage("ffmpeg: write sound"_s);
    QVERIFY(m_user->press("download"));
    QTRY_SOON_COMPARE(m_user->text("status", 0), "Finished, 5 bytes"_s); // "sound"
}

void DeskPreferencesTest::toolSettings_data()
{
    const TextTable row{"before", "rate", "proxy", "browser", "after"}; // what is entered; "-" for no change
    row("no file", "", "2M", "socks5://127.0.0.1:9", "firefox",
        "--limit-rate 2M\n--proxy socks5://127.0.0.1:9\n--cookies-from-browser firefox\n");
    row("no change", "-r2M # slow\n\n  --proxy='http://x:1'", "-", "-", "-", "-r2M # slow\n\n  --proxy='http://x:1'");
    row("changed in place", "# mine\n--retries 5 -r 2M --geo-bypass # my rate\n--netrc", "1.5M", "-", "-",
        "# mine\n--retries 5 --limit-rate 1.5M --geo-bypass # my rate\n--netrc");
    row("the last one counts", "--limit-rate 1M\n--limit-rate=2M\n", "3M", "-", "-",
        "--limit-rate 1M\n--limit-rate 3M\n");
    row("removed with its lines", "-r 1M\n# note\n--limit-rate=2M\n--retries 3 -r=4M\n--proxy x\n", "", "", "-",
        "# note\n--retries 3 \n");
    row("value in the next line", "--proxy\nhttp://x\n--netrc\n", "-", "http://y", "-", "--proxy http://y\n--netrc\n");
    row("not in comments and values", "# -r 1M\n--user-agent '-r 5M \"--proxy' # --proxy x\n", "2M", "-", "-",
        "# -r 1M\n--user-agent '-r 5M \"--proxy' # --proxy x\n--limit-rate 2M\n");
    row("quoted", "--netrc", "-", "http://a b:it's@x", "-", "--netrc\n--proxy 'http://a b:it'\\''s@x'\n");
    row("browser with a profile", "--cookies-from-browser firefox:work\n", "1K", "-", "-",
        "--cookies-from-browser firefox:work\n--limit-rate 1K\n");
    row("no rate", "--netrc\n", "fast", "-", "-", "--netrc\n");
    row("unfinished rate", "--netrc\n", "2.", "-", "-", "--netrc\n");
}

void DeskPreferencesTest::toolSettings()
{
    const auto [before, rate, proxy, browser, after] = fetchTexts("before", "rate", "proxy", "browser", "after");
    QVERIFY(QDir().mkpath(m_stage->path("config/noxwebmedia"_s)));
    const QString file = m_stage->path("config/noxwebmedia/tool.conf"_s);
    if (!before.isEmpty())
        Files::write(file, before.toUtf8());
    QDialog *dialog = m_user->openPreferences();
    for (const auto &[name, text] : {std::pair("limitRate", rate), std::pair("proxy", proxy)}) {
        if (text != "-"_s)
            m_user->type(name, text.isEmpty() ? "\b"_s : text);
    }
    auto *browsers = m_user->find<QComboBox>("browser");
    if (browser != "-"_s)
        browsers->setCurrentIndex(browsers->findData(browser));
    const mode_t mask = ::umask(0002); // of systems on which each user has a group
    dialog->accept();
    ::umask(mask);
    QCOMPARE(dialog->isVisible(), rate.endsWith(QLatin1Char('.'))); // with an error
    QCOMPARE(m_user->sees("preferredFolderError"), rate.endsWith(QLatin1Char('.')));
    QCOMPARE(QString::fromUtf8(Files::content(file)), after);
    QVERIFY(!before.isEmpty() || !(QFile::permissions(file) & (QFile::ReadGroup | QFile::WriteGroup)));
}

void DeskPreferencesTest::ownRequests_data()
{
    const TextTable row{"proxy", "asked"}; // what the server gets, which also plays the proxy; empty for nothing
    row("no proxy", "", "HEAD /a.mp4 ");
    row("HTTP", "http://SERVER", "HEAD http://SERVER/a.mp4 ");
    row("SOCKS", "socks5h://SERVER", "\x05");
    row("unknown kind", "socks4://SERVER");
}

/** The window's requests do not bypass the proxy. A size that comes late is compared with the room on the disk. */
void DeskPreferencesTest::ownRequests()
{
    QPointer<QTcpSocket> client;
    QString request;
    QTcpServer server;
    connect(&server, &QTcpServer::newConnection, this, [&] {
        client = server.nextPendingConnection();
        connect(client, &QTcpSocket::readyRead, this, [&] { request += QString::fromLatin1(client->readAll()); });
    });
    QVERIFY(server.listen(QHostAddress::LocalHost));
    const QString address = "127.0.0.1:%1"_s.arg(server.serverPort());
    auto [proxy, asked] = fetchTexts("proxy", "asked");
    QVERIFY(QDir().mkpath(m_stage->path("config/noxwebmedia"_s)));
    Files::write(m_stage->path("config/noxwebmedia/tool.conf"_s),
                 "--proxy '" + proxy.replace("SERVER"_s, address).toUtf8() + '\'');
    const QString code = "\"format_id\":\"18\","_s;
    HostSandbox::play(HostSandbox::pageScenario().replace(code, code + "\"url\":\"http://%1/a.mp4\","_s.arg(address)));
    QVERIFY(m_user->seesPage());
    m_user->choose("360P"_s);
    if (asked.isEmpty())
        QTest::qWait(100);
    else
        QTRY_SOON(!request.isEmpty());
    QVERIFY2(request.startsWith(asked.replace("SERVER"_s, address)), qPrintable(request));
    QCOMPARE(request.isEmpty(), asked.isEmpty());
    if (asked.startsWith("HEAD"_s)) {
        client->write("HTTP/1.1 200 OK\r\nContent-Type: video/mp4\r\nContent-Length: 900000000000000\r\n\r\n");
        QTRY_SOON(m_user->text("destinationError").contains("room for"_s));
    }
}

void DeskPreferencesTest::renewsTool_data()
{
    const TextTable row{"script", "outcome", "end"}; // what is done while it runs
    row("renewed", "echo 'yt-dlp 2026.08.19 in a/yt.zip'", "Renewed: yt-dlp 2026.08.19");
    row("failed", "echo 'pip cannot fetch it' >&2; exit 1", "could not be renewed.\npip cannot fetch it");
    row("not there", "", "not installed");
    const char endless[] =
        "trap 'touch \"$NOX_STAGE/cleaned\"; exit' TERM; touch \"$NOX_STAGE/begun\"; sleep 300 & wait";
    row("cancelled", endless, "Cancelled", "press");
    for (const char *end : {"accept", "reject"})
        row(end, endless, "", end); // the dialog
}

void DeskPreferencesTest::renewsTool()
{
    const auto [script, outcome, end] = fetchTexts("script", "outcome", "end");
    if (!script.isEmpty())
        installScript("nox-renew-tool"_s, script);
    else
        qputenv("PATH", QFile::encodeName(m_stage->path("bin"_s))); // it may be installed on this machine
    QDialog *dialog = m_user->openPreferences();
    QVERIFY(m_user->text("renewal").contains("came with"_s));
    QVERIFY(m_user->press("renewTool"));
    if (!end.isEmpty()) {
        // Without an event loop, so that the job does not know yet that the command runs.
        const QDeadlineTimer deadline(HostSandbox::Timeout);
        while (!QFile::exists(m_stage->path("notes/begun"_s)) && !deadline.hasExpired())
            QThread::msleep(5);
        QVERIFY(end == "press"_s ? m_user->press("renewTool")
                                 : QMetaObject::invokeMethod(dialog, end.toLatin1().constData()));
    }
    QTRY_SOON(m_user->sees("renewal") != outcome.isEmpty() && m_user->text("renewal").contains(outcome));
    QCOMPARE(QFile::exists(m_stage->path("notes/cleaned"_s)), !end.isEmpty());
}

QTEST_MAIN(DeskPreferencesTest)
#include "DeskPreferencesTest.moc"
