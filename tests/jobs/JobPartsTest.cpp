#include "tests/jobs/SampleStreams.h"
#include "tests/util/Files.h"
#include "tests/util/Rows.h"

#include <nox/jobs/Destination.h>
#include <nox/jobs/DownloadRecord.h>
#include <nox/jobs/FailureText.h>
#include <nox/jobs/JoinProgress.h>
#include <nox/jobs/ToolMessage.h>
#include <nox/jobs/ToolSetup.h>
#include <nox/jobs/TransferFigures.h>
#include <nox/jobs/UrlCheck.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace Nox;

namespace {

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
    void records();
    void urls_data();
    void urls();
    void proposedNames_data();
    void proposedNames();
    void nameErrors();
    void figures();
    void toolMessages_data();
    void toolMessages();
    void joinProgress();
    void tags();
    void ownTool();
    void bytecodeFolder();
    void environment();
};

void JobPartsTest::records()
{
    DownloadRecord record{"http://x/#nox-item=3"_s, SampleStreams::stream("137 MP4 1280x720 dash 3d +140"_s),
                          "/v/\xc3\xa9 \"1\".mp4"_s, 3725, SoundFormat::Mp3};
    record.stream.setSize(5000000000);
    const DownloadRecord read =
        DownloadRecord::fromJson(QJsonDocument::fromJson(QJsonDocument(record.toJson()).toJson()).object());
    QCOMPARE(read.toJson(), record.toJson());
    QVERIFY(read.stream == record.stream && read.stream.is3D() && read.stream.getSize() == 5000000000);
    QVERIFY(read.duration == 3725 && read.sound == SoundFormat::Mp3);
    for (const QString &key : record.toJson().keys()) { // each of them counts
        QJsonObject damaged = record.toJson();
        damaged.insert(key, QJsonArray());
        const bool isNeeded = key != "duration"_s && key != "sound"_s;
        QVERIFY2(DownloadRecord::fromJson(damaged).isComplete() != isNeeded, qPrintable(key));
    }
    QJsonObject odd = record.toJson();
    odd.insert("stream"_s, QJsonObject{{"code"_s, "1"_s}, {"width"_s, 1e99}, {"height"_s, "x"_s}, {"size"_s, -1e300}});
    const MediaProfile stream = DownloadRecord::fromJson(odd).stream;
    QVERIFY(stream.getSize() == 0 && !stream.getVResolution().isValid());
    odd.insert("destination"_s, "relative"_s);
    QVERIFY(!DownloadRecord::fromJson(odd).isComplete());
}

void JobPartsTest::urls_data()
{
    // What becomes of an address that somebody types, and part of the reason why it cannot be used, if it cannot.
    const TextTable row{"typed", "corrected", "error"};
    row("long", "https://a.b:80/c?d=e&f=%20#\xc3\xa9", "https://a.b:80/c?d=e&f=%20#\xc3\xa9");
    row("capitals, single quotes", " HTTP://A/B'c'\n", "http://A/B%27c%27");
    row("only the scheme is changed", "Https://a/?u=HTTP://b", "https://a/?u=HTTP://b");
    row("no scheme", "www.a.b/c", "https://www.a.b/c");
    row("nor www", "a-b.example:80/c", "https://a-b.example:80/c");
    row("nothing", "", "", "no address");
    row("option", "--exec=x http://www.a", "--exec=x http://www.a", "http://");
    row("no name", "http://", "http://", "incomplete");
    row("blank", "http://a http://b", "http://a http://b", "blanks");
    row("other blank", "http://a\xc2\xa0--x", "http://a\xc2\xa0--x", "blanks");
    row("quotes", "http://a/\"b", "http://a/\"b", "quotes");
}

void JobPartsTest::urls()
{
    QFETCH(QString, typed);
    QFETCH(QString, error);
    const QString corrected = UrlCheck::corrected(typed);
    QTEST(corrected, "corrected");
    const QString message = UrlCheck::errorString(corrected);
    QCOMPARE(message.isEmpty(), error.isEmpty());
    QVERIFY2(message.contains(error), qPrintable(message));
    QVERIFY(UrlCheck::errorString("http://a/'b"_s).contains("quotes"_s)); // which are corrected above
}

void JobPartsTest::proposedNames_data()
{
    const TextTable row{"title", "stream", "name"};
    const QByteArray longName(400, 'n');
    const QByteArray sign = "\xf0\x9f\x98\x80";
    row("joined", "A clip", "1 WEBM 9x9 dash +2", "A clip.mp4");
    row("container that is no suffix", "A clip", "1 ../X 9x9", "A clip.x");
    row("container of signs", "A clip", "1 :/ 9x9", "A clip.media");
    row("forbidden", "a/b:c", "1 MP4 9x9", "a b c.mp4");
    row("control characters", "a\x1b\nb", "1 MP4 9x9", "a b.mp4");
    row("dots at the end", "Wait...", "1 MP4 9x9", "Wait.mp4");
    row("hidden, like an option", "..-rf . x", "1 MP4 9x9", "rf . x.mp4");
    row("nothing left", " .. ", "1 MP4 9x9", "video.mp4");
    row("no title, sound as MP3", "", "1 M4A 9K", "audio.mp3");
    row("taken", "Taken", "1 MP4 9x9", "Taken(2).mp4");
    row("too long", longName, "1 MP4 9x9", longName.left(227) + ".mp4");
    row("too many bytes", sign.repeated(100), "1 MP4 9x9", sign.repeated(58) + ".mp4");
}

void JobPartsTest::proposedNames()
{
    QFETCH(QString, title);
    QFETCH(QString, stream);
    QTemporaryDir folder;
    Files::write(folder.filePath("Taken.mp4"_s));
    const QString path = Destination::proposed(SampleStreams::page({}, title), SampleStreams::stream(stream),
                                               folder.path(), {folder.filePath("Taken(1).mp4"_s)}, SoundFormat::Mp3);
    QTEST(QFileInfo(path).fileName(), "name");
    QCOMPARE(Destination::errorString(path), QString());
}

void JobPartsTest::nameErrors()
{
    QTemporaryDir folder;
    Files::write(folder.filePath("taken"_s));
    QVERIFY(QFile::link("nowhere"_s, folder.filePath("dangling"_s)));
    QCOMPARE(Destination::free(folder.filePath("taken"_s)), folder.filePath("taken(1)"_s));
    for (const QString &name : {"50% off"_s, "a%(id)s"_s, "100%%"_s, "5 $ a"_s, "$HOME"_s, "a${B}"_s, "line\nline"_s})
        QVERIFY(QDir(folder.path()).mkdir(name));
    const std::pair<QString, QString> rows[] = {
        // part of the error, empty if the file can be made
        {"50% off/a%(id)s.mp4"_s, {}},
        {"5 $ a/a"_s, {}},
        {QString(247, QLatin1Char('x')), {}},
        {QString(248, QLatin1Char('x')), "247"_s},
        {"\xe6\x97\xa5"_s.repeated(86), "255 bytes"_s},
        {"sub/"_s, "needs a name"_s},
        {"a."_s, "dot"_s},
        {"a?"_s, "must not contain"_s},
        {"dangling"_s, "exists already"_s},
        {"5 $ a"_s, "is a folder"_s},
        {"taken/a"_s, "not a folder"_s},
        {"a%(id)s/a"_s, "cannot be used"_s},
        {"100%%/a"_s, "cannot be used"_s},
        {"$HOME/a"_s, "a $"_s},
        {"a${B}/a"_s, "a $"_s},
        {"line\nline/a"_s, R"(line line" cannot be used: its name contains a line break)"_s},
    };
    for (const auto &[path, expected] : rows) {
        const QString error = Destination::errorString(folder.filePath(path));
        QVERIFY2(error.contains(expected), qPrintable(path + ": "_s + error));
        QCOMPARE(error.isEmpty(), expected.isEmpty());
    }
    QVERIFY(Destination::availableBytes(folder.path()) > 0);
    for (const QString &unknown : {folder.filePath("none"_s), "/proc"_s}) // the latter has no size
        QCOMPARE(Destination::availableBytes(unknown), qint64(-1));
}

void JobPartsTest::figures()
{
    const qint64 huge = std::numeric_limits<qint64>::max();
    QCOMPARE(shown({-1, -5, 7}), "0%||7 bytes/s|"_s);
    QCOMPARE(shown({3000, 2999, 0}), "99%|3.0 kB / 3.0 kB||"_s);
    QCOMPARE(shown({1000, 2000, 1}), "100%|1.0 kB / 1.0 kB|1 bytes/s|0:00:00"_s);
    QCOMPARE(shown({36610000, 0, 1000}), "0%|0 bytes / 36.6 MB|1.0 kB/s|10:10:10"_s);
    QCOMPARE(shown({huge, huge - 1, huge}), "99%|9.2 EB / 9.2 EB|9.2 EB/s|0:00:01"_s);
}

void JobPartsTest::toolMessages_data()
{
    const TextTable row{"output", "excerpt", "error"}; // the error is OtherError where it is left out
    const QByteArray numbers = "1\n2\n3\n4\n5\n6\n7\n8\n9";
    const QByteArray smiley = "\xf0\x9f\x98\x80";
    const char banner[] =
        "ffmpeg version 5.1.6 Copyright (c) 2000-2024 the FFmpeg developers\n  configuration: --enable-gpl\n"
        "Input #0, mov,mp4,m4a, from '/x.mp4':\n  Metadata:\n    title : ERROR\n"
        "Stream mapping:\n  Stream #0:0 -> #0:0 (copy)\nPress [q] to stop, [?] for help\n";
    const char progress[] =
        "frame=  240 fps=8.8 q=29.0 size=    256kB time=00:00:07.90 bitrate= 268.3kbits/s speed=0.2x    \r"
        "size=     256kB time=00:00:07.90 bitrate=N/A speed=N/A    \r";
    row("error and warning", "WARNING: x\n\n ERROR: y\r\nz", "ERROR: y\nz");
    row("warning alone", "WARNING: x\n", "WARNING: x");
    row("error of two lines, then a warning", "ERROR: e\n  more\nWARNING: w\n  x", "ERROR: e\nmore");
    row("carriage returns, escape sequences", "ERROR: a\rcaf\xc3\xa9 \x1b[31mred\r\nc",
        "ERROR: a\ncaf\xc3\xa9 [31mred\nc");
    row("last lines", numbers, numbers.mid(2));
    row("last characters, which stay whole", smiley.repeated(301), "\xe2\x80\xa6" + smiley.repeated(299));
    row("progress without its beginning", " bitrate= 20.1kbits/s speed=1.2x\r0:01 bitrate=2kb/s\r", "");
    row("ffmpeg's end", banner + QByteArray(progress) + "/x.m4a: Invalid data found\n", "/x.m4a: Invalid data found");
    row("encoder", "[libx264 @ 0x55d0] frame I:3 Avg QP:1\n[aac @ 0x55] Qavg: 1\n[mov @ 0x5] no atom\n",
        "[mov @ 0x5] no atom");
    row("hints of today",
        "ERROR: Unsupported URL: http://x/; please report this issue on https://y/ , filling out "
        "the appropriate issue template. Confirm you are on the latest version using  z -U",
        "ERROR: Unsupported URL: http://x/");
    row("hints of old",
        "ERROR: no title; Make sure you are using the latest version; see  https://y/update  on how to update. "
        "Use --list-formats for a list. Be sure to call z with the --verbose flag and include its complete output.",
        "ERROR: no title");
    row("traceback", "Traceback (most recent call last):\n  File \"x\", line 1\n    a()\nValueError: bad\n",
        "ValueError: bad");
    row("damaged", "Traceback (most recent call last):\n  File \"x\"\nzlib.error: Error -3 while decompressing\n",
        "zlib.error: Error -3 while decompressing", "ToolBroken");
    row("no code", "  File \"yt.zip\", line 1\n    PK\nSyntaxError: Non-UTF-8 code\n",
        "File \"yt.zip\", line 1\nPK\nSyntaxError: Non-UTF-8 code", "ToolBroken");
    row("empty archive", "/p/python3.10: can't find '__main__' module in '/p/yt.zip'\n",
        "/p/python3.10: can't find '__main__' module in '/p/yt.zip'", "ToolBroken");
    row("tag", "WARNING: w\nERROR: [nox:login] Log in\n  here\nERROR: e\nNOTE: old\nWARNING: v\n",
        "ERROR: Log in\nhere\nERROR: e\nNOTE: old", "LoginNeeded");
    row("unknown tag", "ERROR: [nox:odd] e\n", "ERROR: e");
    row("tag in a text", "ERROR: [x] title\nERROR: [nox:login] e\n", "ERROR: [x] title\nERROR: e");
    row("tag within a line", "ERROR: [x] [nox:login] e\n", "ERROR: [x] [nox:login] e");
    row("error of a page's script", "ERROR: script: SyntaxError: x\n", "ERROR: script: SyntaxError: x");
}

void JobPartsTest::toolMessages()
{
    QFETCH(QString, output);
    QFETCH(QString, error);
    QTEST(ToolMessage::excerpt(output), "excerpt");
    QCOMPARE(nameOf(ToolMessage::error(output)), error.isEmpty() ? "OtherError"_s : error);
}

void JobPartsTest::joinProgress()
{
    const auto read = [](const QStringList &outputs, int seconds = 0) {
        JoinProgress progress(seconds);
        for (const QString &output : outputs)
            progress.read(output);
        return shown(progress.figures());
    };
    const QString durations = "  Duration: 00:01:00.00, start\n  Duration: 00:01:40.50, start\n"_s;
    QCOMPARE(read({durations + "size= 0kB time=00:00:00.00 bitrate= 0 speed=   0x\r"_s}), "0%|0:00:00 / 0:01:40||"_s);
    QCOMPARE(read({durations, "time=00:00:50.25 bitrate=1 speed=2.5x\r"_s}), "50%|0:00:50 / 0:01:40|2.5x|0:00:21"_s);
    QCOMPARE(read({durations, "time=00:01:40.00 bitrate=1 speed=9x\rtime=00:01:40.40 bitrate=1 speed=N/A"_s}),
             "99%|0:01:40 / 0:01:40|9.0x|0:00:01"_s);
    QCOMPARE(read({"time=00:00:01.00 bitrate=N/A speed=0.0094x\r"_s}), "0%|0:00:01||"_s);
    QCOMPARE(read({"  Duration: N/A, start\ntime=00:00:20.00 speed=   2x\r"_s}, 40),
             "50%|0:00:20 / 0:00:40|2.0x|0:00:10"_s);
    QCOMPARE(read({durations, "time=00:00:51.80 speed=N/A\r"_s}, 40), "51%|0:00:51 / 0:01:40||"_s);
    QCOMPARE(read({"time=9999:00:00 time=99999:00:00 time=N/A"_s}), "0%|9999:00:00||"_s);
}

// The list in the tool's front and the table here are the same.
void JobPartsTest::tags()
{
    const QString source = QString::fromUtf8(Files::content(QStringLiteral(NOX_TOOL_TAGS)));
    static const QRegularExpression constant("^[A-Z_]+ = \"([a-z-]+)\"$"_s, QRegularExpression::MultilineOption);
    QStringList tags;
    for (auto matches = constant.globalMatch(source); matches.hasNext();)
        tags += matches.next().captured(1);
    tags.sort();
    QCOMPARE(ToolMessage::tags(), tags);
    QSet<QString> causes; // that of "other" is empty
    for (const QString &tag : std::as_const(tags))
        causes += FailureText::cause(ToolMessage::errorOfTag(tag));
    QCOMPARE(causes.size(), tags.size());
}

// The user's own tool is taken if nobody else can change it.
void JobPartsTest::ownTool()
{
    const QTemporaryDir data;
    qputenv("XDG_DATA_HOME", QFile::encodeName(data.path()));
    const QString beside = QDir(QCoreApplication::applicationDirPath()).filePath("yt.zip"_s);
    QCOMPARE(ToolSetup().toolFile(), beside);
    const QString own = data.filePath("noxwebmedia/yt.zip"_s);
    const QByteArray folder = QFile::encodeName(QFileInfo(own).path());
    const QByteArray file = QFile::encodeName(own);
    QVERIFY(QDir().mkpath(QFileInfo(own).path()));
    Files::write(own);
    const auto taken = [&](mode_t fileMode, mode_t folderMode) {
        const bool isSet = ::chmod(file.constData(), fileMode) == 0 && ::chmod(folder.constData(), folderMode) == 0;
        return isSet ? ToolSetup().toolFile() : QString();
    };
    QCOMPARE(taken(0600, 0700), own);
    QCOMPARE(taken(0644, 0755), own);
    QCOMPARE(taken(0620, 0700), beside);
    QCOMPARE(taken(0602, 0700), beside);
    QCOMPARE(taken(0600, 0702), beside);
    if (::chown(file.constData(), 12345, static_cast<gid_t>(-1)) == 0) // only root can give files away
        QCOMPARE(taken(0600, 0700), beside);
    QCOMPARE(ToolSetup("/x/tool.zip"_s).toolFile(), "/x/tool.zip"_s);
}

void JobPartsTest::bytecodeFolder()
{
    const QTemporaryDir data;
    qputenv("XDG_CACHE_HOME", QFile::encodeName(data.filePath("cache"_s)));
    const mode_t before = ::umask(0);
    const QString folder = ToolSetup().pycacheFolder();
    ::umask(before);
    QCOMPARE(folder, data.filePath("cache/noxwebmedia/pycache"_s));
    constexpr int ofOthers = 0x77; // in Qt's form
    for (const QString &path : {folder, QFileInfo(folder).path(), data.filePath("cache"_s)})
        QVERIFY2(QFileInfo(path).isDir() && (int(QFile::permissions(path)) & ofOthers) == 0, qPrintable(path));
    QCOMPARE(ToolSetup().pycacheFolder(), folder); // it is there now

    QVERIFY(QFile::setPermissions(folder, QFile::permissions(folder) | QFile::WriteOther));
    QCOMPARE(ToolSetup().pycacheFolder(), QString());
    Files::write(data.filePath("file"_s));
    for (const QString &name : {"file"_s, "file/x/y"_s})
        QCOMPARE(ToolSetup({}, data.filePath(name)).pycacheFolder(), QString());
}

void JobPartsTest::environment()
{
    const QByteArray own = QFile::encodeName(QCoreApplication::applicationDirPath());
    qputenv("PYTHONDONTWRITEBYTECODE", "1");
    qputenv("PATH", "/usr/bin:/bin");
    ToolSetup::prepareEnvironment();
    QCOMPARE(qgetenv("PATH"), own + ":/usr/bin:/bin");
    QVERIFY(!qEnvironmentVariableIsSet("PYTHONDONTWRITEBYTECODE"));
    qunsetenv("PATH"); // an empty entry would mean the working folder
    ToolSetup::prepareEnvironment();
    QCOMPARE(qgetenv("PATH"), own);
}

QTEST_GUILESS_MAIN(JobPartsTest)
#include "JobPartsTest.moc"
