#include "tests/desk/DeskTest.h"

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
    static const QByteArray path = qgetenv("PATH");
    qputenv("PATH", QFile::encodeName(m_stage->path("bin"_s)) + ':' + path);
    qputenv("XDG_STATE_HOME", QFile::encodeName(m_stage->path("state"_s)));
    qunsetenv("NOX_OPENED");
    installScript("xdg-open"_s, R"(printf '%s\n' "$1" >>"$NOX_STAGE/opened"; exit "${NOX_OPENED:-0}")"_s);
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

void DeskTest::installScript(const QString &name, const QString &body)
{
    QDir().mkpath(m_stage->path("bin"_s));
    const QString script = m_stage->path("bin/"_s + name);
    Files::write(script, "#!/bin/sh\n" + body.toUtf8() + '\n');
    QFile::setPermissions(script, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

void DeskTest::restart()
{
    m_user.reset();
    QTRY_SOON(m_stage->isQuiet());
    m_user = std::make_unique<DeskUser>();
}

QStringList DeskTest::opened() const
{
    const QByteArray lines = Files::content(m_stage->path("notes/opened"_s));
    return QString::fromUtf8(lines).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}
