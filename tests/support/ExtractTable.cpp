#include "tests/support/ExtractTable.h"

#include "tests/support/WorkerRun.h"

#include <QtTest>

using namespace Nox;

TextTable ExtractTable::begin()
{
    return {"setup", "scenario", "action", "notifications", "errors"};
}

void ExtractTable::run()
{
    QFETCH(QString, setup);
    QFETCH(QString, scenario);
    QFETCH(QString, action);
    QFETCH(QString, notifications);
    QFETCH(QString, errors);

    ExtractRun run(setup, scenario);
    run.start();
    QCOMPARE(run.log.text(), QString());
    if (!action.isEmpty())
        QTRY_VERIFY_WITH_TIMEOUT(run.stage.hangs(QStringLiteral("dump")), TestSandbox::Patience);
    if (action == QLatin1String("cancel"))
        run.worker->cancel();
    else if (action == QLatin1String("delete"))
        run.worker.reset();

    const int grace = action.isEmpty() ? TestSandbox::Patience : TestSandbox::GraceAfterKill;
    QTRY_VERIFY_WITH_TIMEOUT(run.stage.isQuiet(), grace);
    QCOMPARE(run.log.settled(notifications), notifications);
    QCOMPARE(run.stage.errors(), errors);
    run.worker.reset();
    QCOMPARE(run.log.text(), notifications);
    QVERIFY(run.stage.isQuiet());
}
