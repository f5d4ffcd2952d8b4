#include "tests/hosts/FetchProgram.h"
#include "tests/support/DemoPage.h"
#include "tests/support/Processes.h"
#include "tests/support/TestMain.h"
#include "tests/util/Rows.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <csignal>

namespace {

constexpr int patienceMs = 120000;

} // namespace

/** nox-fetch with the real tool and the real ffmpeg, on a page that is served on the loopback address. */
class FetchRealTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void describe();
    void download();
    void interrupt();
    void unsupportedPage();

private:
    QStringList arguments(const QStringList &more, const QString &path = {}) const;
    QStringList filesLeft() const;

    QTemporaryDir m_root;
    DemoPage m_page;
};

void FetchRealTest::initTestCase()
{
    QVERIFY(FetchProgram::install());
    QVERIFY(QDir(m_root.path()).mkdir("work"_s));
    QVERIFY(m_page.serve());
}

QStringList FetchRealTest::arguments(const QStringList &more, const QString &path) const
{
    return more + QStringList{"--pycache"_s, m_root.filePath("pycache"_s), m_page.url() + path};
}

QStringList FetchRealTest::filesLeft() const
{
    return QDir(m_root.filePath("work"_s)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

void FetchRealTest::describe()
{
    FetchProgram fetch(m_root.filePath("work"_s));
    QVERIFY(fetch.run(arguments({"--json"_s})));
    QVERIFY2(fetch.exitCode() == 0, qPrintable(fetch.errors()));
    const QJsonObject record = QJsonDocument::fromJson(fetch.output().toUtf8()).object();
    QVERIFY(record.value("title"_s).toString().startsWith("Open the café/bar?"_s));
    QVERIFY(record.value("thumbnail"_s).toString().endsWith("/mqdefault.jpg"_s));
    QCOMPARE(record.value("streams"_s).toArray().size(), 2);
    QCOMPARE(record.value("choice"_s).toObject(), (QJsonObject{{"format"_s, "137"_s}, {"audio"_s, "140"_s}}));
}

void FetchRealTest::download()
{
    FetchProgram fetch(m_root.filePath("work"_s));
    QVERIFY(fetch.run(arguments({})));
    QVERIFY2(fetch.exitCode() == 0, qPrintable(fetch.errors()));
    const QString file = fetch.output().trimmed();
    QCOMPARE(filesLeft(), QStringList(QFileInfo(file).fileName()));
    QProcess probe;
    probe.start("ffprobe"_s,
                {"-loglevel"_s, "error"_s, "-show_entries"_s, "stream=codec_name"_s, "-of"_s, "csv=p=0"_s, file});
    QVERIFY(probe.waitForFinished());
    QCOMPARE(probe.readAllStandardOutput(), QByteArray("h264\naac\n"));
    QVERIFY(QFile::remove(file));
}

void FetchRealTest::interrupt()
{
    FetchProgram fetch(m_root.filePath("work"_s));
    fetch.start(arguments({"-f"_s, "137"_s}));
    // Its fetching shows in its private folder, and as a child of its own.
    const auto isFetching = [this] {
        const QStringList left = filesLeft();
        return left.size() == 1 && !QDir(m_root.filePath("work/"_s) + left.first()).entryList(QDir::Files).isEmpty();
    };
    QTRY_VERIFY_WITH_TIMEOUT(isFetching(), patienceMs);
    QFile children("/proc/%1/task/%1/children"_s.arg(fetch.process().processId()));
    QVERIFY(children.open(QIODevice::ReadOnly));
    const QByteArrayList tools = children.readAll().simplified().split(' ');
    QCOMPARE(tools.size(), 1);
    QVERIFY(Processes::isRunning(tools.first().toLongLong()));
    fetch.interrupt(SIGINT);
    QVERIFY(fetch.waitForEnd());
    QCOMPARE(fetch.exitCode(), 130);
    QCOMPARE(filesLeft(), QStringList());
    QVERIFY(!Processes::isRunning(tools.first().toLongLong()));
}

void FetchRealTest::unsupportedPage()
{
    FetchProgram fetch(m_root.filePath("work"_s));
    QVERIFY(fetch.run(arguments({}, "nowhere"_s)));
    QCOMPARE(fetch.exitCode(), 1);
    QVERIFY2(fetch.errors().contains("404"_s), qPrintable(fetch.errors()));
}

NOX_TEST_MAIN(FetchRealTest)
#include "FetchRealTest.moc"
