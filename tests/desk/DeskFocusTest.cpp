#include "hosts/desk/Translation.h"
#include "hosts/desk/view/ElidedLabel.h"
#include "tests/desk/DeskTest.h"
#include "tests/support/TextTable.h"

#include <QAccessible>
#include <QApplication>
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
    void textHasNoSay();
    void titleFollowsTheWidth();
    void cancelKeepsFocus();
    void rowsAreReachedInOrder();
    void typingWhileReading_data();
    void typingWhileReading();
    void oneDownloadForTwoClicks();
    void downloadKeepsFocus();

private:
    int rowWithFocus() const;
    QString cutControls() const;
};

/** The row of the downloads that holds the focus, or -1. */
int DeskFocusTest::rowWithFocus() const
{
    for (int row = 0; row < m_user->downloads().rowCount(); ++row) {
        if (m_user->row(row)->isAncestorOf(QApplication::focusWidget()))
            return row;
    }
    return -1;
}

/** Names of the controls that cannot be seen in their full width when the keyboard comes to them. */
QString DeskFocusTest::cutControls() const
{
    QStringList result;
    const QList<QWidget *> widgets = m_user->window().findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        if ((widget->focusPolicy() & Qt::TabFocus) == 0 || !widget->isVisible() || !widget->isEnabled())
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
    QTest::addColumn<QLocale::Language>("language");
    QTest::newRow("English") << QLocale::English;
    QTest::newRow("German") << QLocale::German;
}

/** Every control can be reached by Tab, has a name of its own for screen readers, and a mnemonic of its own. */
void DeskFocusTest::keyboard()
{
    QFETCH(QLocale::Language, language);
    m_user.reset();
    installTranslation(QLocale(language));
    m_user = std::make_unique<DeskUser>();
    QVERIFY(m_user->beginDownload("1080P"_s));
    QTRY_SOON(m_user->sees("openFile", 0));
    QGuiApplication::clipboard()->setText("http://x/other"_s);
    QTRY_SOON(m_user->sees("clipboardOffer"));
    QCOMPARE(m_user->find("read")->property("text").toString(),
             language == QLocale::German ? "Seite &lesen"_s : "&Read page"_s);

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
        const bool isControl = (widget->focusPolicy() & Qt::TabFocus) != 0 && widget->focusProxy() == nullptr;
        if (!isControl || !widget->isVisible() || !widget->isEnabled() || widget->objectName().startsWith(u"qt_"))
            continue;
        QVERIFY2(reached.contains(widget), qPrintable(widget->objectName()));
        QVERIFY2(!widget->accessibleName().isEmpty() || !text.isEmpty(), qPrintable(widget->objectName()));
    }
    QVERIFY(mnemonics.size() >= 9);
}

/** Screen readers go through a window in the order of its widgets: as they stand on the screen, all named, no markup.
 */
void DeskFocusTest::readAloud()
{
    m_user->type("address", "http://x/"_s + QString(300, u'n')); // cut texts have tooltips
    QTest::keyClick(m_user->find("address"), Qt::Key_Return);
    QTRY_SOON(m_user->sees("streams"));
    for (const QString &quality : {"360P"_s, "128K"_s, "160K"_s})
        QVERIFY(m_user->beginDownload(quality));
    QTRY_SOON(m_user->canPress("openFile", 0) && m_user->canPress("openFile", 2));
    m_user->type("destination", "new/a.mp4"_s);
    m_user->openMenu(0);
    QTRY_SOON(m_user->sees("preferredFolder"));
    const QList<QWidget *> widgets = m_user->window().findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        if (!widget->isVisible() || widget->objectName().startsWith(u"qt_"))
            continue;
        QHelpEvent hover(QEvent::ToolTip, {}, widget->mapToGlobal(QPoint(1, 1)));
        QApplication::sendEvent(widget, &hover);
        const QAccessibleInterface *read = QAccessible::queryAccessibleInterface(widget);
        QVERIFY2(!read->text(QAccessible::Description).contains(u'<'), qPrintable(widget->objectName()));
        if ((widget->focusPolicy() & Qt::TabFocus) != 0 && widget->focusProxy() == nullptr)
            QVERIFY2(!read->text(QAccessible::Name).isEmpty(),
                     qPrintable(widget->objectName() + QLatin1Char(' ')
                                + QString::fromLatin1(widget->metaObject()->className())));
    }
    const auto isInOrder = [](const QObjectList &parts) {
        QPoint last;
        for (QObject *part : parts) {
            const auto *widget = qobject_cast<QWidget *>(part);
            if (widget == nullptr || !widget->isVisible())
                continue;
            const bool isBelow = widget->geometry().top() >= last.y();
            if (!isBelow && widget->x() < last.x())
                return false;
            last = QPoint(widget->x(), isBelow ? widget->geometry().bottom() : last.y());
        }
        return true;
    };
    QVERIFY(isInOrder(m_user->find("download")->parentWidget()->children()));
    QVERIFY(isInOrder(m_user->row(0)->parentWidget()->children()));
    QCOMPARE(m_user->find("preferredFolder")->accessibleName(), "Folder for downloads"_s);
    QWidget *dialog = m_user->find("preferredFolder")->window();
    QStringList names;
    const QList<QPushButton *> buttons = dialog->findChildren<QPushButton *>();
    for (const QPushButton *button : buttons)
        names += button->accessibleName().isEmpty() ? button->text() : button->accessibleName();
    QCOMPARE(names.removeDuplicates(), 0);
}

/** No text decides how wide the window is, and in a small one everything can be seen and reached. */
void DeskFocusTest::longTexts()
{
    QFETCH(QLocale::Language, language);
    m_user.reset();
    installTranslation(QLocale(language));
    m_user = std::make_unique<DeskUser>();
    const QString text(700, u'W');
    const QString page = HostSandbox::pageScenario().replace("Clip"_s, text);
    HostSandbox::play(page + "\n137: announce mp4|err ERROR: "_s + text + "|exit 1\n18: announce mp4|hang"_s);
    QVERIFY(m_user->beginDownload("1080P"_s));
    QTRY_SOON(m_user->seesFailure(0));
    m_user->choose("360P"_s);
    m_user->type("destination", m_stage->videos() + QLatin1Char('/') + text.left(200) + ".mp4"_s);
    QVERIFY(m_user->press("download"));
    m_user->type("destination", m_stage->path(text + QLatin1Char('/') + text)); // for the words that refuse it
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

/** A label whose text changes often is not measured anew each time. */
void DeskFocusTest::textHasNoSay()
{
    ElidedLabel label(Qt::ElideMiddle);
    const QSize empty = label.sizeHint();
    label.setText(QString(200, QLatin1Char('n')));
    QCOMPARE(label.sizeHint(), empty);
    QVERIFY(empty.height() >= label.fontMetrics().height());
}

void DeskFocusTest::titleFollowsTheWidth()
{
    HostSandbox::play("dump: json %1 137"_s.arg(QString(80, QLatin1Char('n'))));
    m_user->window().resize(1000, 700);
    m_user->readPage();
    QTRY_SOON(m_user->sees("title"));
    auto *title = qobject_cast<QTextEdit *>(m_user->find("title"));
    const auto isWhole = [title] { return title->document()->size().height() <= title->height(); };
    QTRY_SOON(isWhole());
    const int before = title->height();
    m_user->window().resize(500, 700);
    QTRY_SOON(title->height() > before && isWhole());
    m_user->window().resize(1000, 700);
    QTRY_SOON_COMPARE(title->height(), before);
}

void DeskFocusTest::cancelKeepsFocus()
{
    HostSandbox::playPage("18: announce mp4|hang\n140: announce m4a|hang"_s);
    QVERIFY(m_user->beginDownload("360P"_s));
    QVERIFY(m_user->beginDownload("128K"_s));
    QTRY_SOON(m_user->sees("cancel", 0) && m_user->sees("cancel", 1));
    m_user->find("cancel", 1)->setFocus();
    QTest::keyClick(m_user->find("cancel", 1), Qt::Key_Space);
    QCOMPARE(rowWithFocus(), 1);
    QTRY_SOON_COMPARE(m_user->text("status", 1), "Cancelled"_s);
    QCOMPARE(rowWithFocus(), 1);
    QVERIFY(m_user->sees("cancel", 0));
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
    QStringList reached;
    for (int i = 0; i < 9; ++i) { // three rows
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        reached += "%1%2"_s.arg(rowWithFocus()).arg(QApplication::focusWidget()->objectName());
    }
    QCOMPARE(reached.join(QLatin1Char(' ')),
             "0details 0openFile 0rowMenu 1details 1openFile 1rowMenu 2details 2openFile 2rowMenu"_s);
}

void DeskFocusTest::typingWhileReading_data()
{
    const TextTable row{"typed", "focused"};
    row("the next address", "http://y/", "address");
    row("nothing", "", "streams");
}

void DeskFocusTest::typingWhileReading()
{
    HostSandbox::play("dump: wait go|json Clip 137"_s);
    m_user->readPage();
    QFETCH(QString, typed);
    QTest::keyClicks(QApplication::focusWidget(), typed);
    m_stage->let("go"_s);
    QTRY_SOON(m_user->sees("streams"));
    QTest::qWait(0);
    QCOMPARE(m_user->text("address"), typed.isEmpty() ? DeskUser::pageAddress() : typed);
    QTEST(QApplication::focusWidget()->objectName(), "focused");
}

void DeskFocusTest::oneDownloadForTwoClicks()
{
    QVERIFY(m_user->seesPage());
    QWidget *button = m_user->find("download");
    QTest::mouseClick(button, Qt::LeftButton);
    QTest::mouseDClick(button, Qt::LeftButton);
    QTest::mouseRelease(button, Qt::LeftButton);
    QCOMPARE(m_user->downloads().rowCount(), 1);
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r"_s, true);
    QApplication::sendEvent(m_user->find("destination"), &held);
    QCOMPARE(m_user->downloads().rowCount(), 1);
}

/** The name that was given is taken from then on, but another one is there at once. */
void DeskFocusTest::downloadKeepsFocus()
{
    QVERIFY(m_user->seesPage());
    m_user->type("destination", m_stage->video("mine.mp4"_s));
    m_user->find("download")->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QCOMPARE(QApplication::focusWidget()->objectName(), "download"_s);
    QCOMPARE(m_user->text("destination"), m_stage->video("mine(1).mp4"_s));
    QTRY_SOON(m_user->sees("openFile", 0));
    QCOMPARE(m_user->text("fileName", 0), "mine.mp4"_s);
}

QTEST_MAIN(DeskFocusTest)
#include "DeskFocusTest.moc"
