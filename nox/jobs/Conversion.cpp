#include <nox/jobs/Conversion.h>

#include <QThread>

namespace Nox {

namespace {

// Speed of ffmpeg's default encoders for MP4 (x264 with preset medium, AAC) on one core of a common machine.
constexpr double pixelsPerSecond = 12e6;
constexpr double usualFrameRate = 30;
constexpr double soundSpeed = 40; // seconds of sound in a second
constexpr qint64 secondsOfMinute = 60;
constexpr qint64 secondsOfHour = 3600;

} // namespace

Conversion::Kind Conversion::needed(const MediaProfile &video, const MediaProfile &audio)
{
    if (!video.isDash() || !audio.isValid())
        return None;
    // As the library decides it: by the files' suffixes, which are these containers.
    if (video.getFormat() != QLatin1String("MP4"))
        return Picture;
    return audio.getFormat() == QLatin1String("M4A") ? None : Sound;
}

QString Conversion::mark(Kind kind)
{
    return kind == None ? QString() : tr("slow: must be converted");
}

qint64 Conversion::roughSeconds(Kind kind, const MediaProfile &video, qint64 duration, int processors)
{
    if (kind == None || duration <= 0)
        return -1;
    const auto length = static_cast<double>(duration);
    double seconds = length / soundSpeed;
    if (kind == Picture) {
        const QSize size = video.getVResolution();
        if (!size.isValid())
            return -1;
        const double pixels = static_cast<double>(size.width()) * size.height();
        seconds += length * usualFrameRate * pixels / (pixelsPerSecond * qMax(1, processors));
    }
    constexpr double longest = 1e9; // upper limit; prevents overflow
    return static_cast<qint64>(qMin(seconds, longest)) + 1;
}

QString Conversion::warning(Kind kind, const MediaProfile &video, qint64 duration)
{
    if (kind == None)
        return {};
    QString what = kind == Picture
        ? tr("The video must be converted when it is joined with its audio, which takes long.")
        : tr("The audio must be converted when it is joined with the video.");
    const qint64 seconds = roughSeconds(kind, video, duration, QThread::idealThreadCount());
    if (seconds < 0)
        return what;
    if (seconds < secondsOfMinute)
        return tr("%1 Rough estimate: less than a minute.").arg(what);
    if (seconds < 2 * secondsOfHour)
        return tr("%1 Rough estimate: %2 min.").arg(what).arg((seconds + secondsOfMinute - 1) / secondsOfMinute);
    return tr("%1 Rough estimate: %2 h.").arg(what).arg((seconds + secondsOfHour - 1) / secondsOfHour);
}

} // namespace Nox
