#include "tests/support/WorkerTable.h"

#include "tests/support/WorkerRun.h"

#include <QtTest>

using namespace Nox;

namespace {

/** What becomes of the folder: now, and when the downloader is gone. */
void compareFiles(DownloadRun &run)
{
    QFETCH(QString, files);
    const QStringList left = files.split(QStringLiteral(" -> "));
    QCOMPARE(run.stage.files(), left.first());
    run.worker.reset();
    QCOMPARE(run.stage.files(), left.last());
    QVERIFY(run.stage.isElsewhereUntouched());
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
    QFETCH(QString, setup);
    QFETCH(QString, scenario);
    QFETCH(QString, action);
    QFETCH(QString, notifications);
    QFETCH(QString, errors);
    const QString verb = action.section(QLatin1Char('@'), 0, 0);
    const QString moment = action.section(QLatin1Char('@'), 1);

    WorkerRun<Worker> run(setup, scenario);
    run.start();
    if (!isDownload)
        QCOMPARE(run.log.text(), QString());
    if (moment == QLatin1String("end"))
        QTRY_COMPARE_WITH_TIMEOUT(run.log.text(), notifications, TestSandbox::Patience);
    else if (!moment.isEmpty())
        QTRY_VERIFY_WITH_TIMEOUT(run.stage.hangs(moment), TestSandbox::Patience);
    if (verb == QLatin1String("cancel"))
        run.worker->cancel();
    else if (verb == QLatin1String("delete"))
        run.worker.reset();
    if constexpr (isDownload) {
        if (verb == QLatin1String("clear"))
            run.worker->clear();
    }

    const int grace = verb.isEmpty() ? TestSandbox::Patience : TestSandbox::GraceAfterKill;
    if (verb != QLatin1String("clear"))
        QTRY_VERIFY_WITH_TIMEOUT(run.stage.isQuiet(), grace);
    QCOMPARE(run.log.settled(notifications), notifications);
    const QString found = run.stage.errors();
    if (!errors.endsWith(QLatin1Char('*')) || !found.startsWith(errors.chopped(1)))
        QCOMPARE(found, errors);
    if constexpr (isDownload)
        compareFiles(run);
    run.worker.reset();
    QTRY_VERIFY_WITH_TIMEOUT(run.stage.isQuiet(), TestSandbox::GraceAfterKill);
    QCOMPARE(run.log.text(), notifications);
}

template class WorkerTable<WebMediaDownloader>;
template class WorkerTable<WebMediaInfoExtractor>;
