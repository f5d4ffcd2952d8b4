#include "tests/support/DownloadTable.h"

#include "tests/support/Setup.h"
#include "tests/support/SignalLog.h"
#include "tests/support/TestSandbox.h"

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

    TestSandbox stage;
    const Setup applied(setup, stage);
    stage.play(scenario.replace(QStringLiteral("ROOT"), stage.path(QString())));
    std::unique_ptr<WebMediaDownloader> downloader = stage.newDownloader();
    const SignalLog log(downloader.get());
    downloader->download(Setup::url(), applied.profile(), applied.destination());
    if (moment == QLatin1String("end"))
        QTRY_COMPARE_WITH_TIMEOUT(log.text(), notifications, TestSandbox::Patience);
    else if (!moment.isEmpty())
        QTRY_VERIFY_WITH_TIMEOUT(stage.hangs(moment), TestSandbox::Patience);
    if (verb == QLatin1String("cancel"))
        downloader->cancel();
    else if (verb == QLatin1String("clear"))
        downloader->clear();
    else if (verb == QLatin1String("delete"))
        downloader.reset();

    const int grace = verb.isEmpty() ? TestSandbox::Patience : TestSandbox::GraceAfterKill;
    if (verb != QLatin1String("clear"))
        QTRY_VERIFY_WITH_TIMEOUT(stage.isQuiet(), grace);
    QTRY_COMPARE_WITH_TIMEOUT(log.text(), notifications, TestSandbox::Patience);
    QTest::qWait(30);
    QCOMPARE(log.text(), notifications);
    QCOMPARE(stage.files(), left.first());
    const QString found = stage.errors();
    if (!errors.endsWith(QLatin1Char('*')) || !found.startsWith(errors.chopped(1)))
        QCOMPARE(found, errors);

    downloader.reset();
    QCOMPARE(stage.files(), left.last());
    QVERIFY(stage.isElsewhereUntouched());
    QTRY_VERIFY_WITH_TIMEOUT(stage.isQuiet(), TestSandbox::GraceAfterKill);
    QCOMPARE(log.text(), notifications);
}
