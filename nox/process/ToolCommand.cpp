#include <nox/process/ToolCommand.h>

#include <nox/process/ProgramPaths.h>

namespace Nox {

const QString YD_TEMP_MARK = QStringLiteral("YDTMP_");

QString ToolCommand::escaped(const QString &text)
{
    QString result = text;
    return result.replace(QLatin1Char('"'), QLatin1String(R"(""")"));
}

QString ToolCommand::quoted(const QString &text)
{
    return QStringLiteral("\"%1\"").arg(escaped(text));
}

QString ToolCommand::head(const QString &toolPath, const QString &pycacheDir)
{
    return quoted(ProgramPaths::interpreter()) + QLatin1Char(' ')
        + QStringLiteral("-X pycache_prefix=\"%1\" ").arg(escaped(pycacheDir)) + quoted(toolPath);
}

bool ToolCommand::needsCertificateSwitch(const QString &text)
{
    return text.contains(QLatin1String("yt.zip"));
}

} // namespace Nox
