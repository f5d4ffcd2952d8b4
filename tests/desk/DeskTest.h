#pragma once

#include "tests/desk/DeskUser.h"
#include "tests/jobs/HostSandbox.h"
#include "tests/util/Files.h"
#include "tests/util/Rows.h"

#include <QtTest>

#include <memory>

#define QTRY_SOON(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, HostSandbox::Timeout)
#define QTRY_SOON_COMPARE(actual, expected) QTRY_COMPARE_WITH_TIMEOUT(actual, expected, HostSandbox::Timeout)

/** What the tests of the window share: each test function has a sandbox with stand-ins, and a user at a new window. */
class DeskTest : public QObject
{
    Q_OBJECT

protected Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

protected:
    /** Puts a shell script into the folder where programs are found first. */
    void installScript(const QString &name, const QString &body);

    void restart(); ///< Ends the program, and begins another one.

    QStringList opened() const; ///< What xdg-open was asked to open; it fails with NOX_OPENED as its exit code.

    std::unique_ptr<HostSandbox> m_stage;
    std::unique_ptr<DeskUser> m_user;
};
