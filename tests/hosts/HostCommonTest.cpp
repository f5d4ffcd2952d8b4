#include "hosts/common/Conversion.h"
#include "hosts/common/Destination.h"
#include "hosts/common/DownloadFolder.h"
#include "hosts/common/FailureText.h"
#include "hosts/common/GrowthMeter.h"
#include "hosts/common/JoinProgress.h"
#include "hosts/common/StreamChoice.h"
#include "hosts/common/StreamText.h"
#include "hosts/common/TextSanitizer.h"
#include "hosts/common/ToolMessage.h"
#include "hosts/common/TransferFigures.h"
#include "hosts/common/UrlCheck.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

using namespace NoxHost;
using Nox::MediaProfile;

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

/**
 * A stream from words such as "137 MP4 1920x1080 dash", "140 M4A 128K" (audio), "x MP4 >1080p 3d",
 * "x FLV" (of unknown size).
 */
MediaProfile stream(const QString &words)
{
    const QStringList parts = words.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    MediaProfile result;
    result.setName(parts.value(0));
    result.setFormat(parts.value(1));
    result.setMediaType(Nox::MEDIA_TYPE_VIDEO);
    for (const QString &part : parts.mid(2)) {
        if (part == QLatin1String("dash")) {
            result.setDash(true);
        } else if (part == QLatin1String("3d")) {
            result.set3D(true);
        } else if (part.endsWith(QLatin1Char('K'))) {
            result.setMediaType(Nox::MEDIA_TYPE_AUDIO);
            result.setDash(true);
            result.setOriResStr(part);
            result.setABitRate(part.chopped(1).toInt() * 1000);
        } else if (part.contains(QLatin1Char('p'))) {
            result.setOriResStr(part);
        } else {
            const QStringList sides = part.split(QLatin1Char('x'));
            result.setVResolution(QSize(sides.value(0).toInt(), sides.value(1).toInt()));
        }
    }
    return result;
}

/** A page with streams in the tool's order of preference, best first, commas between them. */
Nox::WebMediaInfo page(const QString &streams, const QString &fileName = {})
{
    Nox::WebMediaInfo result(QStringLiteral("http://x/"));
    result.setTitle(fileName);
    result.setFileName(fileName);
    for (const QString &words : streams.split(QLatin1Char(','), Qt::SkipEmptyParts))
        result.addMediaProfile(stream(words));
    return result;
}

QString codes(const QList<MediaProfile> &streams)
{
    QStringList result;
    for (const MediaProfile &one : streams)
        result += one.getName();
    return result.join(QLatin1Char(' '));
}

} // namespace

/** What the hosts share, without any process. */
class HostCommonTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void choice_data();
    void choice();
    void conversions_data();
    void conversions();
    void streamTexts();
    void urls_data();
    void urls();
    void mendedUrls();
    void proposedNames_data();
    void proposedNames();
    void nameProblems();
    void figures_data();
    void figures();
    void partialFolder();
    void toolMessages_data();
    void toolMessages();
    void joinProgress_data();
    void joinProgress();
    void growth();
    void failureTexts();
};

void HostCommonTest::choice_data()
{
    QTest::addColumn<QString>("streams");
    QTest::addColumn<QString>("all");
    QTest::addColumn<QString>("thinned");
    QTest::addColumn<QString>("picked"); // the best and its companion

    const auto row = [](const char *name, const char *streams, const char *all, const char *thinned,
                        const char *picked) {
        QTest::newRow(name) << text(streams) << text(all) << text(thinned) << text(picked);
    };
    row("none", "", "", "", "");
    row("one", "18 MP4 640x360", "18", "18", "18");
    row("one without sound, no audio", "1 MP4 640x360 dash", "1", "1", "1");
    row("audio only, the tool's best", "a M4A 128K,b WEBM 160K", "a b", "a b", "a");
    row("M4A for MP4 in spite of rate", "v MP4 640x360 dash,c WEBM 160K,a M4A 48K,b M4A 128K", "v c a b", "v c a b",
        "v a");
    row("the tool's best for the others", "v WEBM 640x360 dash,a M4A 128K,c WEBM 160K", "v a c", "v a c", "v a");
    row("own language's dub", "v MP4 640x360 dash,fr M4A 50K,en M4A 192K", "v fr en", "v fr en", "v fr");
    row("any audio for MP4 without M4A", "v MP4 640x360 dash,c WEBM 160K", "v c", "v c", "v c");
    row("own sound needs none", "v MP4 640x360,a M4A 128K", "v a", "v a", "v");
    row("own sound before silence", "d MP4 1280x720 dash,p MP4 1280x720,q MP4 640x360", "p d q", "p q", "p");
    row("sound even where the picture is small", "d MP4 1280x720 dash,p MP4 320x180", "d p", "d p", "p");
    row("tool's preference", "s MP4 640x360,d MP4 1280x720 dash,e MP4 1280x720 dash,p MP4 1280x720,a M4A 1K",
        "d e p s a", "d s a", "d a");
    row("no conversion before the tool's preference", "w WEBM 1280x720 dash,m MP4 1280x720 dash,a M4A 1K", "m w a",
        "m w a", "m a");
    row("no conversion before picture", "w WEBM 3840x2160 dash,m MP4 1920x1080 dash,s MP4 640x360,a M4A 9K,o WEBM 9K",
        "w m s a o", "w m s a o", "m a");
    row("sound that is converted", "m MP4 1920x1080 dash,s MP4 640x360,o WEBM 9K", "m s o", "m s o", "s");
    row("nothing else is large", "w WEBM 3840x2160 dash,m MP4 1920x1080 dash,s MP4 320x240,o WEBM 9K", "w m s o",
        "w m s o", "m o");
    row("nothing else is large, nor MP4", "v WEBM 1280x720 dash,w WEBM 3840x2160 dash,s MP4 320x240,o WEBM 9K",
        "w v s o", "w v s o", "w o");
    row("label above 1080p", "m MP4 1920x1080,x MP4 >1080p,l MP4 2560x1440", "l x m", "l x m", "l");
    row("labels differ", "m MP4 1920x1080,n MP4 1920x1080 1080p60,o MP4 1920x1080", "m n o", "m n", "m");
    row("2D before 3D", "t MP4 640x360 3d,f MP4 640x360", "f t", "f t", "f");
    row("unknown sizes all stay", "l FLV,m MP4,n MP4 dash,a M4A 9K", "l m n a", "l m n a", "l");
    row("codes that are options", "-x MP4 9x9,q\"q MP4 8x8,ok MP4 7x7", "ok", "ok", "ok");
    row("no format", "v,ok MP4 7x7", "ok", "ok", "ok");
}

void HostCommonTest::choice()
{
    QFETCH(QString, streams);
    const StreamChoice choice(page(streams));
    QTEST(codes(choice.all()), "all");
    QTEST(codes(choice.thinned()), "thinned");
    const MediaProfile best = choice.best();
    QTEST(codes({best, choice.companionFor(best)}).trimmed(), "picked");
}

void HostCommonTest::conversions_data()
{
    QTest::addColumn<QString>("video");
    QTest::addColumn<QString>("audio");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("warning"); // for an hour; "|" between texts that must be there
    const auto row = [](const char *video, const char *audio, Conversion::Kind kind, const char *warning) {
        QTest::newRow(qPrintable(text(video) + text(" + ") + text(audio)))
            << text(video) << text(audio) << int(kind) << text(warning);
    };
    row("v WEBM 1280x720", "a M4A 1K", Conversion::None, "");
    row("v WEBM 1280x720 dash", "", Conversion::None, "");
    row("v MP4 1280x720 dash", "a M4A 1K", Conversion::None, "");
    row("v MP4 1280x720 dash", "a WEBM 1K", Conversion::Sound, "audio must be converted|: 2 min.");
    row("v WEBM 1280x720 dash", "a M4A 1K", Conversion::Picture, "takes long|Rough guess");
    row("v WEBM dash", "a M4A 1K", Conversion::Picture, "takes long");
    row("v WEBM 20000x20000 dash", "a M4A 1K", Conversion::Picture, " h.");
}

void HostCommonTest::conversions()
{
    QFETCH(QString, video);
    QFETCH(QString, audio);
    QFETCH(QString, warning);
    const MediaProfile picture = stream(video);
    const Conversion::Kind kind = Conversion::needed(picture, stream(audio));
    QTEST(int(kind), "kind");
    QCOMPARE(Conversion::mark(kind), kind == Conversion::None ? QString() : text("slow: must be converted"));
    const QString words = Conversion::warning(kind, picture, 3600);
    QCOMPARE(words.isEmpty(), warning.isEmpty());
    for (const QString &part : warning.split(QLatin1Char('|')))
        QVERIFY2(words.contains(part), qPrintable(words));
    const qint64 one = Conversion::roughSeconds(kind, picture, 3600, 1);
    const qint64 many = Conversion::roughSeconds(kind, picture, 3600, 64);
    QCOMPARE(many < one, warning.contains(text("takes long|")) || warning == text(" h."));
    QCOMPARE(Conversion::roughSeconds(kind, picture, 0, 1), qint64(-1));
    QVERIFY(Conversion::roughSeconds(kind, picture, std::numeric_limits<qint64>::max(), 1) < 2000000000);
}

void HostCommonTest::streamTexts()
{
    const auto described = [](const char *words) {
        const MediaProfile one = stream(text(words));
        return QStringList{StreamText::kind(one), StreamText::label(one), StreamText::marks(one)}.join(
            QLatin1Char('|'));
    };
    QCOMPARE(described("1 MP4 1280x720"), text("video|720P|"));
    QCOMPARE(described("1 MP4 1280x720 dash 3d"), text("3D video only|720P|DASH 3D"));
    QCOMPARE(described("1 MP4"), text("video||"));
    QCOMPARE(described("1 M4A 128K"), text("audio|128K|DASH"));
    QCOMPARE(described("1 M4A 0K"), text("audio||DASH"));
    QCOMPARE(described("1 MP4 1920x1080 1080p60"), text("video|1080P60|"));
    QCOMPARE(described("1 MP4 640x480"), text("video|640x480|"));
    MediaProfile written = stream(text("1 MP4 1280x720 dash"));
    written.setOriResStr(text("1280x720 extra"));
    QCOMPARE(StreamText::label(written), text("1280x720 EXTRA"));

    const QList<MediaProfile> streams{stream(text("a M4A 128K")), stream(text("b M4A 128K")),
                                      stream(text("c M4A 64K")),  stream(text("d FLV")),
                                      stream(text("e FLV")),      stream(text("f MP4 640x360"))};
    QCOMPARE(StreamText::labels(streams).join(QLatin1Char('|')), text("128K (a)|128K (b)|64K|d|e|360P"));
    QStringList words;
    for (const MediaProfile &one : streams)
        words += StreamText::plainWords(one);
    words += StreamText::plainWords(written);
    QCOMPARE(words.mid(1).join(QLatin1Char('|')),
             text("sound only, 128 kbit/s|sound only, 64 kbit/s|with sound|with sound|360p, with sound|"
                  "720p, without sound"));
    const QString joinedSigns = text("\xf0\x9f\x91\xa9\xe2\x80\x8d\xf0\x9f\x94\xac"); // one sign made of two
    QCOMPARE(TextSanitizer::line(text(" a\x1b[31m\tb\n") + QChar(0x202e) + joinedSigns + QChar(0xd800)),
             text("a [31m b ") + joinedSigns);
}

void HostCommonTest::urls_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<QString>("words"); // part of the reason; empty for a good address
    const auto row = [](const char *url, const char *words) { QTest::newRow(url) << text(url) << text(words); };
    row("http://a", "");
    row("https://a.b:80/c?d=e&f=%20#g", "");
    row("https://a/\xc3\xa9", "");
    row("", "no address");
    row("ftp://a", "http://");
    row("--exec=x http://a", "http://");
    row("http://", "incomplete");
    row("http://a --exec x", "blanks");
    row("http://a http://b", "blanks");
    row("http://a\n", "blanks");
    row("http://a\xc2\xa0--x", "blanks");
    row("http://a/\"b", "quotes");
    row("http://a/'b", "quotes");
    row("www.a", "http://");
}

void HostCommonTest::mendedUrls()
{
    const auto mended = [](const char *typed) { return UrlCheck::mended(text(typed)); };
    QCOMPARE(mended(" HTTP://A/B'c'\n"), text("http://A/B%27c%27"));
    QCOMPARE(mended("Https://a/?u=HTTP://b"), text("https://a/?u=HTTP://b"));
    QCOMPARE(mended("www.a.b/c"), text("https://www.a.b/c"));
    for (const char *unclear : {"", "a.b", "ftp://www.a", "http:/a", "http://a b", "http://a/\"", "--www.a"})
        QCOMPARE(mended(unclear), text(unclear));
}

void HostCommonTest::urls()
{
    QFETCH(QString, url);
    QFETCH(QString, words);
    const QString problem = UrlCheck::problem(url);
    QCOMPARE(problem.isEmpty(), words.isEmpty());
    QVERIFY2(problem.contains(words), qPrintable(problem));
}

void HostCommonTest::proposedNames_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("stream");
    QTest::addColumn<QString>("name");
    const auto row = [](const char *name, const QString &title, const char *words, const QString &expected) {
        QTest::newRow(name) << title << text(words) << expected;
    };
    const QString longName(400, QLatin1Char('n'));
    const QString wideName = text("\xf0\x9f\x98\x80").repeated(100);
    row("plain", text("A clip"), "1 MP4 9x9", text("A clip.mp4"));
    row("other container", text("A clip"), "1 WEBM 9x9 dash", text("A clip.webm"));
    row("container that is no suffix", text("A clip"), "1 ../X 9x9", text("A clip.x"));
    row("container of signs", text("A clip"), "1 :/ 9x9", text("A clip.media"));
    row("forbidden", text("a/b:c"), "1 MP4 9x9", text("a b c.mp4"));
    row("control characters", text("a\x1b\nb"), "1 MP4 9x9", text("a b.mp4"));
    row("dots at the end", text("Wait..."), "1 MP4 9x9", text("Wait.mp4"));
    row("hidden, like an option", text("..-rf . x"), "1 MP4 9x9", text("rf . x.mp4"));
    row("nothing left", text(" .. "), "1 MP4 9x9", text("video.mp4"));
    row("no title", QString(), "1 M4A 9K", text("audio.m4a"));
    row("taken", text("Taken"), "1 MP4 9x9", text("Taken(2).mp4"));
    row("too long", longName, "1 MP4 9x9", longName.left(227) + text(".mp4"));
    row("too many bytes", wideName, "1 MP4 9x9", text("\xf0\x9f\x98\x80").repeated(58) + text(".mp4"));
}

void HostCommonTest::proposedNames()
{
    QFETCH(QString, title);
    QFETCH(QString, stream);
    QTemporaryDir folder;
    QVERIFY(QFile(folder.filePath(text("Taken.mp4"))).open(QIODevice::WriteOnly));
    const QString path = Destination::proposed(page({}, title), ::stream(stream), folder.path(),
                                               {folder.filePath(text("Taken(1).mp4"))});
    QTEST(QFileInfo(path).fileName(), "name");
    QCOMPARE(Destination::problem(path), QString());

    MediaProfile joined = ::stream(QStringLiteral("1 WEBM 9x9 dash"));
    joined.setPreferredDashAudioYdCode(QStringLiteral("2"));
    QCOMPARE(Destination::suffix(joined), text("mp4"));
}

void HostCommonTest::nameProblems()
{
    QTemporaryDir folder;
    const auto problem = [&](const QString &name) { return Destination::problem(folder.filePath(name)); };
    QVERIFY(QFile(folder.filePath(text("taken"))).open(QIODevice::WriteOnly));
    QVERIFY(QFile::link(text("nowhere"), folder.filePath(text("dangling"))));
    QCOMPARE(Destination::free(folder.filePath(text("taken"))), folder.filePath(text("taken(1)")));

    QCOMPARE(problem(text("good (1).mp4")), QString());
    for (const char *name : {"50% off", "a%(id)s", "100%%", "5 $ a", "$HOME", "a${B}", "line\nline"})
        QVERIFY(QDir(folder.path()).mkdir(text(name)));
    QCOMPARE(problem(text("50% off/a%(id)s.mp4")), QString());
    QCOMPARE(problem(text("5 $ a/a")), QString());
    QCOMPARE(problem(QString(247, QLatin1Char('x'))), QString());
    const struct {
        QString name;
        const char *words;
    } rows[] = {
        {text("sub/"), "needs a name"},
        {QString(248, QLatin1Char('x')), "247"},
        {text("\xe6\x97\xa5").repeated(86), "255 bytes"},
        {text("a."), "dot"},
        {text("a?"), "must not hold"},
        {text("taken"), "exists already"},
        {text("dangling"), "exists already"},
        {text("none/a"), "does not exist"},
        {text("taken/a"), "not a folder"},
        {text("a%(id)s/a"), "cannot be used"},
        {text("100%%/a"), "cannot be used"},
        {text("$HOME/a"), "a $"},
        {text("a${B}/a"), "a $"},
        {text("line\nline/a"), "line line\" cannot be used: its name holds a line break"},
    };
    for (const auto &row : rows) {
        const QString words = problem(row.name);
        QVERIFY2(words.contains(text(row.words)), qPrintable(row.name + text(": ") + words));
    }
    QVERIFY(Destination::problem(folder.path()).contains(text("is a folder")));
    QVERIFY(Destination::problem(QString()).contains(text("needs a name")));
}

void HostCommonTest::figures_data()
{
    QTest::addColumn<qint64>("total");
    QTest::addColumn<qint64>("done");
    QTest::addColumn<qint64>("speed");
    QTest::addColumn<QString>("expected");
    const auto row = [](qint64 total, qint64 done, qint64 speed, const char *expected) {
        QTest::newRow(expected) << total << done << speed << text(expected);
    };
    const qint64 huge = std::numeric_limits<qint64>::max();
    row(0, 0, 0, "0%|||");
    row(0, 2500, 100, "0%|2.5 kB|100 bytes/s|");
    row(-1, -5, 7, "0%||7 bytes/s|");
    row(1000, 250, 100, "25%|250 bytes / 1.0 kB|100 bytes/s|0:00:08");
    row(3000, 2999, 0, "99%|3.0 kB / 3.0 kB||");
    row(1000, 1000, 1, "100%|1.0 kB / 1.0 kB|1 bytes/s|0:00:00");
    row(1000, 2000, 1, "100%|1.0 kB / 1.0 kB|1 bytes/s|0:00:00");
    row(36610000, 0, 1000, "0%|0 bytes / 36.6 MB|1.0 kB/s|10:10:10");
    row(huge, huge - 1, huge, "99%|9.2 EB / 9.2 EB|9.2 EB/s|0:00:01");
}

void HostCommonTest::figures()
{
    QFETCH(qint64, total);
    QFETCH(qint64, done);
    QFETCH(qint64, speed);
    const TransferFigures figures(total, done, speed);
    const QStringList texts{QStringLiteral("%1%").arg(figures.percent()), figures.amountText(QLocale::c()),
                            figures.speedText(QLocale::c()), figures.timeLeftText()};
    QTEST(texts.join(QLatin1Char('|')), "expected");
}

void HostCommonTest::partialFolder()
{
    QTemporaryDir parent;
    const auto put = [](const QString &path) { return QFile(path).open(QIODevice::WriteOnly); };
    {
        DownloadFolder folder;
        QVERIFY(!folder.create(parent.filePath(text("none"))) && !folder.errorText().isEmpty());
        QVERIFY(folder.create(parent.path()));
        QVERIFY(put(folder.filePath(text("{1}YDTMP_.mp4"))) && put(folder.filePath(text("{2}YDTMP_.m4a.part"))));
        QCOMPARE(folder.completeStreams(), 1);
        QVERIFY(!folder.isJoining());
        QVERIFY(put(folder.filePath(text("{2}YDTMP_.m4a"))) && put(folder.filePath(text("{1}YDTMP_.mp4.tmp.mp4"))));
        QCOMPARE(folder.completeStreams(), 2);
        QVERIFY(folder.isJoining());
        QCOMPARE(folder.release(text("missing"), parent.filePath(text("x"))), QString());
        QCOMPARE(folder.release(text("{2}YDTMP_.m4a"), parent.filePath(text("x.m4a"))), parent.filePath(text("x.m4a")));
        QVERIFY(QDir().mkpath(folder.filePath(text("sub/sub"))) && put(folder.filePath(text("sub/.hidden"))));
    }
    QCOMPARE(QDir(parent.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList(text("x.m4a")));
}

void HostCommonTest::toolMessages_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("excerpt");
    QTest::addColumn<bool>("isBroken");
    const auto row = [](const char *name, const QString &output, const QString &excerpt, bool isBroken = false) {
        QTest::newRow(name) << output << excerpt << isBroken;
    };
    const QString numbers = text("1\n2\n3\n4\n5\n6\n7\n8\n9");
    const QString smiley = text("\xf0\x9f\x98\x80");
    const char banner[] =
        "ffmpeg version 5.1.6-0+deb12u1 Copyright (c) 2000-2024 the FFmpeg developers\n"
        "  built with gcc 12\n  configuration: --enable-gpl\n  libavutil      57. 28.100\n"
        "Input #0, mov,mp4,m4a, from '/x.mp4':\n  Metadata:\n    title : ERROR\n  Duration: 00:00:09.00\n"
        "Stream mapping:\n  Stream #0:0 -> #0:0 (copy)\nPress [q] to stop, [?] for help\n";
    const char progress[] =
        "frame=  240 fps=8.8 q=29.0 size=    256kB time=00:00:07.90 bitrate= 268.3kbits/s speed=0.2x    \r"
        "size=     256kB time=00:00:07.90 bitrate=N/A speed=N/A    \r";
    row("nothing", {}, {});
    row("error and warning", text("WARNING: x\n\n ERROR: y\r\nz"), text("ERROR: y\nz"));
    row("warning alone", text("WARNING: x\n"), text("WARNING: x"));
    row("warning of two lines", text("WARNING: x\n         y\nz\nERROR: e\n"), text("ERROR: e"));
    row("deprecation", text("Deprecated Feature: old Python\nERROR: e\n"), text("ERROR: e"));
    row("error of two lines, then a warning", text("ERROR: e\n  more\nWARNING: w\n  x"), text("ERROR: e\nmore"));
    row("carriage returns", text("ERROR: a\rb\r\nc"), text("ERROR: a\nb\nc"));
    row("pieces of a line", text("ERROR: caf\xc3\xa9 \x1b[31mred"), text("ERROR: caf\xc3\xa9 [31mred"));
    row("last lines", numbers, numbers.mid(2));
    row("last characters", QString(700, QLatin1Char('x')), QChar(0x2026) + QString(599, QLatin1Char('x')));
    row("characters stay whole", smiley.repeated(301), QChar(0x2026) + smiley.repeated(299));
    row("progress alone", text(progress), {});
    row("progress without its beginning", text(" bitrate= 20.1kbits/s speed=1.2x\r0:01 bitrate=2kb/s\r"), {});
    row("ffmpeg's end", text(banner) + text(progress) + text("/x.m4a: Invalid data found\n"),
        text("/x.m4a: Invalid data found"));
    row("ffmpeg after a warning", text("WARNING: w\n") + text(banner) + text("No space left on device\n"),
        text("No space left on device"));
    row("encoder", text("[libx264 @ 0x55d0] frame I:3 Avg QP:1\n[aac @ 0x55] Qavg: 1\n[mov @ 0x5] no atom\n"),
        text("[mov @ 0x5] no atom"));
    row("hints of today",
        text("ERROR: Unsupported URL: http://x/; please report this issue on https://y/ , filling out "
             "the appropriate issue template. Confirm you are on the latest version using  z -U"),
        text("ERROR: Unsupported URL: http://x/"));
    row("hints of old",
        text("ERROR: no title; please report this issue on https://y/bug . Make sure you are using the "
             "latest version; see  https://y/update  on how to update. Be sure to call z with the "
             "--verbose flag and include its complete output."),
        text("ERROR: no title"));
    row("hint to a list", text("ERROR: Not available. Use --list-formats for a list of available formats"),
        text("ERROR: Not available."));
    row("traceback", text("Traceback (most recent call last):\n  File \"x\", line 1\n    a()\nValueError: bad\n"),
        text("ValueError: bad"));
    row("damaged", text("Traceback (most recent call last):\n  File \"x\"\nzlib.error: Error -3 while decompressing\n"),
        text("zlib.error: Error -3 while decompressing"), true);
    row("no code", text("  File \"yt.zip\", line 1\n    PK\nSyntaxError: Non-UTF-8 code\n"),
        text("File \"yt.zip\", line 1\nPK\nSyntaxError: Non-UTF-8 code"), true);
    row("empty archive", text("/p/python3.10: can't find '__main__' module in '/p/yt.zip'\n"),
        text("/p/python3.10: can't find '__main__' module in '/p/yt.zip'"), true);
    row("error of a page's script", text("ERROR: script: SyntaxError: x\n"), text("ERROR: script: SyntaxError: x"));
}

void HostCommonTest::toolMessages()
{
    QFETCH(QString, output);
    QTEST(ToolMessage::excerpt(output), "excerpt");
    QTEST(ToolMessage::tellsBrokenArchive(output), "isBroken");
    QVERIFY(!ToolMessage::tellsRefusedSettings(output));
    QCOMPARE(ToolMessage::unusedSettings(output), QString());
}

void HostCommonTest::joinProgress_data()
{
    QTest::addColumn<QStringList>("outputs");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<int>("seconds");
    const auto row = [](const char *expected, const QStringList &outputs, int seconds = 0) {
        QTest::newRow(expected) << outputs << text(expected) << seconds;
    };
    const QString durations = text("  Duration: 00:01:00.00, start\n  Duration: 00:01:40.50, start\n");
    row("unknown", {durations});
    row("0%|0:00:00 / 0:01:40||", {durations + text("size= 0kB time=00:00:00.00 bitrate= 0 speed=   0x\r")});
    row("50%|0:00:50 / 0:01:40|2.5x|0:00:21", {durations, text("time=00:00:50.25 bitrate=1 speed=2.5x\r")});
    row("99%|0:01:40 / 0:01:40|9.0x|0:00:01",
        {durations, text("time=00:01:40.00 bitrate=1 speed=9x\rtime=00:01:40.40 bitrate=1 speed=N/A")});
    row("0%|0:00:07|1.0x|", {text("time=00:00:07.00 bitrate=N/A speed=   1x\r")});
    row("0%|0:00:01||", {text("time=00:00:01.00 bitrate=N/A speed=0.0094x\r")});
    row("50%|0:00:20 / 0:00:40|2.0x|0:00:10", {text("  Duration: N/A, start\ntime=00:00:20.00 speed=2x\r")}, 40);
    row("51%|0:00:51 / 0:01:40||", {durations, text("time=00:00:51.80 speed=N/A\r")}, 40);
    row("0%|9999:00:00||", {text("time=9999:00:00 time=99999:00:00 time=N/A")});
}

void HostCommonTest::joinProgress()
{
    QFETCH(QStringList, outputs);
    QFETCH(int, seconds);
    JoinProgress progress(seconds);
    for (const QString &output : std::as_const(outputs))
        progress.read(output);
    const TransferFigures figures = progress.figures();
    const QStringList texts{QStringLiteral("%1%").arg(figures.percent()), figures.amountText(QLocale::c()),
                            figures.speedText(QLocale::c()), figures.timeLeftText()};
    QTEST(progress.isKnown() ? texts.join(QLatin1Char('|')) : text("unknown"), "expected");
}

void HostCommonTest::growth()
{
    GrowthMeter meter;
    QVERIFY(meter.figures().isEmpty());
    meter.add(1000, 0);
    QCOMPARE(meter.figures().amountText(QLocale::c()), text("1.0 kB"));
    QCOMPARE(meter.figures().speed(), 0);
    meter.add(3000, 1000);
    QCOMPARE(meter.figures().speed(), 2000);
    QCOMPARE(meter.figures().secondsLeft(), -1);
    meter.add(3000, 5500);
    meter.add(3000, 10500);
    QCOMPARE(meter.figures().speed(), 0); // the standstill counts, not what was before
    meter.add(0, 11000);                  // the tool has begun anew
    QCOMPARE(meter.figures().speed(), 0);
}

// Every code that the library reports says something of its own.
void HostCommonTest::failureTexts()
{
    QSet<QString> texts;
    for (const int code : {-1, -4, -5, -7, -8, -99})
        texts += FailureText::download(code, FailureText::During::Fetching);
    for (const int code : {-4, -5})
        texts += FailureText::download(code, FailureText::During::Joining);
    texts += FailureText::brokenTool();
    QCOMPARE(texts.size(), 9);
    texts.clear();
    for (const int code : {-1, 0, 1, 2, 3, 4, 5})
        texts += FailureText::extraction(code);
    QCOMPARE(texts.size(), 7);
    QVERIFY(FailureText::download(-99, FailureText::During::Fetching).contains(text("-99")));
}

QTEST_GUILESS_MAIN(HostCommonTest)
#include "HostCommonTest.moc"
