#include "tests/desk/DeskUser.h"
#include "tests/jobs/HostSandbox.h"
#include "tests/support/DemoPage.h"
#include "tests/util/Rows.h"

#define QTRY_LATER(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, 120000)

/** The window with the real tool and the real ffmpeg, on a page that is served on the loopback address. */
class DeskRealTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void download();
};

void DeskRealTest::download()
{
    const HostSandbox stage;
    DemoPage page;
    QVERIFY(page.serve());
    DeskUser user;
    user.readPage(page.url());
    QTRY_LATER(user.sees("streams"));
    QVERIFY(user.text("title").startsWith("Open the café/bar?"_s));
    QTRY_LATER(user.controller().thumbnail().picture().size() == QSize(320, 180));
    const QModelIndex size = user.controller().streams().index(0, NoxDesk::StreamTableModel::Size);
    QTRY_LATER(size.data().toString() == "3.1 MB"_s);

    QVERIFY(user.press("download"));
    QTRY_LATER(user.sees("openFile", 0) || user.sees("retry", 0));
    QVERIFY2(user.sees("openFile", 0), qPrintable(user.text("status", 0)));
    QCOMPARE(stage.files().size(), 1);
}

QTEST_MAIN(DeskRealTest)
#include "DeskRealTest.moc"
