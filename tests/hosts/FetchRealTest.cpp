#include "tests/hosts/FetchProgram.h"
#include "tests/support/DemoPage.h"
#include "tests/support/Processes.h"
#include "tests/support/TestMain.h"

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
    QVERIFY(QDir(m_root.path()).mkdir(QStringLiteral("work")));
    QVERIFY(m_page.serve());
}

QStringList FetchRealTest::arguments(const QStringList &more, const QString &path) const
{
    return more
        + QStringList{QStringLiteral("--pycache"), m_root.filePath(QStringLiteral("pycache")), m_page.url() + path};
}

QStringList FetchRealTest::filesLeft() const
{
    return QDir(m_root.filePath(QStringLiteral("work")))
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

void FetchRealTest::describe()
{
    FetchProgram fetch(m_root.filePath(QStringLiteral("work")));
    QVERIFY(fetch.run(arguments({QStringLiteral("--json")})));
    QVERIFY2(fetch.exitCode() == 0, qPrintable(fetch.errors()));
    const QJsonObject record = QJsonDocument::fromJson(fetch.output().toUtf8()).object();
    QVERIFY(record.value(QLatin1String("title")).toString().startsWith(QString::fromUtf8("Open the café/bar?")));
    QVERIFY(record.value(QLatin1String("thumbnail")).toString().endsWith(QLatin1String("/mqdefault.jpg")));
    QCOMPARE(record.value(QLatin1String("streams")).toArray().size(), 2);
    QCOMPARE(record.value(QLatin1String("choice")).toObject(),
             (QJsonObject{{QStringLiteral("format"), QStringLiteral("137")},
                          {QStringLiteral("audio"), QStringLiteral("140")}}));
}

void FetchRealTest::download()
{
    FetchProgram fetch(m_root.filePath(QStringLiteral("work")));
    QVERIFY(fetch.run(arguments({})));
    QVERIFY2(fetch.exitCode() == 0, qPrintable(fetch.errors()));
    const QString file = fetch.output().trimmed();
    QCOMPARE(filesLeft(), QStringList(QFileInfo(file).fileName()));
    QProcess probe;
    probe.start(QStringLiteral("ffprobe"),
                {QStringLiteral("-loglevel"), QStringLiteral("error"), QStringLiteral("-show_entries"),
                 QStringLiteral("stream=codec_name"), QStringLiteral("-of"), QStringLiteral("csv=p=0"), file});
    QVERIFY(probe.waitForFinished());
    QCOMPARE(probe.readAllStandardOutput(), QByteArray("h264\naac\n"));
    QVERIFY(QFile::remove(file));
}

void FetchRealTest::interrupt()
{
    FetchProgram fetch(m_root.filePath(QStringLiteral("work")));
    fetch.start(arguments({QStringLiteral("-f"), QStringLiteral("137")}));
    // Its fetching shows in its private folder, and as a child of its own.
    const auto isFetching = [this] {
        const QStringList left = filesLeft();
        return left.size() == 1
            && !QDir(m_root.filePath(QStringLiteral("work/")) + left.first()).entryList(QDir::Files).isEmpty();
    };
    QTRY_VERIFY_WITH_TIMEOUT(isFetching(), patienceMs);
    QFile children(QStringLiteral("/proc/%1/task/%1/children").arg(fetch.process().processId()));
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
    FetchProgram fetch(m_root.filePath(QStringLiteral("work")));
    QVERIFY(fetch.run(arguments({}, QStringLiteral("nowhere"))));
    QCOMPARE(fetch.exitCode(), 1);
    QVERIFY2(fetch.errors().contains(QLatin1String("404")), qPrintable(fetch.errors()));
}

NOX_TEST_MAIN(FetchRealTest)
#include "FetchRealTest.moc"
