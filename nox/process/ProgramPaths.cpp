#include <nox/process/ProgramPaths.h>

#include <QCoreApplication>

namespace Nox {

QString ProgramPaths::interpreter()
{
    return QStringLiteral("%1/%2").arg(QCoreApplication::applicationDirPath(),
                                       QStringLiteral("python3.10/bin/python3.10"));
}

QString ProgramPaths::ffmpeg()
{
    return QCoreApplication::applicationDirPath() + QLatin1String("/ffmpeg");
}

} // namespace Nox
