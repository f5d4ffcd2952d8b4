#include <nox/model/PictureRank.h>

#include <nox/model/RecordFields.h>

namespace Nox {

bool PictureRank::isAbove1080p(const QString &label)
{
    return label.size() == 6 && label.compare(QLatin1String(">1080p"), Qt::CaseInsensitive) == 0;
}

qint64 PictureRank::sizeKey(const MediaInfo &info)
{
    const QSize size = RecordFields::resolution(info);
    if (size.width() == -1 && isAbove1080p(RecordFields::label(info)))
        return 1920 * 1080 + 1;
    // Unsigned, since a product beyond 32 bits wraps around.
    return static_cast<qint32>(static_cast<quint32>(size.width()) * static_cast<quint32>(size.height()));
}

} // namespace Nox
