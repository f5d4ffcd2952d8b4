#include "hosts/fetch/StreamRequest.h"

#include "hosts/common/StreamText.h"
#include "hosts/common/TextSanitizer.h"

#include <QStringList>

namespace NoxFetch {

namespace {

StreamRequest refused(const QString &problem)
{
    StreamRequest request;
    request.problem = problem;
    return request;
}

QString codesOf(const QList<Nox::MediaProfile> &streams)
{
    QStringList codes;
    for (const Nox::MediaProfile &stream : streams)
        codes += NoxHost::printableLine(stream.getName());
    return codes.isEmpty() ? QStringLiteral("none") : codes.join(QStringLiteral(", "));
}

} // namespace

std::optional<StreamRequest> StreamRequest::withoutPage(const Options &options)
{
    using NoxHost::StreamChoice;
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

StreamRequest StreamRequest::choose(const Options &options, const NoxHost::StreamChoice &streams)
{
    StreamRequest request;
    request.stream = options.formatCode.isEmpty() ? streams.best() : streams.find(options.formatCode);
    if (!request.stream.isValid()) {
        return refused(QStringLiteral("The page has no stream with the code \"%1\"; it has: %2")
                           .arg(options.formatCode, codesOf(streams.all())));
    }
    if (options.audioCode.isEmpty()) {
        if (!options.noAudio)
            request.stream.setPreferredDashAudioYdCode(streams.companionFor(request.stream).getName());
        return request;
    }
    if (!NoxHost::StreamChoice::needsCompanion(request.stream)) {
        return refused(QStringLiteral("Stream \"%1\" is no video without sound: --audio does not apply to it.")
                           .arg(NoxHost::printableLine(request.stream.getName())));
    }
    if (streams.find(options.audioCode).getMediaType() != Nox::MEDIA_TYPE_AUDIO) {
        return refused(QStringLiteral("The page has no audio stream with the code \"%1\"; it has: %2")
                           .arg(options.audioCode, codesOf(streams.audio())));
    }
    request.stream.setPreferredDashAudioYdCode(options.audioCode);
    return request;
}

bool StreamRequest::needsJoining() const
{
    return stream.isDash() && !stream.getPreferredDashAudioYdCode().isEmpty();
}

QString StreamRequest::text() const
{
    using NoxHost::StreamText;
    QStringList words{StreamText::kind(stream), StreamText::container(stream), StreamText::label(stream)};
    words.removeAll(QString());
    const QString text = QStringLiteral("stream %1 (%2)")
                             .arg(NoxHost::printableLine(stream.getName()), words.join(QStringLiteral(", ")));
    return needsJoining()
        ? text + QStringLiteral(" with audio ") + NoxHost::printableLine(stream.getPreferredDashAudioYdCode())
        : text;
}

} // namespace NoxFetch
