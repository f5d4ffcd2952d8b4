// The page description: whatever the tool prints instead of it.

#include "Check.h"

#include <nox/model/WebMediaInfo.h>
#include <nox/parse/YdOutputParser.h>
#include <nox/util/Utilities.h>

#include <json/reader.h>
#include <json/value.h>

#include <exception>

namespace {

using Nox::MediaProfile;
using Nox::WebMediaInfo;

// Whether the JSON reader itself takes the text, prepared by the public helpers.
bool isReadable(const QString &text)
{
    using Nox::Utilities;
    const QByteArray document = Utilities::convertHttpSpecificChar2(Utilities::convertHttpSpecificChar(text)).toUtf8();
    try {
        Json::Value root;
        return Json::Reader().parse(document.constData(), document.constData() + document.size(), root, false);
    } catch (const std::exception &) {
        return false;
    }
}

void checkProfile(const MediaProfile &profile)
{
    Check::that(profile.isValid(), "a profile has a format");
    Check::that(profile.getFormat() == profile.getFormat().toUpper(), "a format is in upper case");
    const bool isAudio = profile.getMediaType() == Nox::MEDIA_TYPE_AUDIO;
    Check::that(isAudio || profile.getMediaType() == Nox::MEDIA_TYPE_VIDEO, "a profile is audio or video");
    Check::that(!isAudio || (profile.isDash() && !profile.is3D()), "audio is a DASH stream in two dimensions");
    const QSize size = profile.getVResolution();
    Check::that(size == QSize() || (size.width() > 0 && size.height() > 0), "a picture size is known or is not");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    Check::silence();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, size_t size)
{
    const QString text = Check::text(data, size);
    MediaProfile earlier;
    earlier.setName(QStringLiteral("earlier"));
    WebMediaInfo info;
    info.setTitle(QStringLiteral("earlier"));
    info.addMediaProfile(earlier);
    Nox::YdOutputParser::instance()->parseWebMediaInfo(text, info, QString());

    QList<MediaProfile> profiles = info.getMediaProfileList();
    Check::that(profiles.takeLast().getName() == earlier.getName(), "new profiles stand before the earlier ones");
    for (const MediaProfile &profile : std::as_const(profiles))
        checkProfile(profile);
    if (!isReadable(text)) {
        Check::that(info.getTitle() == QLatin1String("earlier") && profiles.isEmpty(), "a failure changes nothing");
        return 0;
    }
    Check::that(info.getFileName()
                    == Nox::Utilities::filterInvalidCharsOfFileName(info.getTitle(), QStringLiteral(" ")),
                "the file name is made from the title");
    Check::that(!info.getThumbnailUrl().contains(QLatin1String("maxresdefault")), "no thumbnail is the largest one");
    return 0;
}
