#include "hosts/desk/Translation.h"
#include "tests/desk/DeskTest.h"
#include "tests/support/TextTable.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QHelpEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QTextEdit>

using namespace NoxDesk;

/** The window with stand-in programs: keyboard, mouse and focus, and what of it can be seen. */
class DeskFocusTest : public DeskTest
{
    Q_OBJECT

private Q_SLOTS:
    void keyboard_data();
    void keyboard();
    void readAloud();
    void longTexts_data() { keyboard_data(); }
    void longTexts();
    void titleFollowsTheWidth();
    void rowsAreReachedInOrder();
    void typingWhileReading();
    void oneDownloadForTwoClicks();

private:
    void speak(const QString &language);
    static bool isTabStop(const QWidget &widget);
    static bool isInOrder(const QWidget &parent);
    QString cutControls() const;
};

/** Begins the program anew in that language. */
void DeskFocusTest::speak(const QString &language)
{
    m_user.reset();
    installTranslation(QLocale(language));
    m_user = std::make_unique<DeskUser>();
}

bool DeskFocusTest::isTabStop(const QWidget &widget)
{
    return (widget.focusPolicy() & Qt::TabFocus) != 0 && widget.focusProxy() == nullptr && widget.isVisible()
        && widget.isEnabled() && !widget.objectName().startsWith(u"qt_");
}

/** Whether the widgets in it follow each other as they stand on the screen: in lines from left to right. */
bool DeskFocusTest::isInOrder(const QWidget &parent)
{
    QPoint last;
    const QList<QWidget *> parts = parent.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (const QWidget *part : parts) {
        if (!part->isVisible())
            continue;
        const bool isBelow = part->geometry().top() >= last.y();
        if (!isBelow && part->x() < last.x())
            return false;
        last = QPoint(part->x(), isBelow ? part->geometry().bottom() : last.y());
    }
    return true;
}

/** Names of the controls that cannot be seen in their full width when the keyboard comes to them. */
QString DeskFocusTest::cutControls() const
{
    QStringList result;
    const QList<QWidget *> widgets = m_user->window().findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        if (!isTabStop(*widget))
            continue;
        widget->setFocus(Qt::TabFocusReason);
        for (QWidget *area = widget->parentWidget(); area != nullptr; area = area->parentWidget()) {
            if (auto *scrolled = qobject_cast<QScrollArea *>(area))
                scrolled->ensureWidgetVisible(widget);
        }
        const QRect place(widget->mapTo(&m_user->window(), QPoint()), widget->size());
        const QSize seen = widget->visibleRegion().boundingRect().size();
        const bool isWide = place.left() < 0 || place.right() > m_user->window().width();
        const bool isScrolled = widget->inherits("QAbstractScrollArea"); // may be higher than what shows it
        if (isWide || (!isScrolled && seen != widget->size()))
            result += widget->objectName();
    }
    return result.join(QLatin1Char(' '));
}

void DeskFocusTest::keyboard_data()
{
    const TextTable row{"language", "read"};
    row("English", "en", "&Read page");
    row("German", "de", "Seite &lesen");
}

/** Every control can be reached by Tab, has a name of its own for screen readers, and a mnemonic of its own. */
void DeskFocusTest::keyboard()
{
    QFETCH(QString, language);
    speak(language);
    QVERIFY(m_user->beginDownload("1080P"_s));
    QTRY_SOON(m_user->sees("openFile", 0));
    QGuiApplication::clipboard()->setText("http://x/other"_s);
    QTRY_SOON(m_user->sees("clipboardOffer"));
    QTEST(m_user->text("read"), "read");

    QSet<QWidget *> reached;
    for (int i = 0; i < 60; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        reached += QApplication::focusWidget();
    }
    QHash<QChar, QString> mnemonics;
    const QList<QWidget *> widgets = m_user->window().findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        const QString text = widget->property("text").toString();
        const auto mark = text.indexOf(QLatin1Char('&'));
        if (widget->isVisible() && mark >= 0 && qobject_cast<QLineEdit *>(widget) == nullptr) {
            const QChar key = text.at(mark + 1).toLower();
            QVERIFY2(!mnemonics.contains(key), qPrintable(text + QLatin1Char('/') + mnemonics.value(key)));
            mnemonics.insert(key, text);
        }
        if (isTabStop(*widget)) {
            QVERIFY2(reached.contains(widget), qPrintable(widget->objectName()));
            QVERIFY2(!widget->accessibleName().isEmpty() || !text.isEmpty(), qPrintable(widget->objectName()));
        }
    }
    QVERIFY(mnemonics.size() >= 9);
}

/** Screen readers go through a window in the order of its widgets: as they stand on the screen, all named, no markup.
 */
void DeskFocusTest::readAloud()
{
    m_user->readPage("http://x/"_s + QString(300, u'n')); // cut texts have tooltips
    QTRY_SOON(m_user->sees("streams"));
    for (const QString &quality : {"360P"_s, "128K"_s, "160K"_s})
        QVERIFY(m_user->beginDownload(quality));
    QTRY_SOON(m_user->canPress("openFile", 0) && m_user->canPress("openFile", 2));
    m_user->type("destination", "new/a.mp4"_s);
    const QDialog *dialog = m_user->openPreferences();
    const QList<QWidget *> widgets = m_user->window().findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        if (!widget->isVisible() || widget->objectName().startsWith(u"qt_"))
            continue;
        QHelpEvent hover(QEvent::ToolTip, {}, widget->mapToGlobal(QPoint(1, 1)));
        QApplication::sendEvent(widget, &hover);
        const QAccessibleInterface *read = QAccessible::queryAccessibleInterface(widget);
        QVERIFY2(!read->text(QAccessible::Description).contains(u'<'), qPrintable(widget->objectName()));
        QVERIFY2(!isTabStop(*widget) || !read->text(QAccessible::Name).isEmpty(),
                 qPrintable(widget->objectName() + QLatin1Char(' ')
                            + QString::fromLatin1(widget->metaObject()->className())));
    }
    QVERIFY(isInOrder(*m_user->find("download")->parentWidget()));
    QVERIFY(isInOrder(*m_user->row(0)->parentWidget()));
    QStringList names;
    const QList<QPushButton *> buttons = dialog->findChildren<QPushButton *>();
    for (const QPushButton *button : buttons)
        names += button->accessibleName().isEmpty() ? button->text() : button->accessibleName();
    QCOMPARE(names.removeDuplicates(), 0);
}

/** No text decides how wide the window is, and in a small one everything can be seen and reached. */
void DeskFocusTest::longTexts()
{
    QFETCH(QString, language);
    speak(language);
    const QString text(700, u'W');
    const QString page = HostSandbox::pageScenario().replace("Clip"_s, text);
    HostSandbox::play(page + "\n137: announce mp4|err ERROR: "_s + text + "|exit 1\n18: announce mp4|hang"_s);
    QVERIFY(m_user->beginDownload("1080P"_s));
    QTRY_SOON(m_user->seesFailure(0));
    m_user->choose("360P"_s);
    m_user->type("destination", m_stage->video(text.left(200) + ".mp4"_s));
    QVERIFY(m_user->press("download"));
    m_user->type("destination", m_stage->path(text + QLatin1Char('/') + text)); // for the message that refuses it
    HostSandbox::play("dump: err ERROR: "_s + text + "|exit 1"_s);
    m_user->readPage(DeskUser::pageAddress() + text);
    QTRY_SOON(m_user->sees("dismissFailure"));
    QGuiApplication::clipboard()->setText("http://y/"_s + text);
    QTRY_SOON(m_user->sees("clipboardOffer"));

    const QSize size(600, 480);
    QTest::qWait(0); // for layouts that are still to be made
    const QSize least = m_user->window().minimumSizeHint();
    QVERIFY2(least.width() <= size.width() && least.height() <= size.height(),
             qPrintable("%1x%2"_s.arg(least.width()).arg(least.height())));
    m_user->window().resize(size);
    QTRY_COMPARE(m_user->window().size(), size);
    QCOMPARE(cutControls(), QString());
}

void DeskFocusTest::titleFollowsTheWidth()
{
    HostSandbox::play("dump: json %1 137"_s.arg(QString(80, QLatin1Char('n'))));
    m_user->window().resize(1000, 700);
    QVERIFY(m_user->seesPage());
    auto *title = m_user->find<QTextEdit>("title");
    const auto isWhole = [title] { return title->document()->size().height() <= title->height(); };
    QTRY_SOON(isWhole());
    const int before = title->height();
    m_user->window().resize(500, 700);
    QTRY_SOON(title->height() > before && isWhole());
    m_user->window().resize(1000, 700);
    QTRY_SOON_COMPARE(title->height(), before);
}

void DeskFocusTest::rowsAreReachedInOrder()
{
    for (const QString &quality : {"360P"_s, "128K"_s, "160K"_s})
        QVERIFY(m_user->beginDownload(quality));
    QTRY_SOON(m_user->sees("openFile", 0) && m_user->sees("openFile", 1) && m_user->sees("openFile", 2));
    m_user->find("read")->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget()->objectName(), "menu"_s);
    m_user->find("downloads")->setFocus();
    for (int row = 0; row < 3; ++row) {
        for (const char *name : {"details", "openFile", "rowMenu"}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget(), m_user->find(name, row));
        }
    }
}

void DeskFocusTest::typingWhileReading()
{
    QVERIFY(m_user->seesPage());
    QTRY_COMPARE(QApplication::focusWidget()->objectName(), "streams"_s);
    HostSandbox::play("dump: wait go|json Second 137"_s);
    m_user->readPage("http://y/"_s);
    QTest::keyClicks(QApplication::focusWidget(), "http://z/"_s);
    m_stage->let("go"_s);
    QTRY_SOON(m_user->text("title") == "Second"_s);
    QCOMPARE(m_user->text("address"), "http://z/"_s);
    QCOMPARE(QApplication::focusWidget()->objectName(), "address"_s);
}

/** The name that was given is taken from then on, but another one is there at once, and the button keeps the focus. */
void DeskFocusTest::oneDownloadForTwoClicks()
{
    QVERIFY(m_user->seesPage());
    m_user->type("destination", m_stage->video("mine.mp4"_s));
    QWidget *button = m_user->find("download");
    button->setFocus();
    QTest::mouseClick(button, Qt::LeftButton);
    QTest::mouseDClick(button, Qt::LeftButton);
    QTest::mouseRelease(button, Qt::LeftButton);
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r"_s, true);
    QApplication::sendEvent(m_user->find("destination"), &held);
    QVERIFY(m_user->downloads().rowCount() == 1 && !m_user->sees("downloadAgain"));
    QCOMPARE(QApplication::focusWidget(), button);
    QCOMPARE(m_user->text("destination"), m_stage->video("mine(1).mp4"_s));
    QTRY_SOON(m_user->sees("openFile", 0));
    QCOMPARE(m_user->text("fileName", 0), "mine.mp4"_s);
}

QTEST_MAIN(DeskFocusTest)
#include "DeskFocusTest.moc"
