#include "tests/support/DownloadTable.h"

#include "tests/support/WorkerRun.h"

#include <QtTest>

using namespace Nox;

TextTable DownloadTable::begin()
{
    return {"setup", "scenario", "action", "notifications", "files", "errors"};
}

void DownloadTable::run()
{
    QFETCH(QString, setup);
    QFETCH(QString, scenario);
    QFETCH(QString, action);
    QFETCH(QString, notifications);
    QFETCH(QString, files);
    QFETCH(QString, errors);
    const QString verb = action.section(QLatin1Char('@'), 0, 0);
    const QString moment = action.section(QLatin1Char('@'), 1);
    const QStringList left = files.split(QStringLiteral(" -> "));

    DownloadRun run(setup, scenario);
    TestSandbox &stage = run.stage;
    run.start();
    if (moment == QLatin1String("end"))
        QTRY_COMPARE_WITH_TIMEOUT(run.log.text(), notifications, TestSandbox::Patience);
    else if (!moment.isEmpty())
        QTRY_VERIFY_WITH_TIMEOUT(stage.hangs(moment), TestSandbox::Patience);
    if (verb == QLatin1String("cancel"))
        run.worker->cancel();
    else if (verb == QLatin1String("clear"))
        run.worker->clear();
    else if (verb == QLatin1String("delete"))
        run.worker.reset();

    const int grace = verb.isEmpty() ? TestSandbox::Patience : TestSandbox::GraceAfterKill;
    if (verb != QLatin1String("clear"))
        QTRY_VERIFY_WITH_TIMEOUT(stage.isQuiet(), grace);
    QCOMPARE(run.log.settled(notifications), notifications);
    QCOMPARE(stage.files(), left.first());
    const QString found = stage.errors();
    if (!errors.endsWith(QLatin1Char('*')) || !found.startsWith(errors.chopped(1)))
        QCOMPARE(found, errors);

    run.worker.reset();
    QCOMPARE(stage.files(), left.last());
    QVERIFY(stage.isElsewhereUntouched());
    QTRY_VERIFY_WITH_TIMEOUT(stage.isQuiet(), TestSandbox::GraceAfterKill);
    QCOMPARE(run.log.text(), notifications);
}
