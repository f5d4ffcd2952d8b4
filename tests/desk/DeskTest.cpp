#include "tests/desk/DeskTest.h"

#include <QClipboard>
#include <QTranslator>

void DeskTest::initTestCase()
{
    QLocale::setDefault(QLocale::c());
    QCoreApplication::setOrganizationName("noxwebmedia"_s);
    QCoreApplication::setApplicationName("desk-test"_s);
}

void DeskTest::init()
{
    m_stage = std::make_unique<HostSandbox>();
    HostSandbox::installStandIns();
    QGuiApplication::clipboard()->clear();
    m_user = std::make_unique<DeskUser>();
}

void DeskTest::cleanup()
{
    m_user.reset();
    qDeleteAll(QCoreApplication::instance()->findChildren<QTranslator *>());
    QTRY_SOON(m_stage->isQuiet());
    m_stage.reset();
}
