#include <nox/jobs/ToolSetup.h>

#include <nox/front/ToolEnvironment.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

namespace Nox {

namespace {

bool isProgram(const QString &path)
{
    const QFileInfo file(path);
    return file.isFile() && file.isExecutable();
}

bool isOwnAndSafe(const QString &path)
{
    const QFileInfo file(path);
    constexpr QFile::Permissions ofOthers = QFile::WriteGroup | QFile::WriteOther;
    return file.exists() && file.ownerId() == ::geteuid() && (file.permissions() & ofOthers) == 0;
}

/** Unlike QDir::mkpath(), this does not leave the permissions to the umask. */
bool makePrivateFolder(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    if (::mkdir(name.constData(), S_IRWXU) == 0 || errno == EEXIST)
        return true;
    return errno == ENOENT && makePrivateFolder(QFileInfo(path).absolutePath())
        && ::mkdir(name.constData(), S_IRWXU) == 0;
}

QString defaultToolFile()
{
    QString own = ToolSetup::ownToolFile();
    if (QFileInfo(own).isFile() && isOwnAndSafe(own) && isOwnAndSafe(QFileInfo(own).absolutePath()))
        return own;
    return QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("yt.zip"));
}

} // namespace

void ToolSetup::prepareEnvironment()
{
    QByteArray path = QFile::encodeName(QCoreApplication::applicationDirPath());
    const QByteArray others = qgetenv("PATH");
    if (!others.isEmpty())
        path += ':' + others;
    qputenv("PATH", path);
    qunsetenv("PYTHONDONTWRITEBYTECODE");
}

ToolSetup::ToolSetup(const QString &toolFile, const QString &pycacheFolder)
    : m_toolFile(toolFile.isEmpty() ? defaultToolFile() : QFileInfo(toolFile).absoluteFilePath())
{
    const QString cache = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    m_pycacheFolder =
        QFileInfo(pycacheFolder.isEmpty() ? cache + QStringLiteral("/noxwebmedia/pycache") : pycacheFolder)
            .absoluteFilePath();
}

QString ToolSetup::pycacheFolder() const
{
    const bool isUsable =
        makePrivateFolder(m_pycacheFolder) && QFileInfo(m_pycacheFolder).isDir() && isOwnAndSafe(m_pycacheFolder);
    return isUsable ? m_pycacheFolder : QString();
}

QString ToolSetup::errorString() const
{
    const QString interpreter = GetPythonExecPath();
    if (!isProgram(interpreter))
        return tr("The Python interpreter is missing: there is no program \"%1\".").arg(interpreter);
    const QFileInfo tool(m_toolFile);
    if (!tool.exists())
        return tr("The download tool is missing: there is no file \"%1\".").arg(m_toolFile);
    if (!tool.isReadable())
        return tr("The download tool \"%1\" cannot be read.").arg(m_toolFile);
    return {};
}

QString ToolSetup::ownToolFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
        + QStringLiteral("/noxwebmedia/yt.zip");
}

QString ToolSetup::joiningErrorString()
{
    const QString ffmpeg = QCoreApplication::applicationDirPath() + QStringLiteral("/ffmpeg");
    if (!isProgram(ffmpeg))
        return tr("Streams cannot be joined or encoded: there is no program \"%1\".").arg(ffmpeg);
    return {};
}

} // namespace Nox
