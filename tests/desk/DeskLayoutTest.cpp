#include "tests/desk/DeskTest.h"
#include "tests/support/TextTable.h"

#include <QHeaderView>
#include <QTableView>

using namespace NoxDesk;

/** What can be seen of the window on screens of several sizes; run again with a scale and with large fonts. */
class DeskLayoutTest : public DeskTest
{
    Q_OBJECT

private Q_SLOTS:
    void fits_data();
    void fits();

private:
    QString cut();
};

/** Names of those needed for a download that are not wholly seen. */
QString DeskLayoutTest::cut()
{
    QString result;
    for (const char *name : {"address", "sound", "destination", "browse", "download"}) {
        const QWidget *widget = m_user->find(name);
        if (widget == nullptr || widget->visibleRegion().boundingRect().size() != widget->size())
            result += QLatin1Char(' ') + QString::fromLatin1(name);
    }
    return result;
}

void DeskLayoutTest::fits_data()
{
    QTest::addColumn<QSize>("screen");
    QTest::addColumn<int>("words");
    const bool isLarge = qEnvironmentVariableIsSet("QT_SCALE_FACTOR") || qEnvironmentVariableIsSet("QT_FONT_DPI");
    for (const QSize &screen : {QSize(640, 480), QSize(1024, 600), QSize(1366, 768)}) {
        for (const int words : {1, 60}) {
            if (!isLarge || screen.width() > 640)
                QTest::addRow("%dx%d, %d words", screen.width(), screen.height(), words) << screen << words;
        }
    }
}

void DeskLayoutTest::fits()
{
    QFETCH(QSize, screen);
    QFETCH(int, words);
    HostSandbox::play(HostSandbox::pageScenario().replace("Clip"_s, "Lighthouses "_s.repeated(words).trimmed())
                      + "\n18: announce mp4|hang"_s);
    QWidget &window = m_user->window();
    const int frame = 2 * window.fontMetrics().lineSpacing() + 8; // title of the window and bar of the desktop
    const QSize room = (QSizeF(screen) / window.devicePixelRatioF()).toSize() - QSize(0, frame);
    window.resize(room);
    QVERIFY(m_user->seesPage());
    QTest::qWait(0); // for layouts that follow from layouts
    QCOMPARE(window.size(), room);
    QCOMPARE(cut(), QString());
    const auto *table = qobject_cast<QTableView *>(m_user->find("streams"));
    QVERIFY(table->viewport()->height() >= 3 * table->rowHeight(0));
    QVERIFY(m_user->find("title")->visibleRegion().boundingRect().height() >= window.fontMetrics().lineSpacing());

    QVERIFY(m_user->beginDownload("360P"_s)); // now the list takes room, too
    QTest::qWait(0);
    QCOMPARE(window.size(), room);
    QCOMPARE(cut(), QString());
    QVERIFY(m_user->find("cancel", 0)->visibleRegion().boundingRect().height() > 10);
}

QTEST_MAIN(DeskLayoutTest)
#include "DeskLayoutTest.moc"
