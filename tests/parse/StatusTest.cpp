#include "tests/util/Rows.h"

#include <nox/parse/YdOutputParser.h>
#include <nox/parse/YdStatusLines.h>

using namespace Nox;

/** The status lines of a download. */
class StatusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void progress_data()
    {
        const QString line = "[download]  45.3% of 12.34MiB at 1.23MiB/s ETA 00:05"_s;
        const QString kilo = "[download] 50% of 1.00KiB at 5B/s ETA 1"_s;
        const QString asKilo = " -> 1024 512 5"_s;
        const QString none = " -> -90 -91 -92"_s;
        rows(
            {"text", "counts"},
            {line + " -> 12939428 5861560 1289748"_s, "\r"_s + line + "\r"_s + kilo + " -> 12939428 5861560 1289748"_s,
             "[download] "_s + kilo + asKilo, "[download]50%of1KiBat5B/sETA"_s + asKilo,
             "[download]\n50%\u00a0\nof\t1KiB\nat\n5B/s\u2028ETA"_s + asKilo,
             "[download] 50% of 1KiBatat2B/s ETA -> 1024 512 2"_s, "[download] 50% of 1KiBé_9 at 5B/s/s ETA"_s + asKilo,
             "[download] 45.3% of 12.34 at 1.23MiB/s ETA -> -1 0 1289748"_s,
             // In single precision, and with a combining accent in the unit
             "[download] 0.7% of 1000B at 5B/s ETA -> 1000 6 5"_s,
             "[download] 50% of 1KiB\u0301 at 5B/s ETA"_s + asKilo, "[download] 50% of 1KiB at /s ETA -> 1024 512 -1"_s,
             "[download] 50% of 1KiB at --/s ETA -> 1024 512 -1"_s,
             "[download] 1000% of 1KiB at 5b/s ETA -> 1024 10240 -1"_s,
             "[download] 100% of 8EiB at 9ZiB/s ETA -> "
             "9223372036854775807 9223372036854775807 9223372036854775807"_s,
             "[download] 1"_s + "0"_s.repeated(30) + "% of 1KiB at 5B/s ETA -> 1024 9223372036854775807 5"_s,
             "[download] ٤% of 1KiB at 5B/s ETA -> 1024 0 5"_s, QString(QChar(0xD83D)) + kilo + asKilo,
             "\0"_s + kilo + asKilo, "[download] Destination: .mp4\n"_s + kilo + asKilo,
             kilo + "\n[download] a.mp4 has already been downloaded"_s + asKilo, none,
             "[download] 100% of 12.34MiB in 00:05"_s + none,
             "[download] 0.0% of 12.34MiB at Unknown speed ETA Unknown"_s + none,
             "[download] 50% of ~1KiB at 5B/s ETA"_s + none, "[download] 50% of 1KiB at 5B/s"_s + none,
             "[download] 50% of 1KiB at 5 B/s ETA"_s + none, "[download] 50% of 1KiB at 5B/S ETA"_s + none,
             "[download] 5.% of 1KiB at 5B/s ETA"_s + none, "[Download] 50% of 1KiB at 5B/s ETA"_s + none,
             "[download] Destination: a.mp4\n"_s + kilo + none, kilo + "\n[download] Destination: a."_s + none,
             kilo + "\n[download] a.mp4 has already been downloaded\n"_s + none,
             kilo + "\nx\r\n has already been downloaded\u00a0"_s + none});
    }

    void progress()
    {
        const auto [text, counts] = fetchTexts("text", "counts");
        qint64 total = -90;
        qint64 finish = -91;
        qint64 speed = -92;
        QCOMPARE(YdOutputParser::instance()->parseDownloadeInfo(text, total, finish, speed), 0);
        QCOMPARE(QStringLiteral("%1 %2 %3").arg(total).arg(finish).arg(speed), counts);
    }

    void fileNames_data()
    {
        // The names in "Destination" lines and in "already downloaded" lines.
        rows(
            {"text", "destination", "downloaded"},
            {"[download] Destination: a.mp4\n -> a.mp4 -> none"_s, "[download] Destination: a.b.\n -> a.b. -> none"_s,
             "[download] Destination: .a -> none -> none"_s,
             "[download] Destination: a\n[download] Destination: b.c\r. -> b.c -> none"_s,
             "[download] Destination: [download] Destination: a.b -> [download] Destination: a.b -> none"_s,
             "[download] Destination:a.b [Download] Destination: a.b -> none -> none"_s,
             "[download] a has already been downloaded\n -> none -> a"_s,
             "[download] a\n[download] b has already been downloaded\u2028 -> none -> a\n[download] b"_s,
             "[download] a has already been downloaded has already been downloaded . -> none -> a has already been downloaded"_s,
             "[download]  has already been downloaded  -> none -> "_s,
             "[download] a has already been downloaded -> none -> none"_s,
             "[download] a has already been downloaded_\n -> none -> none"_s,
             "a has already been downloaded\n[download] b -> none -> none"_s});
    }

    void fileNames()
    {
        const auto [text, destination, downloaded] = fetchTexts("text", "destination", "downloaded");
        const auto shown = [](std::optional<QStringView> found) { return found ? found->toString() : "none"_s; };
        QCOMPARE(shown(YdStatusLines::findDestination(text)), destination);
        QCOMPARE(shown(YdStatusLines::findAlreadyDownloaded(text)), downloaded);
    }

    void matchersFinishOnLongTexts()
    {
        const QString head = "[download] 1% of 1"_s;
        for (const QString &text :
             {"[download] "_s.repeated(100000), "[download] "_s + "1"_s.repeated(1000000),
              "[download] 1%"_s + " "_s.repeated(1000000), head + "at"_s.repeated(500000),
              head + "at1/s"_s.repeated(200000), (head + "at "_s).repeated(50000), "[download] 1%"_s.repeated(80000)}) {
            QVERIFY(!YdStatusLines::findProgress(text));
        }
        const QString name = "[download] Destination: "_s;
        QVERIFY(!YdStatusLines::findDestination(name.repeated(40000)));
        QVERIFY(!YdStatusLines::findDestination((name + "a\n"_s).repeated(40000)));
        const QString longName = name + "a."_s.repeated(500000);
        QCOMPARE(int(YdStatusLines::findDestination(longName).value_or(QStringView()).size()), 1000000);
        const QString end = " has already been downloaded"_s;
        QVERIFY(!YdStatusLines::findAlreadyDownloaded("[download] "_s.repeated(100000)));
        QVERIFY(!YdStatusLines::findAlreadyDownloaded(("[download] a"_s + end + "x"_s).repeated(20000)));
        QVERIFY(!YdStatusLines::findAlreadyDownloaded((end + "\n"_s).repeated(40000) + "[download] "_s));
    }
};

QTEST_GUILESS_MAIN(StatusTest)
#include "StatusTest.moc"
