#include "tests/support/WorkerTable.h"

#include "tests/support/WorkerRun.h"

#include <QtTest>

using namespace Nox;

namespace {

/** The files now, and after the downloader has been deleted. */
void compareFiles(DownloadRun &run)
{
    QFETCH(QString, files);
    const QStringList left = files.split(QStringLiteral(" -> "));
    QCOMPARE(run.sandbox.files(), left.first());
    run.worker.reset();
    QCOMPARE(run.sandbox.files(), left.last());
    QVERIFY(run.sandbox.isElsewhereUntouched());
}

} // namespace

template <typename Worker>
TextTable WorkerTable<Worker>::begin()
{
    if constexpr (WorkerRun<Worker>::isDownload)
        return {"setup", "scenario", "action", "notifications", "files", "errors"};
    else
        return {"setup", "scenario", "action", "notifications", "errors"};
}

template <typename Worker>
void WorkerTable<Worker>::run()
{
    constexpr bool isDownload = WorkerRun<Worker>::isDownload;
    const auto [setup, scenario, action, notifications, errors] =
        fetchTexts("setup", "scenario", "action", "notifications", "errors");
    const QString verb = action.section(QLatin1Char('@'), 0, 0);
    const QString moment = action.section(QLatin1Char('@'), 1);

    WorkerRun<Worker> run(setup, scenario);
    run.start();
    if (!isDownload)
        QCOMPARE(run.log.text(), QString());
    if (moment == QLatin1String("end"))
        QTRY_COMPARE_WITH_TIMEOUT(run.log.text(), notifications, TestSandbox::Timeout);
    else if (!moment.isEmpty())
        QTRY_VERIFY_WITH_TIMEOUT(run.sandbox.hangs(moment), TestSandbox::Timeout);
    if (verb == QLatin1String("cancel"))
        run.worker->cancel();
    else if (verb == QLatin1String("delete"))
        run.worker.reset();
    if constexpr (isDownload) {
        if (verb == QLatin1String("clear"))
            run.worker->clear();
    }

    const int grace = verb.isEmpty() ? TestSandbox::Timeout : TestSandbox::GraceAfterKill;
    if (verb == QLatin1String("clear"))
        QCoreApplication::processEvents();
    else
        QTRY_VERIFY_WITH_TIMEOUT(run.sandbox.isQuiet(), grace);
    QCOMPARE(verb == QLatin1String("clear") ? run.log.text() : run.finalText(notifications), notifications);
    const QString found = run.sandbox.errors();
    if (!errors.endsWith(QLatin1Char('*')) || !found.startsWith(errors.chopped(1)))
        QCOMPARE(found, errors);
    if constexpr (isDownload)
        compareFiles(run);
    run.worker.reset();
    QTRY_VERIFY_WITH_TIMEOUT(run.sandbox.isQuiet(), TestSandbox::GraceAfterKill);
    QCOMPARE(run.log.text(), notifications);
}

template class WorkerTable<WebMediaDownloader>;
template class WorkerTable<WebMediaInfoExtractor>;
