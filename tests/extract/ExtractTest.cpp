#include "tests/support/Processes.h"
#include "tests/support/ResourceLimit.h"
#include "tests/support/TestMain.h"
#include "tests/support/WorkerRun.h"
#include "tests/support/WorkerTable.h"
#include "tests/util/Rows.h"

#include <nox/process/ChildProcess.h>

#include <QRegularExpression>
#include <QThread>
#include <QtTest>

#include <csignal>
#include <fstream>
#include <unistd.h>

using namespace Nox;

/** Extraction, blocking and notifying, with fakes for the tool. */
class ExtractTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void notifying_data()
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
        row("text beyond Latin-1 in the log", "", "dump: err WARNING é€😀|exit 2", "", "error(-1)",
            "ydReadError: Yd extract read error: WARNING é???");
        row("more than a pipe holds", "", "dump: long 300000", "",
            ("finished(" + std::string(300000, 't') + "|1|)").c_str());
        row("document in three chunks", "", R"(dump: out {"title":|out "a&#38;b \u00e|out 9"}\n{"title":"c"})", "",
            "finished(a&b é||)");
        row("cancel behind an error", "", "dump: err bad|spawn|hang", "cancel@dump",
            "finished(||bad) error(-1) finished(||bad) error(1)",
            "ydReadError: Yd extract read error: bad|cancel: Cancel getMediaInfo...|"
            "ydProcessError: Yd extract process terminated with error: 1");
    }
    void notifying() { ExtractTable::run(); }

    void blocking_data()
    {
        const TextTable row{"setup", "scenario", "notifications", "records"};
        row("errors and exit 1 play no part", "", "dump: json Clip 1|err ERROR: no\\n|exit 1", "finished(Clip|1|)");
        row("crash", "", "dump: json Clip 1|kill SIGKILL", "finished(Clip|1|)");
        row("much on standard error", "", "dump: flood 8|json Clip 1", "finished(Clip|1|)");
        row("interpreter missing", "python=missing", "", "finished(||)",
            "getMediaInfo: Yd extract process finished abnormally: 0|parseWebMediaInfo: JSON reader.parse error: ");
    }

    void blocking()
    {
        const auto [setup, scenario, notifications, records] =
            fetchTexts("setup", "scenario", "notifications", "records");
        ExtractRun run(setup, scenario);
        const WebMediaInfo info = run.worker->getMediaInfo(Setup::url());
        QCOMPARE(run.log.text(), notifications);
        QCOMPARE(SignalLog::recordText(info), notifications);
        QCOMPARE(info.getUrl(), Setup::url());
        QVERIFY(run.sandbox.isQuiet());
        QCoreApplication::processEvents();
        QCOMPARE(run.log.text(), notifications);

        static const QRegularExpression failure("abnormally|parse error"_s);
        static const QRegularExpression details(R"(\*[^|]*)"_s); // what the reader says
        const QString failures = run.sandbox.records(LOG_DEBUG).filter(failure).join(QLatin1Char('|'));
        QCOMPARE(QString(failures).remove(details), records);
    }

    void records()
    {
        ExtractRun run({}, R"(dump: err WARNING: w|out {"title":"é","duration":9})"_s);
        run.worker->getMediaInfoBySignal("http://h/é?v=1&a"_s);
        QTRY_COMPARE_WITH_TIMEOUT(run.log.text(), "finished(é||WARNING: w)"_s, TestSandbox::Timeout);
        // The log is read as Latin-1, in which UTF-8 texts have two characters for one.
        const QStringList expected{
            "[DEBUG] YdExtractor.cpp getMediaInfoBySignal: url http://h/Ã©?v=1&a "_s,
            "[INFO] YdExtractor.cpp initYdExtractorCommand: \"APP/python3.10/bin/python3.10\" -X "
            "pycache_prefix=\"ROOT/cache\" \"ROOT/yt.zip\" --dump-json --no-check-certificate "
            "http://h/Ã©?v=1"_s,
            "[ERROR] YdExtractor.cpp ydReadError: Yd extract read error: WARNING: w"_s,
            "[DEBUG] YdExtractor.cpp ydReadOutputData: http://h/Ã©?v=1&a \r\n"
            "{\"title\":\"Ã©\",\"duration\":9} "_s,
            "[DEBUG] YdExtractor.cpp ydReadOutputData: duration : 9"_s,
        };
        QCOMPARE(run.sandbox.records(LOG_DEBUG, true), expected);
    }

    /** A request continues with the record of the previous one. */
    void secondRequest()
    {
        ExtractRun run({}, "dump: err WARNING|json A 1,2"_s);
        run.worker->getMediaInfoBySignal("http://h/a"_s);
        QTRY_COMPARE_WITH_TIMEOUT(run.log.text(), "finished(A|2,1|WARNING)"_s, TestSandbox::Timeout);
        run.sandbox.play("dump: json B 3"_s);
        QCOMPARE(SignalLog::recordText(run.worker->getMediaInfo("http://h/b"_s)), "finished(B|3,2,1|WARNING)"_s);
        run.sandbox.play("dump: out none"_s);
        const WebMediaInfo info = run.worker->getMediaInfo("http://h/c"_s);
        QCOMPARE(SignalLog::recordText(info), "finished(B|3,2,1|WARNING)"_s);
        QCOMPARE(info.getUrl(), "http://h/c"_s);
        QCOMPARE(info.getDuration(), qint64(7));
    }

    /** A new request ends the process of a running one, which reports nothing more. */
    void replacedRequest()
    {
        ExtractRun run;
        for (const bool isBlocking : {false, true}) {
            run.sandbox.play("dump: spawn|hang"_s);
            QFile::remove(run.sandbox.path("notes/mark.hang.dump"_s));
            run.worker->getMediaInfoBySignal("http://h/a"_s);
            QTRY_VERIFY_WITH_TIMEOUT(run.sandbox.hangs("dump"_s), TestSandbox::Timeout);
            run.sandbox.play("dump: json B 3"_s);
            if (isBlocking)
                run.worker->getMediaInfo("http://h/b"_s);
            else
                run.worker->getMediaInfoBySignal("http://h/b"_s);
            const QString expected = isBlocking ? "finished(B|3|) finished(B|3,3|)"_s : "finished(B|3|)"_s;
            QCOMPARE(run.finalText(expected), expected);
            QVERIFY(run.sandbox.isQuiet());
        }
        QCOMPARE(run.sandbox.errors(), QString());
    }

    /** Without a request, cancel() writes a record, and the slots can be called. Process errors keep their numbers. */
    void idle()
    {
        ExtractRun run;
        run.worker->cancel();
        QCOMPARE(run.sandbox.records(LOG_DEBUG, true),
                 QStringList("[ERROR] YdExtractor.cpp cancel: Cancel getMediaInfo..."_s));
        for (const char *slot : {"ydReadOutputData", "ydReadError"})
            QVERIFY(QMetaObject::invokeMethod(run.worker.get(), slot));
        for (const int exitCode : {0, 1}) {
            QVERIFY(QMetaObject::invokeMethod(run.worker.get(), "ydFinished", Q_ARG(int, exitCode),
                                              Q_ARG(QProcess::ExitStatus, QProcess::NormalExit)));
        }
        for (const auto error : {QProcess::Timedout, QProcess::UnknownError})
            QVERIFY(
                QMetaObject::invokeMethod(run.worker.get(), "ydProcessError", Q_ARG(QProcess::ProcessError, error)));
        QCOMPARE(run.log.text(), "finished(||) error(2) finished(||) error(5)"_s);
    }

    void littleMemory_data()
    {
        // The memory suffices for 64 MB only once, or for a copy but not for the text.
        rows({"megabytes", "mode"},
             {"96 -> notifying"_s, "96 -> blocking"_s, "160 -> notifying"_s, "160 -> blocking"_s, "32 -> blocking"_s});
    }

    /** Output that memory cannot hold is a page that cannot be read. */
    void littleMemory()
    {
        if (!Processes::isMemoryMeasurable)
            return QTest::qSkip("a sanitizer needs the address space", __FILE__, __LINE__); // QSKIP() warns with clang
        const auto [megabytes, mode] = fetchTexts("megabytes", "mode");
        ExtractRun run({}, "dump: flood 64 1"_s);
        {
            unsigned long pages = 0;
            std::ifstream("/proc/self/statm") >> pages;
            const auto present = pages * static_cast<unsigned long>(sysconf(_SC_PAGESIZE));
            const ResourceLimit limit(RLIMIT_AS, present + (megabytes.toULong() << 20U));
            if (mode == "blocking"_s)
                run.worker->getMediaInfo(Setup::url());
            else
                run.start();
            QTRY_COMPARE_WITH_TIMEOUT(run.log.text(), "finished(||)"_s, TestSandbox::Timeout);
        }
        const QString lost = "read: Output of a program is lost, it cannot be held in memory: std::bad_alloc"_s;
        QVERIFY2(run.sandbox.errors().startsWith(lost), qPrintable(run.sandbox.errors()));
        QCOMPARE(run.sandbox.errors().count("lost"_s), 1);
        run.sandbox.play("dump: json Clip 1"_s);
        QCOMPARE(SignalLog::recordText(run.worker->getMediaInfo(Setup::url())), "finished(Clip|1|)"_s);
    }

    /** However much a program prints, memory does not grow with it. */
    void limitedOutput()
    {
        const TestSandbox sandbox;
        ChildProcess process;
        process.limitOutput(1000);
        process.launch("head -c 20000000 /dev/zero"_s);
        QVERIFY(process.waitForFinished(TestSandbox::Timeout));
        const qint64 kept = process.readAllStandardOutput().size();
        QVERIFY2(kept > 1000 && kept < 1000000, qPrintable(QString::number(kept)));
        QCOMPARE(sandbox.errors().count("lost"_s), 1);
    }

    /** If a host ignores the signal, Qt does not learn how programs end. */
    void ignoredChildSignal()
    {
        ExtractRun run({}, "dump: hang"_s);
        const auto before = std::signal(SIGCHLD, SIG_IGN);
        run.start();
        static_cast<void>(std::signal(SIGCHLD, before));
        QCOMPARE(run.sandbox.errors(),
                 "launch: SIGCHLD is ignored: the ends of programs are told wrongly or not at all."_s);
        run.worker->cancel();
    }

    /** All messages of the tool in this request, also those without a notification. */
    void errorDetail()
    {
        ExtractRun run;
        QCOMPARE(run.worker->errorDetail(), QString());
        QString inNotification;
        connect(run.worker.get(), &WebMediaInfoExtractor::error, this,
                [&] { inNotification = run.worker->errorDetail(); });
        run.sandbox.play(R"(dump: err WARNING: é\n|err ERROR: no\n|exit 1)"_s);
        run.start();
        QTRY_VERIFY_WITH_TIMEOUT(run.log.text().endsWith("error(-1) error(-1)"_s), TestSandbox::Timeout);
        QCOMPARE(inNotification, "WARNING: é\nERROR: no\n"_s);

        run.sandbox.play("dump: hang"_s);
        run.start();
        QCOMPARE(run.worker->errorDetail(), QString());
        run.sandbox.play(R"(dump: err WARNING\n|json A 1)"_s);
        run.start();
        QTRY_COMPARE_WITH_TIMEOUT(run.worker->errorDetail(), "WARNING\n"_s, TestSandbox::Timeout);
        run.worker->getMediaInfo(Setup::url());
        QCOMPARE(run.worker->errorDetail(), QString());
    }

    /** The program continues when the thread ends that has started it. */
    void startedOnAnotherThread()
    {
        TestSandbox sandbox;
        sandbox.play("dump: mark there|wait go|json Clip 1"_s);
        std::unique_ptr<WebMediaInfoExtractor> extractor;
        QThread *const here = QThread::currentThread();
        bool isStarted = false;
        const std::unique_ptr<QThread> thread(QThread::create([&] {
            extractor = sandbox.make<WebMediaInfoExtractor>();
            extractor->getMediaInfoBySignal(Setup::url());
            isStarted = QTest::qWaitFor([&] { return sandbox.isMarked("there"_s); }, TestSandbox::Timeout);
            extractor->moveToThread(here);
        }));
        thread->start();
        QVERIFY(thread->wait(2UL * TestSandbox::Timeout));
        QVERIFY(isStarted);
        const SignalLog log(extractor.get());
        sandbox.mark("go"_s);
        QTRY_COMPARE_WITH_TIMEOUT(log.text(), "finished(Clip|1|)"_s, TestSandbox::Timeout);
    }
};

NOX_TEST_MAIN(ExtractTest)
#include "ExtractTest.moc"
