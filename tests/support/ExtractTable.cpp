#include "tests/support/ExtractTable.h"

#include "tests/support/Setup.h"
#include "tests/support/SignalLog.h"
#include "tests/support/TestSandbox.h"

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

    TestSandbox stage;
    const Setup applied(setup, stage);
    stage.play(scenario);
    std::unique_ptr<WebMediaInfoExtractor> extractor = stage.newExtractor();
    const SignalLog log(extractor.get());
    extractor->getMediaInfoBySignal(Setup::url());
    QCOMPARE(log.text(), QString());
    if (!action.isEmpty())
        QTRY_VERIFY_WITH_TIMEOUT(stage.hangs(QStringLiteral("dump")), TestSandbox::Patience);
    if (action == QLatin1String("cancel"))
        extractor->cancel();
    else if (action == QLatin1String("delete"))
        extractor.reset();

    const int grace = action.isEmpty() ? TestSandbox::Patience : TestSandbox::GraceAfterKill;
    QTRY_VERIFY_WITH_TIMEOUT(stage.isQuiet(), grace);
    QTRY_COMPARE_WITH_TIMEOUT(log.text(), notifications, TestSandbox::Patience);
    QTest::qWait(30);
    QCOMPARE(log.text(), notifications);
    QCOMPARE(stage.errors(), errors);
    extractor.reset();
    QCOMPARE(log.text(), notifications);
    QVERIFY(stage.isQuiet());
}
