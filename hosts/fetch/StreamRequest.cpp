#include "hosts/fetch/StreamRequest.h"

#include <nox/jobs/StreamText.h>
#include <nox/jobs/TextSanitizer.h>

#include <QStringList>

namespace NoxFetch {

namespace {

using Nox::MediaProfile;

StreamRequest refused(const QString &message)
{
    StreamRequest request;
    request.errorString = message;
    return request;
}

QString codesOf(const QList<MediaProfile> &streams)
{
    QStringList codes;
    for (const MediaProfile &stream : streams)
        codes += Nox::TextSanitizer::line(stream.getName());
    return codes.isEmpty() ? QStringLiteral("none") : codes.join(QStringLiteral(", "));
}

} // namespace

std::optional<StreamRequest> StreamRequest::withoutPage(const Options &options)
{
    using Nox::StreamChoice;
    const bool isComplete = StreamChoice::isUsableCode(options.formatCode)
        && StreamChoice::isUsableCode(options.audioCode) && !options.output.isEmpty();
    if (options.mode != Options::Mode::Download || !isComplete)
        return std::nullopt;
    StreamRequest request;
    request.stream.setMediaType(Nox::MEDIA_TYPE_VIDEO);
    request.stream.setName(options.formatCode);
    request.stream.setDash(true);
    request.stream.setPreferredDashAudioYdCode(options.audioCode);
    return request;
}

StreamRequest StreamRequest::choose(const Options &options, const Nox::StreamChoice &streams)
{
    using Nox::StreamChoice;
    const MediaProfile audio = options.audioCode.isEmpty() ? MediaProfile() : streams.find(options.audioCode);
    if (!options.audioCode.isEmpty() && audio.getMediaType() != Nox::MEDIA_TYPE_AUDIO) {
        // Of two pictures, ffmpeg would take the larger.
        const QString reason = audio.isValid()
            ? QStringLiteral(
                "Stream \"%1\" holds a picture, which could take the place of the video's: --audio is for a "
                "stream of sound alone; the page has: %2")
            : QStringLiteral("The page has no stream of sound with the code \"%1\"; it has: %2");
        return refused(reason.arg(Nox::TextSanitizer::line(options.audioCode), codesOf(streams.audio())));
    }
    StreamRequest request;
    request.stream =
        options.formatCode.isEmpty() ? options.preference.pick(streams, audio) : streams.find(options.formatCode);
    if (!request.stream.isValid() && options.formatCode.isEmpty())
        return refused(QStringLiteral("The page has no video without sound: --audio does not apply to it."));
    if (!request.stream.isValid()) {
        return refused(QStringLiteral("The page has no stream with the code \"%1\"; it has: %2")
                           .arg(options.formatCode, codesOf(streams.all())));
    }
    if (options.sound == Nox::SoundFormat::Mp3 && request.stream.getMediaType() != Nox::MEDIA_TYPE_AUDIO) {
        return refused(QStringLiteral("Stream \"%1\" is no stream of sound alone: --mp3 does not apply to it.")
                           .arg(Nox::TextSanitizer::line(request.stream.getName())));
    }
    if (audio.isValid() && !StreamChoice::needsAudio(request.stream)) {
        return refused(QStringLiteral("Stream \"%1\" is no video without sound: --audio does not apply to it.")
                           .arg(Nox::TextSanitizer::line(request.stream.getName())));
    }
    if (audio.isValid())
        request.stream.setPreferredDashAudioYdCode(audio.getName());
    else if (!options.noAudio)
        request.stream.setPreferredDashAudioYdCode(streams.audioFor(request.stream).getName());
    request.conversion = request.needsJoining() ? streams.conversion(request.stream) : Nox::Conversion::None;
    return request;
}

bool StreamRequest::needsJoining() const
{
    return stream.isDash() && !stream.getPreferredDashAudioYdCode().isEmpty();
}

QString StreamRequest::text() const
{
    using Nox::StreamText;
    QStringList parts{StreamText::kind(stream), StreamText::container(stream), StreamText::label(stream)};
    parts.removeAll(QString());
    const QString text = QStringLiteral("stream %1 (%2)")
                             .arg(Nox::TextSanitizer::line(stream.getName()), parts.join(QStringLiteral(", ")));
    return needsJoining()
        ? text + QStringLiteral(" with audio ") + Nox::TextSanitizer::line(stream.getPreferredDashAudioYdCode())
        : text;
}

} // namespace NoxFetch
