#include "tests/support/TestMain.h"
#include "tests/support/WorkerTable.h"
#include "tests/util/Files.h"

#include <QRegularExpression>
#include <QtTest>

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

/** From here on, a locked folder binds this process even if root runs it. */
void giveUpRootRights()
{
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct data[_LINUX_CAPABILITY_U32S_3]{};
    QVERIFY(syscall(SYS_capget, &header, data) == 0);
    data[0].effective &= ~(1U << CAP_DAC_OVERRIDE);
    QVERIFY(syscall(SYS_capset, &header, data) == 0);
}

/** A cell of a table in docs/reliability.md. */
QString cell(const QString &text)
{
    QStringList parts;
    for (QString part : text.split(QStringLiteral(" -> "))) {
        part.replace(QLatin1Char('|'), QStringLiteral("\\|"));
        parts += part.isEmpty() ? QStringLiteral("none") : QLatin1Char('`') + part + QLatin1Char('`');
    }
    return parts.join(QStringLiteral(" \u2192 "));
}

} // namespace

/** Faults of pages, the tool, ffmpeg and the disk: the exact notifications and files, and no process is left. */
class FaultMatrixTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        giveUpRootRights();
        static const QRegularExpression row(QStringLiteral("^\\| .* \\| (`.*|none) \\|$"));
        const QString text = QString::fromUtf8(Files::content(QStringLiteral(NOX_RELIABILITY)));
        m_documented = text.split(QLatin1Char('\n')).filter(row);
    }

    void extraction_data()
    {
        const TextTable row = ExtractTable::begin();
        const char *empty =
            "parseWebMediaInfo: JSON reader.parse error: * Line 1, Column 1\n  Syntax error: value, object "
            "or array expected.\n";
        row("interpreter missing", "python=missing", "", "", "finished(||) error(0)",
            "ydProcessError: Yd extract process terminated with error: 0");
        row("interpreter not executable", "python=plain", "", "", "finished(||) error(0)",
            "ydProcessError: Yd extract process terminated with error: 0");
        row("interpreter crashes", "", "dump: kill SIGABRT", "", "finished(||) error(1) error(-1)",
            "ydProcessError: Yd extract process terminated with error: 1");
        row("interpreter exits 1", "", "dump: exit 1", "", "error(-1)");
        row("interpreter hangs, host cancels", "", "dump: spawn|hang", "cancel@dump", "finished(||) error(1)",
            "cancel: Cancel getMediaInfo...|ydProcessError: Yd extract process terminated with error: 1");
        row("interpreter hangs, host deletes", "", "dump: spawn|hang", "delete@dump");
        row("standard output closed early", "", "dump: close 1|exit 0", "", "finished(||)", empty);
        row("standard output closed behind the document", "", "dump: json Clip 1|close 1|exit 0", "",
            "finished(Clip|1|)");
        row("both outputs closed, then a hang", "", "dump: close 1|close 2|spawn|hang", "cancel@dump",
            "finished(||) error(1)",
            "cancel: Cancel getMediaInfo...|ydProcessError: Yd extract process terminated with error: 1");
        row("log cannot be written", "log=/dev/full", "dump: err WARNING|json Clip 1", "", "finished(Clip|1|WARNING)");
        row("log folder missing", "log=/nowhere/x.log", "dump: err WARNING|json Clip 1", "",
            "finished(Clip|1|WARNING)");
    }
    void extraction()
    {
        QFETCH(QString, notifications);
        takeDocumentedRow({notifications});
        ExtractTable::run();
    }

    void download_data()
    {
        const TextTable row = DownloadTable::begin();
        const char *done = "clip.mp4=137";
        const char *both = "{1}YDTMP_.mp4=137, {2}YDTMP_.m4a=140 -> {1}YDTMP_.mp4=137";
        const char *exit1 = "ydFinished: Yd process terminated abnormally: http://127.0.0.1/watch?v=1  \n ExitCode: 1";
        const char *rename = "ydFinished: Rename failed from DIR/{1}YDTMP_.mp4 to DIR/clip.mp4!";
        const char *ffmpegKilled = "ffmpegProcessError: FFMPEG process error: 1|ffmpegFinished: FFMPEG crashed!";
        const std::string error = std::string("ydReadError: Yd process read error: ERROR: ");
        const std::string noFolder = error + "No such file or directory\n |" + exit1;
        const char *notMerged = "ffmpegReadStandardError: FFMPEG read error: ERROR: No such file or directory\n|"
                                "ffmpegFinished: FFMPEG terminated abnormally!";

        row("interpreter missing", "python=missing", "", "", "started error(-1)", "",
            "ydProcessError: Yd process error: 0 ");
        row("interpreter not executable", "two python=plain", "", "", "started error(-1)", "",
            "ydProcessError: Yd process error: 0 ");
        row("interpreter crashes", "", "137: announce mp4|file mp4.part|kill SIGSEGV", "",
            "started error(-1) error(-5)", "{1}YDTMP_.mp4=137",
            "ydProcessError: Yd process error: 1 |ydFinished: Yd process crashed: http://127.0.0.1/watch?v=1 ");
        row("interpreter exits 1", "", "137: announce mp4|file mp4.part|exit 1", "", "started error(-4)",
            "{1}YDTMP_.mp4=137", exit1);
        row("interpreter hangs, host cancels", "", "137: announce mp4|spawn|hang", "cancel@137", "started error(-1)",
            "", "ydProcessError: Yd process error: 1 ");
        row("ffmpeg missing", "two ffmpeg=missing", "", "", "started started error(-7)", both,
            "ffmpegProcessError: FFMPEG process error: 0");
        row("ffmpeg not executable", "two ffmpeg=plain", "", "", "started started error(-7)", both,
            "ffmpegProcessError: FFMPEG process error: 0");
        row("ffmpeg crashes", "two", "ffmpeg: write half|kill SIGSEGV", "", "started started error(-7) error(-5)",
            "{1}YDTMP_.mp4.tmp.mp4=half, {1}YDTMP_.mp4=137, {2}YDTMP_.m4a=140 -> {1}YDTMP_.mp4=137", ffmpegKilled);
        row("ffmpeg exits 1", "two", "ffmpeg: write half|exit 1", "", "started started error(-4)",
            "{1}YDTMP_.mp4.tmp.mp4=half, {1}YDTMP_.mp4=137, {2}YDTMP_.m4a=140 -> {1}YDTMP_.mp4=137",
            "ffmpegFinished: FFMPEG terminated abnormally!");
        row("ffmpeg hangs, host cancels", "two", "ffmpeg: write half|spawn|hang", "cancel@ffmpeg",
            "started started error(-7) error(-5)", "", ffmpegKilled);
        row("standard output closed early", "", "137: announce mp4|close 1|exit 0", "", "started finished", done);
        row("standard output closed before the name", "", "137: close 1|file mp4|exit 0", "", "started error(-8)",
            "{1}YDTMP_.mp4=137", "ydFinished: Rename failed from  to DIR/clip.mp4!");
        row("ffmpeg closes its outputs", "two", "ffmpeg: close 1|close 2|merge", "",
            "started started progress(0,0,0) finished", "clip.mp4=137+140");
        row("50 MB of standard error", "", "137: announce mp4|flood 50|progress 50 1000", "",
            "started progress(1000,500,10) finished", done, "ydReadError: Yd process read error: ~ ");
        row("50 MB of standard error from ffmpeg", "two", "ffmpeg: flood 50|merge", "",
            "started started progress(0,0,0) finished", "clip.mp4=137+140",
            "ffmpegReadStandardError: FFMPEG read error: ~");
        row("disk full in the download", "", "137: announce mp4|limit 100|bulk mp4 1000", "", "started error(-4)",
            "{1}YDTMP_.mp4=~", (error + "File too large\n |" + exit1).c_str());
        row("disk full in the merge", "two", "ffmpeg: limit 2|merge", "", "started started error(-4)",
            "{1}YDTMP_.mp4.tmp.mp4=13, {1}YDTMP_.mp4=137, {2}YDTMP_.m4a=140 -> {1}YDTMP_.mp4=137",
            "ffmpegReadStandardError: FFMPEG read error: ERROR: File too large\n|ffmpegFinished: FFMPEG terminated "
            "abnormally!");
        row("log cannot be written", "two log=/dev/full", "140: announce m4a|err x", "",
            "started started progress(0,0,0) finished", "clip.mp4=137+140");
        row("folder never writable", "dest=/proc/clip.mp4", "", "", "started error(-4)", "", noFolder.c_str());
        row("folder never there", "dest=/nowhere/at/all/clip.mp4", "", "", "started error(-4)", "", noFolder.c_str());
        row("folder gone in item 1", "", "137: announce mp4|vanish", "", "started error(-8)", "", rename);
        row("folder gone between the items", "two", "137: announce mp4|vanish", "", "started started error(-4)", "",
            noFolder.c_str());
        row("folder gone in item 2", "two", "140: announce m4a|vanish", "", "started started error(-4)", "", notMerged);
        row("destination appears in item 1", "", "137: announce mp4|touch clip.mp4", "", "started error(-8)",
            "clip.mp4=new, {1}YDTMP_.mp4=137", rename);
        row("destination appears in item 2", "two", "140: announce m4a|touch clip.mp4", "", "started started error(-8)",
            "clip.mp4=new, {1}YDTMP_.mp4.tmp.mp4=137+140 -> clip.mp4=new",
            "ffmpegFinished: Rename failed from DIR/{1}YDTMP_.mp4.tmp.mp4 to DIR/clip.mp4!");
        row("file removed in item 1", "", "137: announce mp4|remove .mp4", "", "started error(-8)", "", rename);
        row("video removed before the merge", "two", "140: announce m4a|remove .mp4", "", "started started error(-4)",
            "{2}YDTMP_.m4a=140 -> ", notMerged);
    }
    void download()
    {
        const auto [notifications, files] = fetchTexts("notifications", "files");
        takeDocumentedRow({notifications, files});
        DownloadTable::run();
    }

    void lockedFolder_data()
    {
        const TextTable row = DownloadTable::begin();
        row("folder locked in item 1", "", "137: announce mp4|chmod 555", "", "started error(-8)", "{1}YDTMP_.mp4=137",
            "ydFinished: Rename failed from DIR/{1}YDTMP_.mp4 to DIR/clip.mp4!");
        row("folder locked in the merge", "two", "ffmpeg: merge|chmod 555", "", "started started error(-8)",
            "{1}YDTMP_.mp4.tmp.mp4=137+140, {1}YDTMP_.mp4=137, {2}YDTMP_.m4a=140",
            "ffmpegFinished: Rename failed from DIR/{1}YDTMP_.mp4.tmp.mp4 to DIR/clip.mp4!");
        row("folder locked in the merge, host cancels", "two", "ffmpeg: write half|chmod 555|hang", "cancel@ffmpeg",
            "started started error(-7) error(-5)", "{1}YDTMP_.mp4.tmp.mp4=half, {1}YDTMP_.mp4=137, {2}YDTMP_.m4a=140",
            "ffmpegProcessError: FFMPEG process error: 1|ffmpegFinished: FFMPEG crashed!");
    }
    void lockedFolder() { download(); }

    /** The last function: the others have taken their rows. */
    void everyDocumentedRowIsTested()
    {
        if (QCoreApplication::arguments().size() > 1)
            return QTest::qSkip("needs the other functions", __FILE__, __LINE__);
        QCOMPARE(m_documented, QStringList());
    }

private:
    /** The row of the current data, with these cells, is in the document. */
    void takeDocumentedRow(const QStringList &texts)
    {
        QString row = QStringLiteral("| ") + QString::fromUtf8(QTest::currentDataTag());
        for (const QString &text : texts)
            row += QStringLiteral(" | ") + cell(text);
        row += QStringLiteral(" |");
        QVERIFY2(m_documented.removeOne(row), qPrintable(QStringLiteral("docs/reliability.md lacks this row: ") + row));
    }

    QStringList m_documented;
};

NOX_TEST_MAIN(FaultMatrixTest)
#include "FaultMatrixTest.moc"
