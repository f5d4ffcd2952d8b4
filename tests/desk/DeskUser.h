#pragma once

#include "hosts/desk/model/DeskController.h"
#include "hosts/desk/view/MainWindow.h"

#include <QtTest>
#include <QtWidgets>

/** Somebody at the window: sees what is shown, presses what can be pressed. */
class DeskUser
{
public:
    DeskUser();

    static QString pageAddress() { return QStringLiteral("http://x/"); }

    NoxDesk::DeskController &controller() { return m_controller; }
    NoxDesk::MainWindow &window() { return m_window; }
    Nox::DownloadQueue &downloads() { return m_controller.downloads(); }

    /** A row of the downloads, or null. */
    QWidget *row(int row);

    /** The widget of that name that is shown, in a row of the downloads or outside of them; or null. */
    QWidget *find(const char *name, int row = -1);

    template <typename Widget>
    Widget *find(const char *name, int row = -1)
    {
        return qobject_cast<Widget *>(find(name, row));
    }

    bool sees(const char *name, int row = -1) { return find(name, row) != nullptr; }
    QString text(const char *name, int row = -1); ///< of a label or field; empty when it is not shown
    bool canPress(const char *name, int row = -1);

    /** Presses a button, or takes an entry of the row's menu. @return whether it is there and can be pressed */
    bool press(const char *name, int row = -1);

    bool seesFailure(int row); ///< Whether what went wrong is shown, with the details, which are asked for.

    void type(const char *name, const QString &text);      ///< Replaces what is in the field.
    void readPage(const QString &address = pageAddress()); ///< Types the address and presses Enter.
    bool seesPage();                                       ///< Reads the page, and waits until its streams are there.
    void choose(const QString &quality);                   ///< Picks the stream of that quality in the table.

    /** Downloads the stream of that quality; reads the page before, unless one is there. @return whether it began */
    bool beginDownload(const QString &quality);

    QDialog *openPreferences();
    QString list(); ///< The downloads in their order, "file=State file=State"; files without ".mp4".
    QString chosen() { return m_controller.plan().stream().getName(); } ///< Code of the chosen stream.

private:
    QAction *action(const char *name, int row);

    NoxDesk::DeskController m_controller;
    QAbstractItemModelTester m_tester{&downloads(), QAbstractItemModelTester::FailureReportingMode::QtTest};
    NoxDesk::MainWindow m_window;
};
