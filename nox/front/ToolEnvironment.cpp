#include <nox/front/ToolEnvironment.h>

#include <QCoreApplication>

QString GetPythonExecPath()
{
    return QStringLiteral("%1/%2").arg(QCoreApplication::applicationDirPath(),
                                       QStringLiteral("python3.10/bin/python3.10"));
}
