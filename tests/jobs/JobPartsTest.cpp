#include "tests/jobs/SampleStreams.h"
#include "tests/support/TextTable.h"
#include "tests/util/Rows.h"

#include <nox/jobs/Conversion.h>
#include <nox/jobs/Destination.h>
#include <nox/jobs/DownloadFolder.h>
#include <nox/jobs/DownloadRecord.h>
#include <nox/jobs/FailureText.h>
#include <nox/jobs/JoinProgress.h>
#include <nox/jobs/ServerWait.h>
#include <nox/jobs/StreamChoice.h>
#include <nox/jobs/StreamPreference.h>
#include <nox/jobs/StreamText.h>
#include <nox/jobs/TextSanitizer.h>
#include <nox/jobs/ToolMessage.h>
#include <nox/jobs/TransferFigures.h>
#include <nox/jobs/UrlCheck.h>

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QtTest>

using namespace Nox;

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

QString codes(const QList<MediaProfile> &streams)
{
    QStringList result;
    for (const MediaProfile &one : streams)
        result += one.getName();
    return result.join(QLatin1Char(' '));
}

QString shown(const TransferFigures &figures)
{
    const QStringList texts{"%1%"_s.arg(figures.percent()), figures.amountText(QLocale::c()),
                            figures.speedText(QLocale::c()), figures.timeLeftText()};
    return texts.join(QLatin1Char('|'));
}

} // namespace

/** The parts of the jobs, without any process. */
class JobPartsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void choice_data();
    void choice();
    void preferences_data();
    void preferences();
    void records();
    void conversions_data();
    void conversions();
    void streamTexts();
    void urls_data();
    void urls();
    void correctedUrls();
    void proposedNames_data();
    void proposedNames();
    void nameErrors();
    void figures_data();
    void figures();
    void partialFolder();
    void toolMessages_data();
    void toolMessages();
    void warnings();
    void joinProgress_data();
    void joinProgress();
    void serverWait();
    void tags();
    void failureTexts();
};

void JobPartsTest::choice_data()
{
    const TextTable row{"streams", "all", "thinned", "picked"}; // the best and its audio are picked
    row("none", "");
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

void JobPartsTest::choice()
{
    QFETCH(QString, streams);
    const StreamChoice choice(SampleStreams::page(streams));
    QTEST(codes(choice.all()), "all");
    QTEST(codes(choice.thinned()), "thinned");
    const MediaProfile best = choice.best();
    QTEST(codes({best, choice.audioFor(best)}).trimmed(), "picked");
}

void JobPartsTest::preferences_data()
{
    const TextTable row{"streams", "height", "audio", "picked"};
    const char streams[] =
        "x MP4 >1080p,h MP4 1920x1080 dash,m MP4 1280x720 dash,w WEBM 640x480 dash,a M4A 1K,o WEBM 9K";
    row("no limit", streams, "0", "", "x");
    row("label above the limit", streams, "1080", "", "h");
    row("between", streams, "1000", "", "m");
    row("what is converted, where nothing else is within the limit", streams, "500", "", "w");
    row("below all", streams, "100", "", "x");
    row("with the audio that is chosen", streams, "720", "o", "m"); // all of them must be converted: the largest
    row("with audio and no limit", streams, "0", "a", "h");
    row("sound alone", "a M4A 1K,o WEBM 9K", "720", "", "a");
    row("unknown size", "u MP4,h MP4 1920x1080", "720", "", "u");
    row("silence is no choice", "s MP4 640x360 dash,h MP4 1920x1080", "720", "", "h");
    row("nothing", "", "720", "", "");
}

void JobPartsTest::preferences()
{
    QFETCH(QString, streams);
    QFETCH(QString, height);
    QFETCH(QString, audio);
    const StreamChoice choice(SampleStreams::page(streams));
    QTEST(StreamPreference{height.toInt()}.pick(choice, choice.find(audio)).getName(), "picked");
}

void JobPartsTest::records()
{
    DownloadRecord record{"http://x/#nox-item=3"_s, SampleStreams::stream("137 MP4 1280x720 dash 3d +140"_s),
                          "/v/\xc3\xa9 \"1\".mp4"_s, 3725, SoundFormat::Mp3};
    record.stream.setSize(5000000000);
    const DownloadRecord read =
        DownloadRecord::fromJson(QJsonDocument::fromJson(QJsonDocument(record.toJson()).toJson()).object());
    QCOMPARE(read.toJson(), record.toJson());
    QVERIFY(read.isComplete() && read.hasSameStreams(record) && read.stream == record.stream);
    QVERIFY(read.stream.isDash() && read.stream.is3D() && read.stream.getSize() == 5000000000);
    QCOMPARE(StreamText::label(read.stream), "720P"_s);
    for (const QString &key : record.toJson().keys()) { // each of them counts
        QJsonObject damaged = record.toJson();
        damaged.insert(key, QJsonArray());
        const bool isNeeded = key != "duration"_s && key != "sound"_s;
        QVERIFY2(DownloadRecord::fromJson(damaged).isComplete() != isNeeded, qPrintable(key));
    }
}

void JobPartsTest::conversions_data()
{
    QTest::addColumn<QString>("video");
    QTest::addColumn<QString>("audio");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("warning"); // for an hour; "|" between texts that must be there
    const auto row = [](const char *video, const char *audio, Conversion::Kind kind, const char *warning) {
        QTest::newRow(qPrintable(text(video) + " + "_s + text(audio)))
            << text(video) << text(audio) << int(kind) << text(warning);
    };
    row("v WEBM 1280x720", "a M4A 1K", Conversion::None, "");
    row("v WEBM 1280x720 dash", "", Conversion::None, "");
    row("v MP4 1280x720 dash", "a M4A 1K", Conversion::None, "");
    row("v MP4 1280x720 dash", "a WEBM 1K", Conversion::Sound, "audio must be converted|: 2 min.");
    row("v WEBM 1280x720 dash", "a M4A 1K", Conversion::Picture, "takes long|Rough estimate");
    row("v WEBM dash", "a M4A 1K", Conversion::Picture, "takes long");
    row("v WEBM 20000x20000 dash", "a M4A 1K", Conversion::Picture, " h.");
}

void JobPartsTest::conversions()
{
    QFETCH(QString, video);
    QFETCH(QString, audio);
    QFETCH(QString, warning);
    const MediaProfile picture = SampleStreams::stream(video);
    const Conversion::Kind kind = Conversion::needed(picture, SampleStreams::stream(audio));
    QTEST(int(kind), "kind");
    QCOMPARE(Conversion::mark(kind), kind == Conversion::None ? QString() : "slow: must be converted"_s);
    const QString words = Conversion::warning(kind, picture, 3600);
    QCOMPARE(words.isEmpty(), warning.isEmpty());
    for (const QString &part : warning.split(QLatin1Char('|')))
        QVERIFY2(words.contains(part), qPrintable(words));
    const qint64 one = Conversion::roughSeconds(kind, picture, 3600, 1);
    const qint64 many = Conversion::roughSeconds(kind, picture, 3600, 64);
    QCOMPARE(many < one, warning.contains("takes long|"_s) || warning == " h."_s);
    QCOMPARE(Conversion::roughSeconds(kind, picture, 0, 1), qint64(-1));
    QVERIFY(Conversion::roughSeconds(kind, picture, std::numeric_limits<qint64>::max(), 1) < 2000000000);
}

void JobPartsTest::streamTexts()
{
    const auto described = [](const char *words) {
        const MediaProfile one = SampleStreams::stream(text(words));
        return QStringList{StreamText::kind(one), StreamText::label(one), StreamText::marks(one)}.join(
            QLatin1Char('|'));
    };
    QCOMPARE(described("1 MP4 1280x720"), "video|720P|"_s);
    QCOMPARE(described("1 MP4 1280x720 dash 3d"), "3D video only|720P|DASH 3D"_s);
    QCOMPARE(described("1 MP4"), "video||"_s);
    QCOMPARE(described("1 M4A 128K"), "audio|128K|DASH"_s);
    QCOMPARE(described("1 M4A 0K"), "audio||DASH"_s);
    QCOMPARE(described("1 MP4 1920x1080 1080p60"), "video|1080P60|"_s);
    QCOMPARE(described("1 MP4 640x480"), "video|640x480|"_s);
    MediaProfile written = SampleStreams::stream("1 MP4 1280x720 dash"_s);
    written.setOriResStr("1280x720 extra"_s);
    QCOMPARE(StreamText::label(written), "1280x720 EXTRA"_s);

    const auto streams =
        SampleStreams::page("a M4A 128K,b M4A 128K,c M4A 64K,d FLV,e FLV,f MP4 640x360"_s).getMediaProfileList();
    QCOMPARE(StreamText::labels(streams).join(QLatin1Char('|')), "128K (a)|128K (b)|64K|d|e|360P"_s);
    QStringList words;
    for (const MediaProfile &one : streams)
        words += StreamText::description(one);
    words += StreamText::description(written);
    QCOMPARE(words.mid(1).join(QLatin1Char('|')),
             "sound only, 128 kbit/s|sound only, 64 kbit/s|with sound|with sound|360p, with sound|"
             "720p, without sound"_s);
    const QString joinedSigns = "\xf0\x9f\x91\xa9\xe2\x80\x8d\xf0\x9f\x94\xac"_s; // one sign made of two
    QCOMPARE(TextSanitizer::line(" a\x1b[31m\tb\n"_s + QChar(0x202e) + joinedSigns + QChar(0xd800)),
             "a [31m b "_s + joinedSigns);
}

void JobPartsTest::urls_data()
{
    const TextTable table{"url", "words"}; // part of the reason; empty for a good address
    const auto row = [&table](const char *url, const char *words = "") { table(url, url, words); };
    row("http://a");
    row("https://a.b:80/c?d=e&f=%20#g");
    row("https://a/\xc3\xa9");
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

void JobPartsTest::correctedUrls()
{
    const auto corrected = [](const char *typed) { return UrlCheck::corrected(text(typed)); };
    QCOMPARE(corrected(" HTTP://A/B'c'\n"), "http://A/B%27c%27"_s);
    QCOMPARE(corrected("Https://a/?u=HTTP://b"), "https://a/?u=HTTP://b"_s);
    QCOMPARE(corrected("www.a.b/c"), "https://www.a.b/c"_s);
    for (const char *unclear : {"", "a.b", "ftp://www.a", "http:/a", "http://a b", "http://a/\"", "--www.a"})
        QCOMPARE(corrected(unclear), text(unclear));
}

void JobPartsTest::urls()
{
    QFETCH(QString, url);
    QFETCH(QString, words);
    const QString error = UrlCheck::errorString(url);
    QCOMPARE(error.isEmpty(), words.isEmpty());
    QVERIFY2(error.contains(words), qPrintable(error));
}

void JobPartsTest::proposedNames_data()
{
    const TextTable row{"title", "stream", "name"};
    const QByteArray longName(400, 'n');
    const QByteArray sign = "\xf0\x9f\x98\x80";
    row("plain", "A clip", "1 MP4 9x9", "A clip.mp4");
    row("other container", "A clip", "1 WEBM 9x9 dash", "A clip.webm");
    row("container that is no suffix", "A clip", "1 ../X 9x9", "A clip.x");
    row("container of signs", "A clip", "1 :/ 9x9", "A clip.media");
    row("forbidden", "a/b:c", "1 MP4 9x9", "a b c.mp4");
    row("control characters", "a\x1b\nb", "1 MP4 9x9", "a b.mp4");
    row("dots at the end", "Wait...", "1 MP4 9x9", "Wait.mp4");
    row("hidden, like an option", "..-rf . x", "1 MP4 9x9", "rf . x.mp4");
    row("nothing left", " .. ", "1 MP4 9x9", "video.mp4");
    row("no title", "", "1 M4A 9K", "audio.m4a");
    row("taken", "Taken", "1 MP4 9x9", "Taken(2).mp4");
    row("too long", longName, "1 MP4 9x9", longName.left(227) + ".mp4");
    row("too many bytes", sign.repeated(100), "1 MP4 9x9", sign.repeated(58) + ".mp4");
}

void JobPartsTest::proposedNames()
{
    QFETCH(QString, title);
    QFETCH(QString, stream);
    QTemporaryDir folder;
    QVERIFY(QFile(folder.filePath("Taken.mp4"_s)).open(QIODevice::WriteOnly));
    const QString path = Destination::proposed(SampleStreams::page({}, title), SampleStreams::stream(stream),
                                               folder.path(), {folder.filePath("Taken(1).mp4"_s)});
    QTEST(QFileInfo(path).fileName(), "name");
    QCOMPARE(Destination::errorString(path), QString());

    QCOMPARE(Destination::suffix(SampleStreams::stream("1 WEBM 9x9 dash +2"_s), SoundFormat::Mp3), "mp4"_s);
    QCOMPARE(Destination::suffix(SampleStreams::stream("1 M4A 9K"_s), SoundFormat::Mp3), "mp3"_s);
}

void JobPartsTest::nameErrors()
{
    QTemporaryDir folder;
    const auto error = [&](const QString &name) { return Destination::errorString(folder.filePath(name)); };
    QVERIFY(QFile(folder.filePath("taken"_s)).open(QIODevice::WriteOnly));
    QVERIFY(QFile::link("nowhere"_s, folder.filePath("dangling"_s)));
    QCOMPARE(Destination::free(folder.filePath("taken"_s)), folder.filePath("taken(1)"_s));

    QCOMPARE(error("good (1).mp4"_s), QString());
    for (const char *name : {"50% off", "a%(id)s", "100%%", "5 $ a", "$HOME", "a${B}", "line\nline"})
        QVERIFY(QDir(folder.path()).mkdir(text(name)));
    QCOMPARE(error("50% off/a%(id)s.mp4"_s), QString());
    QCOMPARE(error("5 $ a/a"_s), QString());
    QCOMPARE(error(QString(247, QLatin1Char('x'))), QString());
    const struct {
        QString name;
        const char *words;
    } rows[] = {
        {"sub/"_s, "needs a name"},
        {QString(248, QLatin1Char('x')), "247"},
        {"\xe6\x97\xa5"_s.repeated(86), "255 bytes"},
        {"a."_s, "dot"},
        {"a?"_s, "must not contain"},
        {"taken"_s, "exists already"},
        {"dangling"_s, "exists already"},
        {"none/a"_s, "does not exist"},
        {"taken/a"_s, "not a folder"},
        {"a%(id)s/a"_s, "cannot be used"},
        {"100%%/a"_s, "cannot be used"},
        {"$HOME/a"_s, "a $"},
        {"a${B}/a"_s, "a $"},
        {"line\nline/a"_s, "line line\" cannot be used: its name contains a line break"},
    };
    for (const auto &row : rows) {
        const QString words = error(row.name);
        QVERIFY2(words.contains(text(row.words)), qPrintable(row.name + ": "_s + words));
    }
    QVERIFY(Destination::errorString(folder.path()).contains("is a folder"_s));
    QVERIFY(Destination::errorString(QString()).contains("needs a name"_s));
}

void JobPartsTest::figures_data()
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

void JobPartsTest::figures()
{
    QFETCH(qint64, total);
    QFETCH(qint64, done);
    QFETCH(qint64, speed);
    QTEST(shown(TransferFigures(total, done, speed)), "expected");
}

void JobPartsTest::partialFolder()
{
    QTemporaryDir parent;
    const auto put = [](const QString &path) { return QFile(path).open(QIODevice::WriteOnly); };
    {
        DownloadFolder folder;
        QVERIFY(!folder.create(parent.filePath("none"_s)) && !folder.errorText().isEmpty());
        QVERIFY(folder.create(parent.path()));
        QVERIFY(put(folder.filePath("{1}YDTMP_.mp4"_s)) && put(folder.filePath("{2}YDTMP_.m4a.part"_s)));
        QCOMPARE(folder.completeStreams(), 1);
        QVERIFY(!folder.isJoining());
        QVERIFY(put(folder.filePath("{2}YDTMP_.m4a"_s)) && put(folder.filePath("{1}YDTMP_.mp4.tmp.mp4"_s)));
        QCOMPARE(folder.completeStreams(), 2);
        QVERIFY(folder.isJoining());
        QCOMPARE(folder.release("missing"_s, parent.filePath("x"_s)), QString());
        QCOMPARE(folder.release("{2}YDTMP_.m4a"_s, parent.filePath("x.m4a"_s)), parent.filePath("x.m4a"_s));
        QVERIFY(QFile::link(parent.filePath("nowhere"_s), parent.filePath("y.mp4"_s)));
        QCOMPARE(folder.release("{1}YDTMP_.mp4"_s, parent.filePath("y.mp4"_s)), parent.filePath("y(1).mp4"_s));
        QVERIFY(QDir().mkpath(folder.filePath("sub/sub"_s)) && put(folder.filePath("sub/.hidden"_s)));
    }
    QCOMPARE(QDir(parent.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot | QDir::System),
             (QStringList{"x.m4a"_s, "y(1).mp4"_s, "y.mp4"_s}));
}

void JobPartsTest::toolMessages_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("excerpt");
    QTest::addColumn<Job::Error>("error");
    const auto row = [](const char *name, const QString &output, const QString &excerpt,
                        Job::Error error = Job::OtherError) { QTest::newRow(name) << output << excerpt << error; };
    const QString numbers = "1\n2\n3\n4\n5\n6\n7\n8\n9"_s;
    const QString smiley = "\xf0\x9f\x98\x80"_s;
    const char banner[] =
        "ffmpeg version 5.1.6-0+deb12u1 Copyright (c) 2000-2024 the FFmpeg developers\n"
        "  built with gcc 12\n  configuration: --enable-gpl\n  libavutil      57. 28.100\n"
        "Input #0, mov,mp4,m4a, from '/x.mp4':\n  Metadata:\n    title : ERROR\n  Duration: 00:00:09.00\n"
        "Stream mapping:\n  Stream #0:0 -> #0:0 (copy)\nPress [q] to stop, [?] for help\n";
    const char progress[] =
        "frame=  240 fps=8.8 q=29.0 size=    256kB time=00:00:07.90 bitrate= 268.3kbits/s speed=0.2x    \r"
        "size=     256kB time=00:00:07.90 bitrate=N/A speed=N/A    \r";
    row("nothing", {}, {});
    row("error and warning", "WARNING: x\n\n ERROR: y\r\nz"_s, "ERROR: y\nz"_s);
    row("warning alone", "WARNING: x\n"_s, "WARNING: x"_s);
    row("warning of two lines", "WARNING: x\n         y\nz\nERROR: e\n"_s, "ERROR: e"_s);
    row("deprecation", "Deprecated Feature: old Python\nERROR: e\n"_s, "ERROR: e"_s);
    row("error of two lines, then a warning", "ERROR: e\n  more\nWARNING: w\n  x"_s, "ERROR: e\nmore"_s);
    row("carriage returns", "ERROR: a\rb\r\nc"_s, "ERROR: a\nb\nc"_s);
    row("pieces of a line", "ERROR: caf\xc3\xa9 \x1b[31mred"_s, "ERROR: caf\xc3\xa9 [31mred"_s);
    row("last lines", numbers, numbers.mid(2));
    row("last characters", QString(700, QLatin1Char('x')), QChar(0x2026) + QString(599, QLatin1Char('x')));
    row("characters stay whole", smiley.repeated(301), QChar(0x2026) + smiley.repeated(299));
    row("progress alone", text(progress), {});
    row("progress without its beginning", " bitrate= 20.1kbits/s speed=1.2x\r0:01 bitrate=2kb/s\r"_s, {});
    row("ffmpeg's end", text(banner) + text(progress) + "/x.m4a: Invalid data found\n"_s,
        "/x.m4a: Invalid data found"_s);
    row("ffmpeg after a warning", "WARNING: w\n"_s + text(banner) + "No space left on device\n"_s,
        "No space left on device"_s);
    row("encoder", "[libx264 @ 0x55d0] frame I:3 Avg QP:1\n[aac @ 0x55] Qavg: 1\n[mov @ 0x5] no atom\n"_s,
        "[mov @ 0x5] no atom"_s);
    row("hints of today",
        "ERROR: Unsupported URL: http://x/; please report this issue on https://y/ , filling out "
        "the appropriate issue template. Confirm you are on the latest version using  z -U"_s,
        "ERROR: Unsupported URL: http://x/"_s);
    row("hints of old",
        "ERROR: no title; please report this issue on https://y/bug . Make sure you are using the "
        "latest version; see  https://y/update  on how to update. Be sure to call z with the "
        "--verbose flag and include its complete output."_s,
        "ERROR: no title"_s);
    row("hint to a list", "ERROR: Not available. Use --list-formats for a list of available formats"_s,
        "ERROR: Not available."_s);
    row("traceback", "Traceback (most recent call last):\n  File \"x\", line 1\n    a()\nValueError: bad\n"_s,
        "ValueError: bad"_s);
    row("damaged", "Traceback (most recent call last):\n  File \"x\"\nzlib.error: Error -3 while decompressing\n"_s,
        "zlib.error: Error -3 while decompressing"_s, Job::ToolBroken);
    row("no code", "  File \"yt.zip\", line 1\n    PK\nSyntaxError: Non-UTF-8 code\n"_s,
        "File \"yt.zip\", line 1\nPK\nSyntaxError: Non-UTF-8 code"_s, Job::ToolBroken);
    row("empty archive", "/p/python3.10: can't find '__main__' module in '/p/yt.zip'\n"_s,
        "/p/python3.10: can't find '__main__' module in '/p/yt.zip'"_s, Job::ToolBroken);
    row("tag", "WARNING: w\nERROR: [nox:login] Log in\n  here\nERROR: e\nNOTE: old\nWARNING: v\n"_s,
        "ERROR: Log in\nhere\nERROR: e\nNOTE: old"_s, Job::LoginNeeded);
    row("unknown tag", "ERROR: [nox:odd] e\n"_s, "ERROR: e"_s);
    row("tag in a text", "ERROR: [x] title\nERROR: [nox:login] e\n"_s, "ERROR: [x] title\nERROR: e"_s);
    row("tag within a line", "ERROR: [x] [nox:login] e\n"_s, "ERROR: [x] [nox:login] e"_s);
    row("tag without its word", "[nox:login] e\n"_s, "[nox:login] e"_s);
    row("error of a page's script", "ERROR: script: SyntaxError: x\n"_s, "ERROR: script: SyntaxError: x"_s);
}

void JobPartsTest::toolMessages()
{
    QFETCH(QString, output);
    QTEST(ToolMessage::excerpt(output), "excerpt");
    QTEST(ToolMessage::error(output), "error");
}

void JobPartsTest::warnings()
{
    const QString output = "WARNING: a\n  b\n\nWARNING: c\n"
                           "Deprecated Feature: d\n  e\nWARNING: [nox:waiting] f\nERROR: g\nWARNING: c\nh\n"_s;
    QCOMPARE(ToolMessage::warnings(output), (QStringList{"a b"_s, "c"_s, "c h"_s}));
}

void JobPartsTest::joinProgress_data()
{
    QTest::addColumn<QStringList>("outputs");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<int>("seconds");
    const auto row = [](const char *expected, const QStringList &outputs, int seconds = 0) {
        QTest::newRow(expected) << outputs << text(expected) << seconds;
    };
    const QString durations = "  Duration: 00:01:00.00, start\n  Duration: 00:01:40.50, start\n"_s;
    row("unknown", {durations});
    row("0%|0:00:00 / 0:01:40||", {durations + "size= 0kB time=00:00:00.00 bitrate= 0 speed=   0x\r"_s});
    row("50%|0:00:50 / 0:01:40|2.5x|0:00:21", {durations, "time=00:00:50.25 bitrate=1 speed=2.5x\r"_s});
    row("99%|0:01:40 / 0:01:40|9.0x|0:00:01",
        {durations, "time=00:01:40.00 bitrate=1 speed=9x\rtime=00:01:40.40 bitrate=1 speed=N/A"_s});
    row("0%|0:00:07|1.0x|", {"time=00:00:07.00 bitrate=N/A speed=   1x\r"_s});
    row("0%|0:00:01||", {"time=00:00:01.00 bitrate=N/A speed=0.0094x\r"_s});
    row("50%|0:00:20 / 0:00:40|2.0x|0:00:10", {"  Duration: N/A, start\ntime=00:00:20.00 speed=2x\r"_s}, 40);
    row("51%|0:00:51 / 0:01:40||", {durations, "time=00:00:51.80 speed=N/A\r"_s}, 40);
    row("0%|9999:00:00||", {"time=9999:00:00 time=99999:00:00 time=N/A"_s});
}

void JobPartsTest::joinProgress()
{
    QFETCH(QStringList, outputs);
    QFETCH(int, seconds);
    JoinProgress progress(seconds);
    for (const QString &output : std::as_const(outputs))
        progress.read(output);
    QTEST(progress.isKnown() ? shown(progress.figures()) : "unknown"_s, "expected");
}

// A notice stands until bytes come; the same one may come again.
void JobPartsTest::serverWait()
{
    const QString notice = "WARNING: [nox:waiting] The server does not answer. Trying again in 4 s (3 of 6)\n"_s;
    ServerWait wait;
    QVERIFY(!wait.read("WARNING: [nox:waiting] half a li"_s, 10));
    QVERIFY(wait.read(notice, 10) && wait.text().contains("4 s (3 of 6)"_s));
    QVERIFY(!wait.read(notice, 10));
    QVERIFY(wait.read(notice, 11) && wait.text().isEmpty());
    QVERIFY(wait.read(notice + "x\n"_s + notice, 11) && !wait.text().isEmpty());
    QVERIFY(!wait.read({}, 11)); // the end of the output is what is kept
}

// The list in the tool's front and the table here are the same.
void JobPartsTest::tags()
{
    QFile file(QStringLiteral(NOX_TOOL_TAGS));
    QVERIFY(file.open(QIODevice::ReadOnly));
    static const QRegularExpression constant("^[A-Z_]+ = \"([a-z-]+)\"$"_s, QRegularExpression::MultilineOption);
    QStringList tags;
    for (auto matches = constant.globalMatch(text(file.readAll().constData())); matches.hasNext();)
        tags += matches.next().captured(1);
    tags.sort();
    QCOMPARE(ToolMessage::tags(), tags);
    QSet<int> errors;
    for (const QString &tag : std::as_const(tags)) {
        const Job::Error error = ToolMessage::errorOfTag(tag);
        errors += error;
        QCOMPARE(FailureText::cause(error).isEmpty(), tag == "other"_s);
    }
    QCOMPARE(errors.size(), tags.size());
    QCOMPARE(ToolMessage::errorOfTag("odd"_s), Job::OtherError);
}

// Every code that the library reports has a text of its own.
void JobPartsTest::failureTexts()
{
    QSet<QString> texts;
    for (const int code : {-1, -4, -5, -7, -8, -99})
        texts += FailureText::download(code, false);
    for (const int code : {-4, -5})
        texts += FailureText::download(code, true);
    QCOMPARE(texts.size(), 8);
    texts.clear();
    for (const int code : {-1, 0, 1, 2, 3, 4, 5})
        texts += FailureText::extraction(code);
    QCOMPARE(texts.size(), 7);
    QVERIFY(FailureText::download(-99, false).contains("-99"_s));
}

QTEST_GUILESS_MAIN(JobPartsTest)
#include "JobPartsTest.moc"
