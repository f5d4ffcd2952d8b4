#include "tests/hosts/FetchProgram.h"
#include "tests/support/DemoPage.h"
#include "tests/support/TestMain.h"
#include "tests/util/Rows.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

/** nox-fetch with the real tool and the real ffmpeg, on a page that is served on the loopback address. */
class FetchRealTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void describe();
    void download();

private:
    bool run(const QStringList &options)
    {
        return m_fetch.run(options + QStringList{"--pycache"_s, m_cache.path(), m_page.url()});
    }

    QTemporaryDir m_work;
    QTemporaryDir m_cache;
    DemoPage m_page;
    FetchProgram m_fetch{m_work.path()};
};

void FetchRealTest::initTestCase()
{
    QVERIFY(FetchProgram::install());
    QVERIFY(m_page.serve());
}

void FetchRealTest::describe()
{
    QVERIFY(run({"--json"_s}));
    QVERIFY2(m_fetch.exitCode() == 0, qPrintable(m_fetch.errors()));
    const QJsonObject record = QJsonDocument::fromJson(m_fetch.output().toUtf8()).object();
    QVERIFY(record.value("title"_s).toString().startsWith("Open the café/bar?"_s));
    QVERIFY(record.value("thumbnail"_s).toString().endsWith("/mqdefault.jpg"_s));
    QVERIFY(record.value("duration"_s).isDouble());
    QString streams; // programs that use nox-fetch rely on the names of these members
    for (const auto &value : record.value("streams"_s).toArray()) {
        for (const char *member : {"code", "kind", "container"})
            streams += value.toObject().value(QLatin1String(member)).toString() + QLatin1Char(' ');
    }
    QCOMPARE(streams, "137 video MP4 140 audio M4A "_s);
    QCOMPARE(record.value("choice"_s).toObject(), (QJsonObject{{"format"_s, "137"_s}, {"audio"_s, "140"_s}}));
}

void FetchRealTest::download()
{
    QVERIFY(run({}));
    QVERIFY2(m_fetch.exitCode() == 0, qPrintable(m_fetch.errors()));
    const QString file = m_fetch.output().trimmed();
    QCOMPARE(QDir(m_work.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList(QFileInfo(file).fileName()));
    QProcess probe;
    probe.start("ffprobe"_s,
                {"-loglevel"_s, "error"_s, "-show_entries"_s, "stream=codec_name"_s, "-of"_s, "csv=p=0"_s, file});
    QVERIFY(probe.waitForFinished());
    QCOMPARE(probe.readAllStandardOutput(), QByteArray("h264\naac\n"));
}

NOX_TEST_MAIN(FetchRealTest)
#include "FetchRealTest.moc"
