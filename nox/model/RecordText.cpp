#include <nox/model/RecordText.h>

#include <nox/model/MediaInfo.h>

namespace Nox {

QString RecordText::withStreamData(const QString &text, const MediaInfo &info)
{
    return text.arg(static_cast<int>(info.getMediaType()))
        .arg(info.getFormat())
        .arg(info.getVResolution().width())
        .arg(info.getVResolution().height())
        .arg(info.getVAspect().width())
        .arg(info.getVAspect().height())
        .arg(info.getVCodec())
        .arg(info.getVBitRate())
        .arg(info.getVFrameRate())
        .arg(info.getACodec())
        .arg(info.getABitRate())
        .arg(info.getASampleRate());
}

} // namespace Nox
