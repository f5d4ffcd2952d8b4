#pragma once

#include <QString>
#include <QStringList>

/** How ffmpeg is told to join a video file and an audio file into one MP4 file. */
namespace Nox::MergeCommand {

/** Whether the video stream fits into an MP4 file as it is. */
bool copiesVideo(const QString &videoFile);

/** A file name beside the video file that no file has yet. */
QString freeOutputName(const QString &videoFile);

/** ffmpeg's arguments. Streams that fit the container are copied, others are encoded again. */
QStringList arguments(const QString &videoFile, const QString &audioFile, const QString &outputFile);

/** The command text that starts ffmpeg with @p arguments. */
QString text(const QStringList &arguments);

} // namespace Nox::MergeCommand
