#include "tests/jobs/JobTest.h"
#include "tests/support/Processes.h"

using namespace Nox;

namespace {

/** The error of a job about a page or its list, and what has been found, as one text. */
QString answer(const Job &job)
{
    if (const auto *page = qobject_cast<const PageJob *>(&job)) {
        const QString more = page->isInParts() ? "parts"_s : page->warnings().join(QLatin1Char(' '));
        return "%1 %2 %3"_s.arg(nameOf(job.error()), QString::number(page->videoCount()), more).trimmed();
    }
    const auto &list = static_cast<const PlaylistJob &>(job);
    const QList<PlaylistEntry> entries = list.entries();
    QStringList all{nameOf(job.error())};
    for (const PlaylistEntry &entry : entries.mid(0, 3))
        all += "%1,%2,%3,%4,%5"_s.arg(QString::number(entry.number), entry.url, entry.title,
                                      QString::number(entry.duration), entry.thumbnailUrl);
    if (entries.size() > 3)
        all += QString::number(entries.size());
    if (list.total() >= 0)
        all += "of %1"_s.arg(list.total());
    if (list.hasMore())
        all += "more"_s;
    if (list.isInParts())
        all += "parts"_s;
    return all.join(QLatin1Char(' '));
}

} // namespace

/** Pages with several videos: how many there are, and their list. */
class PlaylistTest : public JobTest
{
    Q_OBJECT

private Q_SLOTS:
    void answers_data();
    void answers();
    void cancelledList();
};

void PlaylistTest::answers_data()
{
    const TextTable row{"scenario", "expected"};
    row("the front's",
        R"(list: out {"nox_index":1,"nox_url":"http://x/a","title":"A","duration":7.9,"thumbnail":"https://p/","nox_count":3}\n)"
        R"({"nox_index":2,"nox_url":"http://x/#nox-item=2","title":null,"duration":null,"thumbnail":null}\n)"
        R"({"nox_more":true}\n)",
        "NoError 1,http://x/a,A,7,https://p/ 2,http://x/#nox-item=2,,0, of 3 more");
    row("parts", R"(list: out {"nox_index":1,"nox_url":"http://x/a","nox_parts":true,"nox_count":1})",
        "NoError 1,http://x/a,,0, of 1 parts");
    row("the tool's own",
        R"(list: out {"_type":"url","url":"http://x/v","webpage_url":"http://x/","playlist_index":4,"playlist_count":9,)"
        R"("thumbnails":[{"url":"http://p/small"},{"url":"http://p/large"}]}\n)"
        R"({"_type":"url","url":"id","webpage_url":"http://x/w"}\n)"
        R"({"url":"http://cdn/data","webpage_url":"http://x/u","title":"a\tb"}\n)",
        "NoError 4,http://x/v,,0,http://p/large 2,http://x/w,,0, 3,http://x/u,a b,0, of 9 more");
    row("rubbish between",
        R"(list: out nonsense\n[]\n{}\n{"nox_url":5}\n{"nox_url":"file:///etc/passwd"}\n{"nox_url":"--exec=x"}\n)"
        R"({"nox_index":-1,"nox_url":"http://x/a","title":[1],"duration":-5,"thumbnail":"data:x","nox_count":1e99}\n\n)",
        "NoError 1,http://x/a,,0,");
    row("nothing but words", "list: out words", "NothingToDownload");
    row("refused in the middle", R"(list: out {"nox_url":"http://x/a"}\n|fail ERROR: [nox:network] x)",
        "NoNetwork 1,http://x/a,,0,");
    row("more than asked for", R"(list: lines 1000000 {"nox_url":"http://x/a"})",
        "NoError 1,http://x/a,,0, 2,http://x/a,,0, 3,http://x/a,,0, 200 more");
    row("more rubbish than is read",
        "list: lines 1000000 {\"a\":\"this line says nothing of an entry, and there are many of it\"}", "OtherError");
    row("one line without end", "list: flood 80 1|hang", "OtherError");
    row("deep", "list: lines 1000 [[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[", "NothingToDownload");
    row("number of videos", R"(dump: err WARNING: x\nWARNING: [nox:videos] 12\n|json Clip 18)", "NoError 12 x");
    row("warnings, each once",
        R"(dump: err WARNING: a\n  b\n\nWARNING: c\nDeprecated Feature: d\n  e\nWARNING: [nox:waiting] f\nERROR: g\n)"
        R"(WARNING: c\nWARNING: h\ni\n|json Clip 18)",
        "NoError 1 a b c h i");
    row("number of parts", R"(dump: err WARNING: [nox:parts] 3\n|json Clip 18)", "NoError 3 parts");
    row("unknown number", R"(dump: err WARNING: [nox:videos] many\n|json Clip 18)", "NoError -1");
    row("number in a text", R"(dump: err WARNING: y [nox:videos] 5\n|json Clip 18)", "NoError 1 y [nox:videos] 5");
}

// Whatever the tool prints, the job ends, and memory does not grow with it.
void PlaylistTest::answers()
{
    QFETCH(QString, scenario);
    HostSandbox::play(scenario);
    if (scenario.startsWith("list"_s))
        m_job = std::make_unique<PlaylistJob>(m_url);
    else
        m_job = std::make_unique<PageJob>(m_url);
    QStringList found;
    if (const auto *list = qobject_cast<PlaylistJob *>(m_job.get()))
        connect(list, &PlaylistJob::entryFound, this, [&](const PlaylistEntry &entry) { found += entry.url; });
    const qint64 before = Processes::residentBytes();
    m_job->start();
    QTRY_VERIFY_WITH_TIMEOUT(isEnded(*m_job), HostSandbox::Timeout);
    QTEST(answer(*m_job), "expected");
    QCOMPARE(m_job->errorString().isEmpty(), m_job->error() == Job::NoError);
    const auto *list = qobject_cast<PlaylistJob *>(m_job.get());
    QCOMPARE(found.size(), list == nullptr ? 0 : list->entries().size());
    constexpr qint64 mebibyte = 1024 * 1024;
    const qint64 growth = Processes::residentBytes() - before;
    QVERIFY2(!Processes::isMemoryMeasurable || growth < 40 * mebibyte, qPrintable(QString::number(growth)));
}

// The address is one argument; certificates are treated as for downloads. The tool ends with its own children.
void PlaylistTest::cancelledList()
{
    HostSandbox::play(R"(list: out {"nox_url":"http://x/a"}\n|spawn|hang)"_s);
    PlaylistJob job("http://x/?a=b%20c"_s);
    job.setRange(201, 1000);
    job.start();
    QTRY_VERIFY_WITH_TIMEOUT(m_sandbox->hangs("list"_s), HostSandbox::Timeout);
    job.cancel();
    QTRY_VERIFY_WITH_TIMEOUT(isEnded(job), HostSandbox::Timeout);
    QCOMPARE(answer(job), "Cancelled 201,http://x/a,,0,"_s);
    const QByteArray run = Files::content(m_sandbox->path("notes/runs"_s)).split('\n').constFirst();
    const QByteArrayList words = run.split('\x1f');
    QCOMPARE(
        words.mid(words.indexOf("--flat-playlist")).join(' '),
        QByteArray("--flat-playlist --dump-json --playlist-items 201:400 --no-check-certificate http://x/?a=b%20c"));
}

QTEST_GUILESS_MAIN(PlaylistTest)
#include "PlaylistTest.moc"
