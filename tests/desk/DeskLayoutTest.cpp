#include "hosts/desk/Translation.h"
#include "tests/desk/DeskTest.h"

using namespace NoxDesk;

/** What can be seen of the window, and reached in it with the keyboard. */
class DeskLayoutTest : public DeskTest
{
    Q_OBJECT

private Q_SLOTS:
    void fits_data();
    void fits();
    void keyboard_data();
    void keyboard();
    void readAloud();
    void longTexts_data() { keyboard_data(); }
    void longTexts();
    void titleFollowsTheWidth();
    void textsFollowTheDirection();

private:
    QString cut();
    static bool isTabStop(const QWidget &widget);
    static bool isInOrder(const QWidget &parent);
    QString cutControls() const;
};

/** Names of those needed for a download that are not wholly seen. */
QString DeskLayoutTest::cut()
{
    QStringList result;
    for (const char *name : {"address", "sound", "destination", "browse", "download"}) {
        const QWidget *widget = m_user->find(name);
        if (widget == nullptr || widget->visibleRegion().boundingRect().size() != widget->size())
            result += QString::fromLatin1(name);
    }
    return result.join(QLatin1Char(' '));
}

bool DeskLayoutTest::isTabStop(const QWidget &widget)
{
    return (widget.focusPolicy() & Qt::TabFocus) != 0 && widget.focusProxy() == nullptr && widget.isVisible()
        && widget.isEnabled() && !widget.objectName().startsWith(u"qt_");
}

/** Whether the widgets in it follow each other as they stand on the screen: in lines from left to right. */
bool DeskLayoutTest::isInOrder(const QWidget &parent)
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
QString DeskLayoutTest::cutControls() const
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

void DeskLayoutTest::fits_data()
{
    QTest::addColumn<QSize>("screen");
    QTest::addColumn<int>("lines"); // of the title
    for (const QSize &screen : {QSize(640, 480), QSize(1024, 600), QSize(1366, 768)}) {
        for (const int lines : {1, 5})
            QTest::addRow("%dx%d, %d lines", screen.width(), screen.height(), lines) << screen << lines;
    }
}

/** On screens of several sizes; run again with a scale and with large fonts. */
void DeskLayoutTest::fits()
{
    QFETCH(QSize, screen);
    QFETCH(int, lines);
    QWidget &window = m_user->window();
    const double scale = qEnvironmentVariable("QT_SCALE_FACTOR", "1"_s).toDouble();
    const double dpi = qEnvironmentVariable("QT_FONT_DPI", "96"_s).toDouble(); // newer versions of Qt scale by it
    QVERIFY(window.devicePixelRatioF() * window.logicalDpiY() >= scale * dpi);
    const QString word = "W"_s.repeated(55) + QLatin1Char(' '); // more than half a line of the widest window
    const QString title = lines == 1 ? "Lighthouses"_s : word.repeated(lines).trimmed();
    HostSandbox::play(HostSandbox::pageScenario().replace("Clip"_s, title) + "\n18: announce mp4|hang"_s);
    const int frame = 2 * window.fontMetrics().lineSpacing() + 8; // title of the window and bar of the desktop
    const QSize room = (QSizeF(screen) / window.devicePixelRatioF()).toSize() - QSize(0, frame);
    window.resize(room);
    QVERIFY(m_user->seesPage());
    QTest::qWait(0); // for layouts that follow from layouts
    QCOMPARE(window.size(), room);
    QCOMPARE(cut(), QString());
    if (dpi > 96 && screen.height() <= 480)
        return; // there is no room for three rows of the table, nor for the list
    const auto *table = m_user->find<QTableView>("streams");
    QVERIFY(table->viewport()->height() >= 3 * table->rowHeight(0));
    const auto *shown = m_user->find<QTextEdit>("title");
    QVERIFY(shown->visibleRegion().boundingRect().height() >= window.fontMetrics().lineSpacing());
    const int shownLines = qRound(shown->document()->size().height() / shown->fontMetrics().lineSpacing());
    QVERIFY2(lines == 1 ? shownLines == 1 : shownLines >= lines, qPrintable(QString::number(shownLines)));
    QVERIFY(m_user->beginDownload("360P"_s)); // now the list takes room, too
    const auto height = [this](QWidget *widget) { return widget->visibleRegion().boundingRect().height(); };
    QTRY_SOON(height(m_user->find("cancel", 0)) > 10); // after layouts that follow from layouts
    QCOMPARE(window.size(), room);
    QCOMPARE(cut(), QString());
    const QWidget *status = m_user->find("status", 0);
    const QString figures = "Fetching video · 124.0 kB / 103.4 MB · 850.0 kB/s · 0:01:06 left"_s;
    const bool isSmall = scale > 1 || dpi > 96 || screen.width() <= 640;
    QVERIFY(isSmall || status->fontMetrics().horizontalAdvance(figures) <= status->width());
    if (QT_VERSION < QT_VERSION_CHECK(6, 0, 0) && (scale > 1 || dpi > 96))
        return; // the message of a failure makes the window higher
    HostSandbox::play("dump: err ERROR: gone|exit 1"_s);
    m_user->readPage("http://y/"_s);
    QTRY_SOON(m_user->sees("dismissFailure"));
    QTRY_SOON(m_user->text("streamsLabel").contains("page before"_s));
    QCOMPARE(height(m_user->find("streamsLabel")), m_user->find("streamsLabel")->height());
    QCOMPARE(window.size(), room);
}

void DeskLayoutTest::keyboard_data()
{
    const TextTable row{"language", "read"};
    row("English", "en", "&Read page");
    row("German", "de", "Seite &lesen");
}

/** Every control can be reached by Tab, and has a mnemonic of its own. */
void DeskLayoutTest::keyboard()
{
    QFETCH(QString, language);
    installTranslation(QLocale(language));
    restart();
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
        QVERIFY2(!isTabStop(*widget) || reached.contains(widget), qPrintable(widget->objectName()));
    }
    QVERIFY(mnemonics.size() >= 9);
}

/** Screen readers and Tab go through the window as it stands on the screen; all is named, and nothing is markup. */
void DeskLayoutTest::readAloud()
{
    m_user->readPage("http://x/"_s + QString(300, u'n')); // cut texts have tooltips
    QTRY_SOON(m_user->sees("streams"));
    for (const QString &quality : {"360P"_s, "128K"_s, "160K"_s})
        QVERIFY(m_user->beginDownload(quality));
    QTRY_SOON(m_user->canPress("openFile", 0) && m_user->canPress("openFile", 1) && m_user->canPress("openFile", 2));
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
    m_user->type("destination", "new/a.mp4"_s);
    const QDialog *dialog = m_user->openPreferences();
    const QList<QWidget *> widgets = m_user->window().findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        if (!widget->isVisible() || widget->objectName().startsWith(u"qt_"))
            continue;
        QHelpEvent hover(QEvent::ToolTip, {}, widget->mapToGlobal(QPoint(1, 1)));
        QApplication::sendEvent(widget, &hover);
        const QAccessibleInterface *read = QAccessible::queryAccessibleInterface(widget);
        const QString name = "%1 %2"_s.arg(widget->objectName(), QLatin1String(widget->metaObject()->className()));
        QVERIFY2(!read->text(QAccessible::Description).contains(u'<'), qPrintable(name));
        QVERIFY2(!isTabStop(*widget) || !read->text(QAccessible::Name).isEmpty(), qPrintable(name));
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
void DeskLayoutTest::longTexts()
{
    QFETCH(QString, language);
    installTranslation(QLocale(language));
    restart();
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
    m_user->window().resize(size);
    QTRY_COMPARE(m_user->window().size(), size);
    QCOMPARE(cutControls(), QString());
}

void DeskLayoutTest::titleFollowsTheWidth()
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

/** Also English texts stand on the right side of a right-to-left layout. */
void DeskLayoutTest::textsFollowTheDirection()
{
    QApplication::setLayoutDirection(Qt::RightToLeft);
    const auto restored = qScopeGuard([] { QApplication::setLayoutDirection(Qt::LeftToRight); });
    restart();
    QVERIFY(m_user->beginDownload("360P"_s));
    QTRY_SOON(m_user->sees("openFile", 0));
    QWidgetList texts{m_user->find("title")};
    const QList<QLabel *> labels = m_user->window().findChildren<QLabel *>();
    std::copy_if(labels.cbegin(), labels.cend(), std::back_inserter(texts),
                 [](const QLabel *label) { return label->isVisible() && !label->text().isEmpty(); });
    QVERIFY(texts.size() >= 8);
    for (QWidget *text : std::as_const(texts)) {
        const QImage picture = text->grab().toImage();
        int x = picture.width() - 1; // comes to the last column with ink
        while (x > 0 && picture.copy(x, 0, 1, picture.height()) == picture.copy(0, 0, 1, picture.height()))
            --x;
        const int gap = m_user->window().width() - text->mapTo(&m_user->window(), QPoint(x, 0)).x();
        QVERIFY2(gap < m_user->window().width() / 8, qPrintable(text->property("text").toString()));
    }
}

QTEST_MAIN(DeskLayoutTest)
#include "DeskLayoutTest.moc"
