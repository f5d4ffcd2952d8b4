#include "tests/support/TestMain.h"
#include "tests/support/WorkerRun.h"
#include "tests/support/WorkerTable.h"
#include "tests/util/Files.h"
#include "tests/util/Rows.h"

#include <QRegularExpression>
#include <QtTest>

using namespace Nox;

/** The file names that the tool prints, and what the downloader and ffmpeg do with these files. */
class FileNamesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fileNames_data()
    {
        const TextTable row = DownloadTable::begin();
        const char *unnamed = "ydFinished: Rename failed from  to DIR/clip.mp4!";
        row("already there, both items", "two",
            "137: file mp4|out [download] @mp4@ has already been downloaded\\n\n"
            "140: file m4a|out [download] @m4a@ has already been downloaded\\n",
            "", "started started progress(0,0,0) finished", "clip.mp4=137+140");
        row("both lines in one read", "",
            "137: file mp4|out [download] /x.mp4 has already been downloaded\\n[download] Destination: @mp4@\\n", "",
            "started finished", "clip.mp4=137");
        row("the newer name counts", "",
            "137: file mp4|out [download] Destination: /a.b\\n|out [download] Destination: @mp4@\\n", "",
            "started finished", "clip.mp4=137");
        row("destination line over two reads", "", "137: file mp4|out [download] Desti|out nation: @mp4@\\n", "",
            "started error(-8)", "{1}YDTMP_.mp4=137", unnamed);
        row("never named, .part in the working folder", "has=.part", "137: exit 0", "", "started error(-8)",
            ".part=old", unnamed);
        row("name that the log cannot hold", "dest=/nowhere/é€/clip.mp4", "137: out x", "", "started error(-8)", "",
            "ydFinished: Rename failed from  to /nowhere/é?/clip.mp4!");
    }

    void fileNames() { DownloadTable::run(); }

    /** A page can make the tool print the name of a user's file, for example in a title. */
    void filesElsewhere_data()
    {
        const TextTable row = DownloadTable::begin();
        const char *refused = "takeItemFile: Yd file was there before, not taken: ROOT/thesis.odt";
        const char *killed =
            "takeItemFile: Yd file was there before, not taken: ROOT/thesis.odt|ydProcessError: Yd process error: 1 ";
        const char *unnamed = "takeItemFile: Yd file was there before, not taken: ROOT/thesis.odt|"
                              "ydFinished: Rename failed from ROOT/thesis.odt to DIR/clip.mp4!";
        const std::string planted = "out [download] Destination: ROOT/thesis.odt\\n|";
        const std::string hang = "137: " + planted + "announce mp4|" + planted + "hang";
        const char *thesis = "elsewhere=thesis.odt";
        row("cancel", thesis, hang.c_str(), "cancel@137", "started error(-1)", "", killed);
        row("nothing else named", thesis, ("137: " + planted + "out x").c_str(), "", "started error(-8)", "", unnamed);
        row("both lines, each for another file", thesis,
            "137: file mp4|out [download] @mp4@ has already been downloaded\\n"
            "[download] Destination: ROOT/thesis.odt\\n",
            "", "started finished", "clip.mp4=137", refused);
        row("failed merge", "two elsewhere=thesis.odt",
            ("140: announce m4a|" + planted + "out x\nffmpeg: exit 1").c_str(), "clear@end",
            "started started error(-4)", "{1}YDTMP_.mp4=137",
            (std::string(refused) + "|ffmpegFinished: FFMPEG terminated abnormally!").c_str());
        const auto path = [&row](const char *name, const char *setup, const char *named, const char *logged) {
            row(name, setup, ("137: out [download] Destination: " + std::string(named) + "\\n|announce mp4").c_str(),
                "", "started finished", "clip.mp4=137",
                ("takeItemFile: Yd file was there before, not taken: " + std::string(logged)).c_str());
        };
        path("relative", thesis, "../thesis.odt", "../thesis.odt");
        path("on a way through the folder", thesis, "ROOT/my videos/../thesis.odt", "DIR/../thesis.odt");
        path("behind a link in the folder", "elsewhere=thesis.odt link=in", "ROOT/my videos/in/thesis.odt",
             "DIR/in/thesis.odt");
        path("another folder", "", "ROOT/my videos/../notes/.", "DIR/../notes/.");
        row("a part that was there", "elsewhere=thesis.odt.part",
            "137: out [download] Destination: ROOT/thesis.odt\\n|touch ../thesis.odt|hang", "cancel@137",
            "started error(-1)", "", "ydProcessError: Yd process error: 1 ");
        row("made in this run", thesis, "137: touch ../new.odt|out [download] Destination: ROOT/new.odt\\n", "",
            "started finished", "clip.mp4=new");
        const std::string other = "out [download] Destination: ROOT/b.odt\\n|";
        row("two names in turn", "elsewhere=thesis.odt elsewhere=b.odt",
            ("137: " + planted + other + planted + other + "announce mp4").c_str(), "", "started finished",
            "clip.mp4=137",
            (std::string(refused) + "|takeItemFile: Yd file was there before, not taken: ROOT/b.odt").c_str());
        row("a link made in this run", "", "137: link ../new.odt|out [download] Destination: ROOT/new.odt\\n", "",
            "started error(-8)", "",
            "takeItemFile: Yd file was there before, not taken: ROOT/new.odt|"
            "ydFinished: Rename failed from ROOT/new.odt to DIR/clip.mp4!");
        row("inside the folder", "has=old.mp4", "137: out [download] Destination: ROOT/my videos/old.mp4\\n", "",
            "started finished", "clip.mp4=old");
    }
    void filesElsewhere() { DownloadTable::run(); }

    void mergeArguments_data()
    {
        const TextTable row{"video", "audio", "codecs", "steps", "output"};
        row("both copied", "mp4", "m4a", "-vcodec copy -acodec copy", "", "mp4.tmp.mp4");
        row("capitals", "MP4", "M4A", "-vcodec copy -acodec copy", "", "MP4.tmp.mp4");
        row("audio encoded", "mp4", "webm", "-vcodec copy", "", "mp4.tmp.mp4");
        row("last suffix counts", "x.mp4", "m4a.mp3", "-vcodec copy", "", "x.mp4.tmp.mp4");
        row("video encoded, so audio too", "webm", "m4a", "", "", "webm.tmp.mp4");
        row("output taken", "mp4", "m4a", "-vcodec copy -acodec copy", "|file mp4.tmp.mp4 old", "mp40.tmp.mp4");
        row("output taken twice", "mp4", "m4a", "-vcodec copy -acodec copy",
            "|file mp4.tmp.mp4 old|file mp40.tmp.mp4 old", "mp41.tmp.mp4");
    }

    void mergeArguments()
    {
        const auto [video, audio, steps, codecs, output] = fetchTexts("video", "audio", "steps", "codecs", "output");
        DownloadRun run("two"_s, "137: announce %1%2\n140: announce %3"_s.arg(video, steps, audio));
        const TestSandbox &sandbox = run.sandbox;
        run.start();
        QTRY_COMPARE_WITH_TIMEOUT(run.log.text(), "started started progress(0,0,0) finished"_s, TestSandbox::Timeout);

        QStringList expected{"-i"_s, "DIR/{1}YDTMP_."_s + video, "-i"_s, "DIR/{2}YDTMP_."_s + audio};
        expected += codecs.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        expected += "DIR/{1}YDTMP_."_s + output;
        const QStringList arguments = sandbox.arguments("ffmpeg"_s);
        QCOMPARE(sandbox.plain(arguments.join(QLatin1Char('\n'))), expected.join(QLatin1Char('\n')));
        QVERIFY(sandbox.files().contains("clip.mp4=137+140"_s));
        QCOMPARE(sandbox.files().count("=old"_s), steps.count(QLatin1Char('|')));

        static const QRegularExpression marker(
            R"(^\w+\.cpp\([1-9]\d*\) : \d{4}/\d\d/\d\d \d\d:\d\d:\d\d 00000000\n\n$)"_s);
        const QString moduleLog = sandbox.path("tmp/file_names_test.1.log"_s);
        QCOMPARE(QFile::exists(moduleLog), codecs.isEmpty());
        QCOMPARE(marker.match(QString::fromUtf8(Files::content(moduleLog))).hasMatch(), codecs.isEmpty());
    }

    void addresses_data()
    {
        const TextTable row{"name", "file"};
        for (const char *name :
             {"-y.mp4", "-.mp4", "a:b.mp4", ":a.mp4", "pipe:0.mp4", "subfile,,start,0,end,9,,:a.mp4"})
            row(name, name, (std::string("./") + name).c_str());
        row("address of a file", "file:ROOT/thesis.odt", "./file:ROOT/thesis.odt");
        row("page", "http://127.0.0.1:9/a.mp4", "./http://127.0.0.1:9/a.mp4");
        row("plain", "a b.mp4", "a b.mp4");
        row("colon behind a slash", "./a:b.mp4", "./a:b.mp4");
        row("whole path", "ROOT/my videos/a:b.mp4", "DIR/a:b.mp4");
    }

    /** A name that the tool prints is always the name of a file to ffmpeg: no address and no option. */
    void addresses()
    {
        const auto [name, file] = fetchTexts("name", "file");
        // The file is missing if its folder does not exist.
        const bool isThere = !name.contains("//"_s) && !name.contains("ROOT/thesis"_s);
        const QString touched = isThere ? "touch %1|"_s.arg(QFileInfo(name).fileName()) : QString();
        DownloadRun run("two elsewhere=thesis.odt"_s,
                        "137: "_s + touched + "out [download] Destination: "_s + name + R"(\n)"_s);
        run.start();
        const QString end = "started started"_s + (isThere ? " progress(0,0,0) finished"_s : " error(-4)"_s);
        QCOMPARE(run.finalText(end), end);
        const QStringList arguments = run.sandbox.arguments("ffmpeg"_s);
        QCOMPARE(run.sandbox.plain(arguments.at(1)), file);
        QCOMPARE(run.sandbox.plain(arguments.last()), file + ".tmp.mp4"_s);
        run.worker->cancel();
        QCOMPARE(run.sandbox.files(), QString());
        QVERIFY(run.sandbox.isElsewhereUntouched());
    }
};

NOX_TEST_MAIN(FileNamesTest)
#include "FileNamesTest.moc"
