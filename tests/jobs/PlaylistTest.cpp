#include "tests/jobs/HostSandbox.h"
#include "tests/support/Processes.h"
#include "tests/support/TextTable.h"
#include "tests/util/Rows.h"

#include <nox/NoxWebMediaJobs.h>

#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace Nox;

/** Lists of the videos of a page, with a stand-in for the tool. */
class PlaylistTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void entries_data();
    void entries();
    void flood_data();
    void flood();
    void commandLine();
    void cancelled();
    void counts_data();
    void counts();

private:
    static QString texts(const PlaylistJob &job);

    std::unique_ptr<HostSandbox> m_sandbox;
};

void PlaylistTest::init()
{
    m_sandbox = std::make_unique<HostSandbox>();
    HostSandbox::installStandIns();
}

void PlaylistTest::cleanup()
{
    QTRY_VERIFY_WITH_TIMEOUT(m_sandbox->isQuiet(), HostSandbox::Timeout);
    m_sandbox.reset();
}

/** The error, the entries and what else is known, as one text. */
QString PlaylistTest::texts(const PlaylistJob &job)
{
    QStringList all{QString::fromLatin1(QMetaEnum::fromType<Job::Error>().valueToKey(job.error()))};
    const QList<PlaylistEntry> entries = job.entries();
    for (const PlaylistEntry &entry : entries)
        all += "%1,%2,%3,%4,%5"_s.arg(entry.number)
                   .arg(entry.url, entry.title)
                   .arg(entry.duration)
                   .arg(entry.thumbnailUrl);
    if (job.total() >= 0)
        all += "of %1"_s.arg(job.total());
    if (job.hasMore())
        all += "more"_s;
    if (job.isInParts())
        all += "parts"_s;
    return all.join(QLatin1Char(' '));
}

void PlaylistTest::entries_data()
{
    const TextTable row{"output", "expected"};
    row("the front's",
        R"(out {"nox_index":1,"nox_url":"http://x/a","title":"A","duration":7.9,"thumbnail":"https://p/","nox_count":3}\n)"
        R"({"nox_index":2,"nox_url":"http://x/#nox-item=2","title":null,"duration":null,"thumbnail":null}\n)"
        R"({"nox_more":true}\n)",
        "NoError 1,http://x/a,A,7,https://p/ 2,http://x/#nox-item=2,,0, of 3 more");
    row("parts", R"(out {"nox_index":1,"nox_url":"http://x/a","nox_parts":true,"nox_count":1})",
        "NoError 1,http://x/a,,0, of 1 parts");
    row("the tool's own",
        R"(out {"_type":"url","url":"http://x/v","webpage_url":"http://x/","playlist_index":4,"playlist_count":9,)"
        R"("thumbnails":[{"url":"http://p/small"},{"url":"http://p/large"}]}\n)"
        R"({"_type":"url","url":"id","webpage_url":"http://x/w"}\n)"
        R"({"url":"http://cdn/data","webpage_url":"http://x/u","title":"a\tb"}\n)",
        "NoError 4,http://x/v,,0,http://p/large 2,http://x/w,,0, 3,http://x/u,a b,0, of 9 more");
    row("rubbish between",
        R"(out nonsense\n[]\n{}\n{"nox_url":5}\n{"nox_url":"file:///etc/passwd"}\n{"nox_url":"--exec=x"}\n)"
        R"({"nox_index":-1,"nox_url":"http://x/a","title":[1],"duration":-5,"thumbnail":"data:x","nox_count":1e99}\n\n)",
        "NoError 1,http://x/a,,0,");
    row("nothing", "out {}\\n", "NothingToDownload");
    row("nothing but words", "out words", "NothingToDownload");
    row("refused", R"(err ERROR: [nox:not-found] No page\n|exit 1)", "NotFound");
    row("refused in the middle", R"(out {"nox_url":"http://x/a"}\n|err ERROR: [nox:network] x\n|exit 1)",
        "NoNetwork 1,http://x/a,,0,");
    row("crash", R"(out {"nox_url":"http://x/a"}\n|kill SIGSEGV)", "OtherError 1,http://x/a,,0,");
}

void PlaylistTest::entries()
{
    QFETCH(QString, output);
    HostSandbox::play("list: "_s + output);
    PlaylistJob job("http://x/"_s);
    QSignalSpy found(&job, &PlaylistJob::entryFound);
    QSignalSpy finished(&job, &Job::finished);
    job.start();
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, HostSandbox::Timeout);
    QTEST(texts(job), "expected");
    QCOMPARE(found.size(), job.entries().size());
    QCOMPARE(job.errorString().isEmpty(), job.error() == Job::NoError);
}

void PlaylistTest::flood_data()
{
    const TextTable row{"output", "count", "error"};
    row("more than asked for", R"(lines 1000000 {"nox_url":"http://x/a"})", "200", "NoError");
    row("more rubbish than is read",
        "lines 1000000 {\"a\":\"this line says nothing of an entry, and there are many of it\"}", "0", "OtherError");
    row("one line without end", "flood 80 1|hang", "0", "OtherError");
    row("deep", R"(lines 1000 [[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[)", "0", "NothingToDownload");
}

// Whatever comes, it ends, and memory does not grow with it.
void PlaylistTest::flood()
{
    QFETCH(QString, output);
    HostSandbox::play("list: "_s + output);
    PlaylistJob job("http://x/"_s);
    const qint64 before = Processes::residentBytes();
    job.start();
    QTRY_VERIFY_WITH_TIMEOUT(job.state() == Job::Ended, HostSandbox::Timeout);
    QTEST(QString::number(job.entries().size()), "count");
    QTEST(QString::fromLatin1(QMetaEnum::fromType<Job::Error>().valueToKey(job.error())), "error");
    QCOMPARE(job.hasMore(), job.error() == Job::NoError);
    constexpr qint64 mebibyte = 1024 * 1024;
    const qint64 growth = Processes::residentBytes() - before;
    QVERIFY2(!Processes::isMemoryMeasurable || growth < 40 * mebibyte, qPrintable(QString::number(growth)));
}

// The range, and the address as one argument; certificates as for downloads.
void PlaylistTest::commandLine()
{
    HostSandbox::play(R"(list: out {"nox_url":"http://x/a"})"_s);
    PlaylistJob job("http://x/?a=b c"_s.replace(QLatin1Char(' '), "%20"_s));
    job.setRange(201, 1000);
    job.start();
    QTRY_VERIFY_WITH_TIMEOUT(job.state() == Job::Ended, HostSandbox::Timeout);
    QFile runs(m_sandbox->path("notes/runs"_s));
    QVERIFY(runs.open(QIODevice::ReadOnly));
    const QByteArrayList words = runs.readAll().trimmed().split('\x1f');
    QCOMPARE(
        words.mid(words.indexOf("--flat-playlist")).join(' '),
        QByteArray("--flat-playlist --dump-json --playlist-items 201:400 --no-check-certificate http://x/?a=b%20c"));
    QCOMPARE(job.entries().value(0).number, 201);
}

void PlaylistTest::cancelled()
{
    HostSandbox::play(R"(list: out {"nox_url":"http://x/a"}\n|spawn|hang)"_s);
    PlaylistJob job("http://x/"_s);
    QSignalSpy finished(&job, &Job::finished);
    job.start();
    QTRY_VERIFY_WITH_TIMEOUT(m_sandbox->hangs("list"_s), HostSandbox::Timeout);
    job.cancel();
    QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, HostSandbox::Timeout);
    QCOMPARE(texts(job), "Cancelled 1,http://x/a,,0,"_s);
}

void PlaylistTest::counts_data()
{
    const TextTable row{"errors", "expected"};
    row("one", "", "1");
    row("some", R"(WARNING: x\nWARNING: [nox:videos] 12\n)", "12 x");
    row("unknown", R"(WARNING: [nox:videos] many\n)", "-1");
    row("parts", R"(WARNING: [nox:parts] 3\n)", "3 parts");
    row("no number", R"(WARNING: [nox:videos] 0\n)", "-1");
    row("not at the beginning", R"(WARNING: y [nox:videos] 5\n)", "1 y [nox:videos] 5");
}

// How many videos a page has is no warning.
void PlaylistTest::counts()
{
    QFETCH(QString, errors);
    HostSandbox::play("dump: err %1|json Clip 18"_s.arg(errors));
    PageJob job("http://x/"_s);
    QCOMPARE(job.videoCount(), 1);
    job.start();
    QTRY_VERIFY_WITH_TIMEOUT(job.state() == Job::Ended, HostSandbox::Timeout);
    QStringList told{QString::number(job.videoCount())};
    if (job.isInParts())
        told += "parts"_s;
    QTEST((told + job.warnings()).join(QLatin1Char(' ')), "expected");
}

QTEST_GUILESS_MAIN(PlaylistTest)
#include "PlaylistTest.moc"
