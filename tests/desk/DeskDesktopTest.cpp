#include "hosts/desk/SingleInstance.h"
#include "tests/desk/DeskTest.h"

#include <QDBusConnection>

using namespace NoxDesk;

/** The desktop's services, played on a bus of the test's own. */
class FakeDesktop : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public Q_SLOTS:
    QStringList GetCapabilities() { return {"actions"_s, "body-markup"_s}; }

    uint Notify(const QString &, uint replaced, const QString &, const QString &title, const QString &body,
                const QStringList &actions, const QVariantMap &hints, int)
    {
        notified += QString::number(replaced) + QLatin1Char('|') + title + QLatin1Char('|') + body + QLatin1Char('|')
            + actions.value(0) + QLatin1Char('|') + hints.value("desktop-entry"_s).toString();
        return replaced != 0 ? replaced : static_cast<uint>(notified.size()) + 6;
    }

    void CloseNotification(uint id) { closed += id; }

Q_SIGNALS:
    void ActionInvoked(uint id, const QString &action);

public:
    QStringList notified;
    QList<uint> closed;
};

/** What the desktop offers, and what starts of the program have to do with each other. */
class DeskDesktopTest : public DeskTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void notifies();
    void openingFails();
    void secondStart();

public Q_SLOTS:
    void onUpdate(const QString &, const QVariantMap &values)
    {
        m_taskbar +=
            values.value("progress-visible"_s).toBool() ? qRound(values.value("progress"_s).toDouble() * 100) : -1;
    }

private:
    FakeDesktop m_desktop;
    QList<int> m_taskbar;
};

void DeskDesktopTest::initTestCase()
{
    DeskTest::initTestCase();
    QGuiApplication::setDesktopFileName("nox-desk"_s);
    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "services"_s);
    QVERIFY(bus.registerObject("/org/freedesktop/Notifications"_s, &m_desktop, QDBusConnection::ExportAllContents));
    QVERIFY(bus.registerService("org.freedesktop.Notifications"_s));
    QVERIFY(bus.connect(QString(), QString(), "com.canonical.Unity.LauncherEntry"_s, "Update"_s, this,
                        SLOT(onUpdate(QString, QVariantMap))));
}

/** While nobody sees the window, the desktop tells what has happened. A click brings the window up. */
void DeskDesktopTest::notifies()
{
    HostSandbox::playPage("18: announce mp4|progress 50.0 100|wait go"_s);
    QVERIFY(m_user->seesPage());
    m_user->choose("360P"_s);
    m_user->type("destination", "a & b.mp4"_s);
    QVERIFY(m_user->press("download"));
    QWidget other;
    other.show();
    other.activateWindow();
    QTRY_SOON(!m_user->window().isActiveWindow());
    QTRY_SOON(m_taskbar.contains(50));
    m_user->window().showMinimized();
    m_stage->let("go"_s);
    QTRY_SOON_COMPARE(m_desktop.notified, QStringList("0|Download finished|a &amp; b.mp4|default|nox-desk"_s));
    Q_EMIT m_user->controller().noticed("Download failed"_s, "c.mp4"_s); // takes the place of the one before
    QTRY_SOON_COMPARE(m_desktop.notified.last(), "7|Download failed|c.mp4\nMessages before: 1|default|nox-desk"_s);
    QTRY_SOON_COMPARE(m_taskbar.last(), -1);
    Q_EMIT m_desktop.ActionInvoked(99, "default"_s); // of another program
    QVERIFY(m_user->window().isMinimized());
    Q_EMIT m_desktop.ActionInvoked(7, "default"_s);
    QTRY_SOON(!m_user->window().isMinimized() && m_user->window().isActiveWindow());
    QTRY_SOON_COMPARE(m_desktop.closed, QList<uint>{7});
}

/** The program that opens things starts, and tells a moment later that it found none. */
void DeskDesktopTest::openingFails()
{
    QVERIFY(m_user->beginDownload("360P"_s));
    QTRY_SOON(m_user->sees("openFile", 0));
    qputenv("NOX_OPENED", "3");
    for (const char *name : {"openFile", "openPage"}) {
        QVERIFY(m_user->press(name, 0));
        QTRY_SOON(m_user->text("warning").contains("No program"_s));
        m_user->find("warning")->close();
    }
    QVERIFY(QFile::remove(m_stage->video("Clip.mp4"_s)));
    QVERIFY(m_user->press("openFile", 0));
    QCOMPARE(m_user->text("status", 0), "The file no longer exists"_s);
    QVERIFY(!m_user->sees("warning") && !m_user->canPress("openFile", 0) && !m_user->canPress("open", 0));
}

/** A second start hands its addresses over, and ends while the first one still works on them. */
void DeskDesktopTest::secondStart()
{
    const QString folder = m_stage->path(QString());
    SingleInstance first(folder);
    QSignalSpy handedOver(&first, &SingleInstance::handedOver);
    QVERIFY(first.begin({"http://x/0"_s}));
    bool goesOn = true;
    const std::unique_ptr<QThread> second(QThread::create([folder, &goesOn] {
        goesOn = SingleInstance(folder).begin({"http://x/1"_s, "http://x/\n2"_s});
    }));
    connect(&first, &SingleInstance::handedOver, this, [&second] { second->wait(HostSandbox::Timeout); });
    second->start();
    QTRY_SOON_COMPARE(handedOver.size(), 1);
    QCOMPARE(handedOver.at(0).at(0).toStringList(), QStringList({"http://x/1"_s, "http://x/\n2"_s}));
    QVERIFY(second->isFinished() && !goesOn);
}

QTEST_MAIN(DeskDesktopTest)
#include "DeskDesktopTest.moc"
