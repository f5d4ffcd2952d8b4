#include <nox/log/ModuleLog.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <array>
#include <cstdarg>
#include <cstdio>

namespace {

constexpr size_t lineCapacity = 1024;
constexpr qint64 copyThreshold = 8192; // bytes from which a copy of the file is kept

// "/Player.1.log" in the temporary folder for an application .../Player; empty when it has no name.
QString logFilePath()
{
    QString module;
    GetModuleName(module);
    const auto lastSlash = module.lastIndexOf(QLatin1Char('/'));
    if (lastSlash <= 0)
        return QString();
    return QDir::tempPath() + module.mid(lastSlash) + QLatin1String(".1.log");
}

void refreshCopy(const QString &path)
{
    const auto lastOne = path.lastIndexOf(QLatin1Char('1'));
    if (lastOne < 0)
        return;
    QString copy = path;
    copy.replace(lastOne, 1, QLatin1Char('2'));
    QFile::remove(copy);
    QFile::copy(path, copy);
}

} // namespace

void GetModuleName(QString &name)
{
    name = QCoreApplication::applicationFilePath();
}

int WriteLog(QString fmt, ...)
{
    std::array<char, lineCapacity> line{};
    const QByteArray format = fmt.toLocal8Bit();
    va_list arguments;
    va_start(arguments, fmt);
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_CLANG("-Wformat-nonliteral") // the format is the caller's
    static_cast<void>(std::vsnprintf(line.data(), line.size(), format.constData(), arguments));
    QT_WARNING_POP
    va_end(arguments);

    const QString path = logFilePath();
    if (path.isEmpty())
        return 1;
    QFile file(path);
    if (!file.open(QIODevice::Append))
        return 1;

    // The line is read as Latin-1 and written in the encoding of the locale.
    file.write(QString::fromLatin1(line.data()).toLocal8Bit() + '\n');
    file.flush();
    const qint64 size = file.size();
    file.close();

    if (size >= copyThreshold)
        refreshCopy(path);
    return 1;
}
