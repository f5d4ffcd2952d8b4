#include <nox/download/MergeCommand.h>

#include <nox/process/ProgramPaths.h>
#include <nox/process/ToolCommand.h>

#include <QFile>
#include <QFileInfo>

namespace Nox {

namespace {

bool hasSuffix(const QString &file, QLatin1String suffix)
{
    return QFileInfo(file).suffix().compare(suffix, Qt::CaseInsensitive) == 0;
}

} // namespace

bool MergeCommand::copiesVideo(const QString &videoFile)
{
    return hasSuffix(videoFile, QLatin1String("mp4"));
}

QString MergeCommand::freeOutputName(const QString &videoFile)
{
    const QLatin1String suffix(".tmp.mp4");
    QString name = videoFile + suffix;
    for (int number = 0; QFile::exists(name); ++number)
        name = videoFile + QString::number(number) + suffix;
    return name;
}

QStringList MergeCommand::arguments(const QString &videoFile, const QString &audioFile, const QString &outputFile)
{
    const QString input = QStringLiteral("-i");
    const QString copy = QStringLiteral("copy");
    QStringList list{input, ToolCommand::quoted(videoFile), input, ToolCommand::quoted(audioFile)};
    if (copiesVideo(videoFile)) {
        list << QStringLiteral("-vcodec") << copy;
        if (hasSuffix(audioFile, QLatin1String("m4a")))
            list << QStringLiteral("-acodec") << copy;
    }
    return list << ToolCommand::quoted(outputFile);
}

QString MergeCommand::text(const QStringList &arguments)
{
    QString command = ToolCommand::quoted(ProgramPaths::ffmpeg());
    command += QLatin1Char(' ');
    for (const QString &argument : arguments)
        command += argument + QLatin1Char(' ');
    return command;
}

} // namespace Nox
