#include <nox/jobs/StreamText.h>

#include <nox/jobs/TextSanitizer.h>

#include <nox/util/Utilities.h>

#include <QHash>

#include <algorithm>

namespace Nox {

namespace {

/** Upper case as in 1080P60, but a small x between the sides of a picture. */
QString capitalised(const QString &label)
{
    QString result = label.toUpper();
    for (auto i = 1; i + 1 < result.size(); ++i)
        if (result.at(i) == QLatin1Char('X') && result.at(i - 1).isDigit() && result.at(i + 1).isDigit())
            result[i] = QLatin1Char('x');
    return result;
}

} // namespace

QString StreamText::kind(const MediaProfile &stream)
{
    switch (stream.getMediaType()) {
    case MEDIA_TYPE_AUDIO:
        return tr("audio");
    case MEDIA_TYPE_VIDEO:
        if (stream.is3D())
            return stream.isDash() ? tr("3D video only") : tr("3D video");
        return stream.isDash() ? tr("video only") : tr("video");
    case MEDIA_TYPE_UNKNOWN:
        break;
    }
    return tr("unknown");
}

QString StreamText::label(const MediaProfile &stream)
{
    if (stream.getMediaType() == MEDIA_TYPE_AUDIO && stream.getABitRate() <= 0)
        return {};
    if (stream.getOriResStr().isEmpty() && stream.getVResolution().isEmpty())
        return {};
    // The 3D mark has a place of its own.
    MediaProfile flat(stream);
    flat.set3D(false);
    const QString label = TextSanitizer::line(capitalised(flat.resolutionStringEx()));
    // Some pages rank their streams: the rank alone tells nothing.
    const bool isRank = std::all_of(label.cbegin(), label.cend(), [](QChar character) { return character.isDigit(); });
    return isRank ? QString() : label;
}

QStringList StreamText::labels(const QList<MediaProfile> &streams)
{
    const auto name = [](const MediaProfile &stream) {
        return QStringList{kind(stream), container(stream), label(stream)}.join(QLatin1Char('\n'));
    };
    QHash<QString, int> count;
    for (const MediaProfile &stream : streams)
        ++count[name(stream)];
    QStringList result;
    for (const MediaProfile &stream : streams) {
        const QString text = label(stream);
        const QString code = TextSanitizer::line(stream.getName());
        if (count.value(name(stream)) < 2)
            result += text;
        else if (text.isEmpty())
            result += tr("unknown (%1)", "format code").arg(code);
        else
            result += tr("%1 (%2)", "quality, format code").arg(text, code);
    }
    return result;
}

QString StreamText::description(const MediaProfile &stream)
{
    if (stream.getMediaType() == MEDIA_TYPE_AUDIO) {
        const int rate = stream.getABitRate() / 1000;
        return rate > 0 ? tr("sound only, %1 kbit/s").arg(rate) : tr("sound only");
    }
    const QSize size = stream.getVResolution();
    const QString quality = !size.isEmpty() ? tr("%1p", "lines of the picture").arg(size.height()) : label(stream);
    const QString sound = stream.isDash() ? tr("without sound") : tr("with sound");
    return quality.isEmpty() ? sound : tr("%1, %2", "quality, with or without sound").arg(quality, sound);
}

QString StreamText::container(const MediaProfile &stream)
{
    return TextSanitizer::line(stream.getFormat());
}

QString StreamText::size(const MediaProfile &stream)
{
    return stream.getSize() > 0 ? Utilities::fileSizeToString(stream.getSize()) : QString();
}

QString StreamText::marks(const MediaProfile &stream)
{
    QStringList marks;
    if (stream.isDash())
        marks += QStringLiteral("DASH");
    if (stream.is3D())
        marks += QStringLiteral("3D");
    return marks.join(QLatin1Char(' '));
}

} // namespace Nox
