#include "tests/desk/DeskUser.h"
#include "tests/jobs/HostSandbox.h"
#include "tests/support/DemoPage.h"
#include "tests/util/Rows.h"

#include <QApplication>
#include <QDir>
#include <QProcess>
#include <QtTest>

#include <memory>

namespace {

constexpr int timeoutMs = 120000;

} // namespace

/** The window with the real tool and the real ffmpeg, on a page that is served on the loopback address. */
class DeskRealTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void download();

private:
    std::unique_ptr<HostSandbox> m_stage;
    std::unique_ptr<DeskUser> m_user;
    std::unique_ptr<DemoPage> m_page;
};

void DeskRealTest::initTestCase()
{
    m_stage = std::make_unique<HostSandbox>();
    m_page = std::make_unique<DemoPage>();
    QVERIFY(m_page->serve());
    m_user = std::make_unique<DeskUser>();
    m_user->readPage(m_page->url());
    QTRY_VERIFY_WITH_TIMEOUT(m_user->sees("streams"), timeoutMs);
}

void DeskRealTest::cleanupTestCase()
{
    m_user.reset();
    m_page.reset();
    QTRY_VERIFY_WITH_TIMEOUT(m_stage->isQuiet(), timeoutMs);
}

void DeskRealTest::download()
{
    QVERIFY(m_user->text("title").startsWith("Open the café/bar?"_s));
    QTRY_VERIFY_WITH_TIMEOUT(!m_user->controller().thumbnail().picture().isNull(), timeoutMs);
    QCOMPARE(m_user->controller().thumbnail().picture().size(), QSize(320, 180));
    QTRY_VERIFY_WITH_TIMEOUT(m_user->streams().contains("3.1 MB;"_s), timeoutMs);

    QSet<QString> phases;
    QVERIFY(m_user->press("download"));
    const auto isFinished = [this, &phases] {
        const QString status = m_user->text("status", 0);
        phases += status.section(" · "_s, 0, 0).section(QLatin1Char(','), 0, 0);
        return status.startsWith("Finished"_s) || m_user->sees("failureMessage", 0);
    };
    QTRY_VERIFY_WITH_TIMEOUT(isFinished(), timeoutMs);
    QVERIFY2(!m_user->sees("failureMessage", 0), qPrintable(m_user->text("failureMessage", 0)));
    for (const char *phase : {"Fetching video", "Fetching audio", "Finished"})
        QVERIFY2(phases.contains(QString::fromLatin1(phase)), phase);
    const QStringList files = m_stage->files();
    QCOMPARE(files.size(), 1);
    QProcess probe;
    probe.start("ffprobe"_s,
                {"-loglevel"_s, "error"_s, "-show_entries"_s, "stream=codec_name"_s, "-of"_s, "csv=p=0"_s,
                 m_stage->videos() + QLatin1Char('/') + files.first()});
    QVERIFY(probe.waitForFinished());
    QCOMPARE(probe.readAllStandardOutput(), QByteArray("h264\naac\n"));
}

QTEST_MAIN(DeskRealTest)
#include "DeskRealTest.moc"
