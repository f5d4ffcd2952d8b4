#include "tests/desk/DeskTest.h"
#include "tests/support/TextTable.h"

#include <QComboBox>

#include <sys/stat.h>

using namespace NoxDesk;

/** The preferences: what they take, what they refuse, and what is written into the settings of the tool. */
class DeskPreferencesTest : public DeskTest
{
    Q_OBJECT

private Q_SLOTS:
    void preferredFolder();
    void toolSettings_data();
    void toolSettings();
    void renewsTool_data();
    void renewsTool();
};

/** A folder that cannot be used is not passed over in silence; one that is missing is made when it is asked for. */
void DeskPreferencesTest::preferredFolder()
{
    QDialog *dialog = m_user->openPreferences();
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
}

void DeskPreferencesTest::toolSettings()
{
    const auto [before, rate, proxy, browser, after] = fetchTexts("before", "rate", "proxy", "browser", "after");
    QVERIFY(QDir().mkpath(m_stage->path("config/noxwebmedia"_s)));
    QFile file(m_stage->path("config/noxwebmedia/tool.conf"_s));
    if (!before.isEmpty())
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(before.toUtf8()) >= 0);
    file.close();
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
    QVERIFY(!dialog->isVisible());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(QString::fromUtf8(file.readAll()), after);
    QVERIFY(!before.isEmpty() || !(file.permissions() & (QFile::ReadGroup | QFile::WriteGroup)));
}

void DeskPreferencesTest::renewsTool_data()
{
    const TextTable row{"script", "outcome"};
    row("renewed", "echo 'yt-dlp 2026.08.19 in a/yt.zip'", "Renewed: yt-dlp 2026.08.19");
    row("failed", "echo 'pip cannot fetch it' >&2; exit 1", "could not be renewed.\npip cannot fetch it");
    row("not there", "", "not installed");
    row("cancelled", "trap '' HUP; touch \"$NOX_STAGE/begun\"; sleep 300 & wait", "Cancelled");
}

void DeskPreferencesTest::renewsTool()
{
    const auto [script, outcome] = fetchTexts("script", "outcome");
    if (!script.isEmpty()) {
        installScript("nox-renew-tool"_s, script);
    } else if (!QStandardPaths::findExecutable("nox-renew-tool"_s).isEmpty()) {
        QSKIP("the command is installed on this machine");
    }
    m_user->openPreferences();
    QVERIFY(m_user->text("renewal").contains("came with"_s));
    QVERIFY(m_user->press("renewTool"));
    if (outcome == "Cancelled"_s) {
        QTRY_SOON(QFile::exists(m_stage->path("notes/begun"_s)));
        QVERIFY(m_user->press("renewTool")); // is the button to cancel
    }
    QTRY_SOON(m_user->text("renewal").contains(outcome));
}

QTEST_MAIN(DeskPreferencesTest)
#include "DeskPreferencesTest.moc"
