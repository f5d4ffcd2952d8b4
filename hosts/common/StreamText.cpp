#include "hosts/common/StreamText.h"

#include "hosts/common/TextSanitizer.h"

#include <nox/util/Utilities.h>

#include <QStringList>

namespace NoxHost {

QString StreamText::kind(const Nox::MediaProfile &stream)
{
    switch (stream.getMediaType()) {
    case Nox::MEDIA_TYPE_AUDIO:
        return tr("audio");
    case Nox::MEDIA_TYPE_VIDEO:
        if (stream.is3D())
            return stream.isDash() ? tr("3D video only") : tr("3D video");
        return stream.isDash() ? tr("video only") : tr("video");
    case Nox::MEDIA_TYPE_UNKNOWN:
        break;
    }
    return tr("unknown");
}

QString StreamText::label(const Nox::MediaProfile &stream)
{
    if (stream.getMediaType() == Nox::MEDIA_TYPE_AUDIO && stream.getABitRate() <= 0)
        return {};
    if (stream.getOriResStr().isEmpty() && !stream.getVResolution().isValid())
        return {};
    // The 3D mark has a place of its own.
    Nox::MediaProfile flat(stream);
    flat.set3D(false);
    return printableLine(flat.resolutionStringEx());
}

QString StreamText::container(const Nox::MediaProfile &stream)
{
    return printableLine(stream.getFormat());
}

QString StreamText::size(const Nox::MediaProfile &stream)
{
    return stream.getSize() > 0 ? Nox::Utilities::fileSizeToString(stream.getSize()) : QString();
}

QString StreamText::marks(const Nox::MediaProfile &stream)
{
    QStringList marks;
    if (stream.isDash())
        marks += QStringLiteral("DASH");
    if (stream.is3D())
        marks += QStringLiteral("3D");
    return marks.join(QLatin1Char(' '));
}

} // namespace NoxHost
