#include "tests/support/ExtractTable.h"
#include "tests/support/Setup.h"
#include "tests/support/SignalLog.h"
#include "tests/support/TestMain.h"
#include "tests/support/TestSandbox.h"

#include <QRegularExpression>
#include <QThread>
#include <QtTest>

using namespace Nox;

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

/** Extraction, blocking and notifying, with stand-ins for the tool. */
class ExtractTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void notifying_data();
    void notifying();
    void blocking_data();
    void blocking();
    void record();
    void records();
    void secondRequest();
    void replacedRequest();
    void deletedInANotification_data();
    void deletedInANotification();
    void cancelBeforeAnyRequest();
    void slotsByName();
    void floodOfErrors();
    void errorDetail();
    void startedOnAnotherThread();
};

void ExtractTest::notifying_data()
{
    const TextTable row = ExtractTable::begin();
    row("success", "", "", "", "finished(Clip|137,140|)");
    row("warning", "", "dump: err WARNING: old\\n|json Clip 1", "", "finished(Clip|1|WARNING: old)",
        "ydReadError: Yd extract read error: WARNING: old\n");
    row("warning in small letters, behind a blank", "", "dump: err Warning|err  WARNING", "",
        "finished(||Warning) error(-1) finished(||WARNING) error(-1) finished(||WARNING)",
        "ydReadError: Yd extract read error: Warning|ydReadError: Yd extract read error:  WARNING|"
        "parseWebMediaInfo: JSON reader.parse error: * Line 1, Column 1\n  Syntax error: value, object or array "
        "expected.\n");
    row("error behind a warning in one chunk", "", "dump: err WARNING: a\\nERROR: b\\n|exit 1", "", "error(-1)",
        "ydReadError: Yd extract read error: WARNING: a\nERROR: b\n");
    row("error, then exit 1", "", "dump: err ERROR: no\\n|exit 1", "", "finished(||ERROR: no) error(-1) error(-1)",
        "ydReadError: Yd extract read error: ERROR: no\n");
    row("two error chunks, then success", "", "dump: err one|err two|json Clip 1", "",
        "finished(||one) error(-1) finished(||two) error(-1) finished(Clip|1|two)",
        "ydReadError: Yd extract read error: one|ydReadError: Yd extract read error: two");
    row("text beyond Latin-1 in the log", "", "dump: err WARNING \xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80|exit 2", "",
        "error(-1)", "ydReadError: Yd extract read error: WARNING \xc3\xa9???");
    row("no JSON", "", "dump: out <html>\\n", "", "finished(||)",
        "parseWebMediaInfo: JSON reader.parse error: * Line 1, Column 1\n  Syntax error: value, object or array "
        "expected.\n");
    row("document in three chunks", "", R"(dump: out {"title":|out "a&#38;b \u00e|out 9"}\n{"title":"c"})", "",
        "finished(a&b \xc3\xa9||)");
    row("cancel behind an error", "", "dump: err bad|spawn|hang", "cancel",
        "finished(||bad) error(-1) finished(||bad) error(1)",
        "ydReadError: Yd extract read error: bad|cancel: Cancel getMediaInfo...|"
        "ydProcessError: Yd extract process terminated with error: 1");
}

void ExtractTest::notifying()
{
    ExtractTable::run();
}

void ExtractTest::blocking_data()
{
    const TextTable row{"setup", "scenario", "notifications", "records"};
    row("success", "", "", "finished(Clip|137,140|)");
    row("errors and exit 1 play no part", "", "dump: json Clip 1|err ERROR: no\\n|exit 1", "finished(Clip|1|)");
    row("crash", "", "dump: json Clip 1|kill SIGKILL", "finished(Clip|1|)");
    row("much on standard error", "", "dump: flood 8|json Clip 1", "finished(Clip|1|)");
    row("no JSON", "", "dump: exit 0", "finished(||)", "parseWebMediaInfo: JSON reader.parse error: ");
    row("interpreter missing", "python=missing", "", "finished(||)",
        "getMediaInfo: Yd extract process finished abnormally: 0|parseWebMediaInfo: JSON reader.parse error: ");
}

void ExtractTest::blocking()
{
    QFETCH(QString, setup);
    QFETCH(QString, scenario);
    QFETCH(QString, notifications);
    QFETCH(QString, records);
    TestSandbox stage;
    const Setup applied(setup, stage);
    stage.play(scenario);
    const auto extractor = stage.newExtractor();
    const SignalLog log(extractor.get());
    const WebMediaInfo info = extractor->getMediaInfo(Setup::url());
    QCOMPARE(log.text(), notifications);
    QCOMPARE(SignalLog::recordText(info), notifications);
    QCOMPARE(info.getUrl(), Setup::url());
    QTest::qWait(30);
    QCOMPARE(log.text(), notifications);
    QVERIFY(stage.isQuiet());

    QStringList failures;
    for (const QString &record : stage.records(LOG_DEBUG)) {
        if (record.contains(QStringLiteral("abnormally")) || record.contains(QStringLiteral("parse error")))
            failures.append(record.section(QLatin1Char('*'), 0, 0));
    }
    QCOMPARE(failures.join(QLatin1Char('|')), records);
}

/** A record is a copy, filled from the whole of the output, and carries the address as the host gave it. */
void ExtractTest::record()
{
    TestSandbox stage;
    const QString title(300000, QLatin1Char('t'));
    stage.play(QStringLiteral("dump: long 300000"));
    const auto extractor = stage.newExtractor();
    WebMediaInfo seen;
    QObject::connect(extractor.get(), &WebMediaInfoExtractor::finished, this, [&](WebMediaInfo info) { seen = info; });
    extractor->getMediaInfoBySignal(Setup::url());
    QTRY_VERIFY_WITH_TIMEOUT(!seen.getUrl().isNull(), TestSandbox::Patience);
    QCOMPARE(seen.getTitle(), title);
    QCOMPARE(seen.getUrl(), Setup::url());
    QCOMPARE(seen.getDuration(), qint64(7));
    QVERIFY(seen.isValid());
}

void ExtractTest::records()
{
    TestSandbox stage;
    stage.play(text("dump: err WARNING: w|out {\"title\":\"\xc3\xa9\",\"duration\":9}"));
    const auto extractor = stage.newExtractor();
    const SignalLog log(extractor.get());
    extractor->getMediaInfoBySignal(text("http://h/\xc3\xa9?v=1&a"));
    QTRY_COMPARE_WITH_TIMEOUT(log.text(), text("finished(\xc3\xa9||WARNING: w)"), TestSandbox::Patience);
    // The log's bytes read as Latin-1: texts in UTF-8 show two characters for one.
    const QStringList expected{
        text("[DEBUG] YdExtractor.cpp getMediaInfoBySignal: url http://h/\xc3\x83\xc2\xa9?v=1&a "),
        text("[INFO] YdExtractor.cpp initYdExtractorCommand: \"APP/python3.10/bin/python3.10\" -X "
             "pycache_prefix=\"ROOT/cache\" \"ROOT/yt.zip\" --dump-json --no-check-certificate "
             "http://h/\xc3\x83\xc2\xa9?v=1"),
        text("[ERROR] YdExtractor.cpp ydReadError: Yd extract read error: WARNING: w"),
        text("[DEBUG] YdExtractor.cpp ydReadOutputData: http://h/\xc3\x83\xc2\xa9?v=1&a \r\n"
             "{\"title\":\"\xc3\x83\xc2\xa9\",\"duration\":9} "),
        text("[DEBUG] YdExtractor.cpp ydReadOutputData: duration : 9"),
    };
    QCOMPARE(stage.records(LOG_DEBUG, true), expected);
}

/** A request starts from the record that the one before left. */
void ExtractTest::secondRequest()
{
    TestSandbox stage;
    const auto extractor = stage.newExtractor();
    stage.play(QStringLiteral("dump: err WARNING|json A 1,2"));
    const SignalLog log(extractor.get());
    extractor->getMediaInfoBySignal(QStringLiteral("http://h/a"));
    QTRY_COMPARE_WITH_TIMEOUT(log.text(), QStringLiteral("finished(A|2,1|WARNING)"), TestSandbox::Patience);
    stage.play(QStringLiteral("dump: json B 3"));
    QCOMPARE(SignalLog::recordText(extractor->getMediaInfo(QStringLiteral("http://h/b"))),
             QStringLiteral("finished(B|3,2,1|WARNING)"));
    stage.play(QStringLiteral("dump: out none"));
    const WebMediaInfo info = extractor->getMediaInfo(QStringLiteral("http://h/c"));
    QCOMPARE(SignalLog::recordText(info), QStringLiteral("finished(B|3,2,1|WARNING)"));
    QCOMPARE(info.getUrl(), QStringLiteral("http://h/c"));
    QCOMPARE(info.getDuration(), qint64(7));
}

/** A request while one runs takes its place: the earlier process is ended and says nothing more. */
void ExtractTest::replacedRequest()
{
    TestSandbox stage;
    const auto extractor = stage.newExtractor();
    const SignalLog log(extractor.get());
    for (const bool isBlocking : {false, true}) {
        stage.play(QStringLiteral("dump: spawn|hang"));
        QFile::remove(stage.path(QStringLiteral("notes/mark.hang.dump")));
        extractor->getMediaInfoBySignal(QStringLiteral("http://h/a"));
        QTRY_VERIFY_WITH_TIMEOUT(stage.hangs(QStringLiteral("dump")), TestSandbox::Patience);
        stage.play(QStringLiteral("dump: json B 3"));
        if (isBlocking)
            extractor->getMediaInfo(QStringLiteral("http://h/b"));
        else
            extractor->getMediaInfoBySignal(QStringLiteral("http://h/b"));
        const QString expected =
            isBlocking ? QStringLiteral("finished(B|3|) finished(B|3,3|)") : QStringLiteral("finished(B|3|)");
        QTRY_COMPARE_WITH_TIMEOUT(log.text(), expected, TestSandbox::Patience);
        QTRY_VERIFY_WITH_TIMEOUT(stage.isQuiet(), TestSandbox::GraceAfterKill);
        QTest::qWait(30);
        QCOMPARE(log.text(), expected);
    }
    QCOMPARE(stage.errors(), QString());
}

void ExtractTest::deletedInANotification_data()
{
    const TextTable row{"scenario", "moment", "notifications"};
    row("success", "", "finished", "finished(Clip|137,140|)");
    row("error text", "dump: err bad|spawn|hang", "finished", "finished(||bad)");
    row("error text, second notification", "dump: err bad|spawn|hang", "error", "finished(||bad) error(-1)");
    row("crash", "dump: kill SIGKILL", "finished", "finished(||)");
    row("exit 1", "dump: exit 1", "error", "error(-1)");
}

void ExtractTest::deletedInANotification()
{
    QFETCH(QString, scenario);
    QFETCH(QString, moment);
    QFETCH(QString, notifications);
    TestSandbox stage;
    stage.play(scenario);
    auto extractor = stage.newExtractor();
    const SignalLog log(extractor.get());
    const auto respond = [&](const char *notification) {
        if (moment == QLatin1String(notification))
            extractor.reset();
    };
    connect(extractor.get(), &WebMediaInfoExtractor::finished, this, [&] { respond("finished"); });
    connect(extractor.get(), &WebMediaInfoExtractor::error, this, [&] { respond("error"); });
    extractor->getMediaInfoBySignal(Setup::url());
    QTRY_COMPARE_WITH_TIMEOUT(log.text(), notifications, TestSandbox::Patience);
    QTRY_VERIFY_WITH_TIMEOUT(stage.isQuiet(), TestSandbox::GraceAfterKill);
    QTest::qWait(30);
    QCOMPARE(log.text(), notifications);
}

void ExtractTest::cancelBeforeAnyRequest()
{
    const TestSandbox stage;
    const auto extractor = stage.newExtractor();
    const SignalLog log(extractor.get());
    extractor->cancel();
    QTest::qWait(30);
    QCOMPARE(log.text(), QString());
    QCOMPARE(stage.records(LOG_DEBUG, true),
             QStringList(QStringLiteral("[ERROR] YdExtractor.cpp cancel: Cancel getMediaInfo...")));
}

/** What can be called through the meta-object must not need a request; a process's error number passes unchanged. */
void ExtractTest::slotsByName()
{
    const TestSandbox stage;
    const auto extractor = stage.newExtractor();
    const SignalLog log(extractor.get());
    for (const char *slot : {"ydReadOutputData", "ydReadError"})
        QVERIFY(QMetaObject::invokeMethod(extractor.get(), slot));
    for (const int exitCode : {0, 1}) {
        QVERIFY(QMetaObject::invokeMethod(extractor.get(), "ydFinished", Q_ARG(int, exitCode),
                                          Q_ARG(QProcess::ExitStatus, QProcess::NormalExit)));
    }
    for (const auto error : {QProcess::Timedout, QProcess::UnknownError})
        QVERIFY(QMetaObject::invokeMethod(extractor.get(), "ydProcessError", Q_ARG(QProcess::ProcessError, error)));
    QCOMPARE(log.text(), QStringLiteral("finished(||) error(2) finished(||) error(5)"));
}

/** How many chunks 50 MB come in is the machine's affair; each is a pair. */
void ExtractTest::floodOfErrors()
{
    TestSandbox stage;
    stage.play(QStringLiteral("dump: flood 50|json Clip 1"));
    const auto extractor = stage.newExtractor();
    const SignalLog log(extractor.get());
    extractor->getMediaInfoBySignal(Setup::url());
    QTRY_VERIFY_WITH_TIMEOUT(log.text().contains(QStringLiteral("Clip")), 2 * TestSandbox::Patience);
    static const QRegularExpression pairs(
        QStringLiteral("^(finished\\(\\|\\|~+\\) error\\(-1\\) )+finished\\(Clip\\|1\\|~+\\)$"));
    QVERIFY2(pairs.match(log.text()).hasMatch(), qPrintable(log.text().left(300)));
    QCOMPARE(log.text().count(QLatin1Char('~')) / (1 << 20), 50);
    QTRY_VERIFY_WITH_TIMEOUT(stage.isQuiet(), TestSandbox::Patience);
}

/** The tool's words of this request alone, to the end, also those that give no notification. */
void ExtractTest::errorDetail()
{
    TestSandbox stage;
    const auto extractor = stage.newExtractor();
    const SignalLog log(extractor.get());
    QCOMPARE(extractor->errorDetail(), QString());
    QString inNotification;
    connect(extractor.get(), &WebMediaInfoExtractor::error, this, [&] { inNotification = extractor->errorDetail(); });
    stage.play(text("dump: err WARNING: \xc3\xa9\\n|err ERROR: no\\n|exit 1"));
    extractor->getMediaInfoBySignal(Setup::url());
    QTRY_VERIFY_WITH_TIMEOUT(log.text().endsWith(QStringLiteral("error(-1) error(-1)")), TestSandbox::Patience);
    QCOMPARE(inNotification, text("WARNING: \xc3\xa9\nERROR: no\n"));

    stage.play(QStringLiteral("dump: hang"));
    extractor->getMediaInfoBySignal(Setup::url());
    QCOMPARE(extractor->errorDetail(), QString());
    stage.play(QStringLiteral("dump: err WARNING\\n|json A 1"));
    extractor->getMediaInfoBySignal(Setup::url());
    QTRY_COMPARE_WITH_TIMEOUT(extractor->errorDetail(), QStringLiteral("WARNING\n"), TestSandbox::Patience);
    extractor->getMediaInfo(Setup::url());
    QCOMPARE(extractor->errorDetail(), QString());
}

/** The program goes on when the thread ends that has started it. */
void ExtractTest::startedOnAnotherThread()
{
    TestSandbox stage;
    stage.play(QStringLiteral("dump: mark there|wait go|json Clip 1"));
    std::unique_ptr<WebMediaInfoExtractor> extractor;
    QThread *const here = QThread::currentThread();
    bool isStarted = false;
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        extractor = stage.newExtractor();
        extractor->getMediaInfoBySignal(Setup::url());
        isStarted = QTest::qWaitFor([&] { return stage.isMarked(QStringLiteral("there")); }, TestSandbox::Patience);
        extractor->moveToThread(here);
    }));
    thread->start();
    QVERIFY(thread->wait(2UL * TestSandbox::Patience));
    QVERIFY(isStarted);
    const SignalLog log(extractor.get());
    stage.mark(QStringLiteral("go"));
    QTRY_COMPARE_WITH_TIMEOUT(log.text(), QStringLiteral("finished(Clip|1|)"), TestSandbox::Patience);
}

NOX_TEST_MAIN(ExtractTest)
#include "ExtractTest.moc"
