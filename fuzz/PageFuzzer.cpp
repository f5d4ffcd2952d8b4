// Compares the record of a page with a simple reading by jsoncpp.

#include "fuzz/Check.h"
#include "fuzz/PlainPage.h"

#include <nox/model/WebMediaInfo.h>
#include <nox/parse/YdOutputParser.h>

#include <algorithm>

namespace {

using Nox::MediaProfile;
using Nox::WebMediaInfo;

// A record that is not empty.
WebMediaInfo usedRecord()
{
    MediaProfile profile;
    profile.setName(QStringLiteral("earlier"));
    WebMediaInfo info;
    info.setTitle(QStringLiteral("earlier"));
    info.addMediaProfile(profile);
    return info;
}

bool isSameProfile(const MediaProfile &a, const MediaProfile &b)
{
    return a == b && a.getUrl() == b.getUrl() && a.getDescription() == b.getDescription()
        && a.getOriResStr() == b.getOriResStr() && a.getABitRate() == b.getABitRate() && a.isDash() == b.isDash()
        && a.is3D() == b.is3D();
}

void checkSame(const WebMediaInfo &a, const WebMediaInfo &b)
{
    Check::that(a.getTitle() == b.getTitle(), "the title");
    Check::that(a.getFileName() == b.getFileName(), "the file name");
    Check::that(a.getDuration() == b.getDuration(), "the duration");
    Check::that(a.getThumbnailUrl() == b.getThumbnailUrl(), "the thumbnail");
    const QList<MediaProfile> profiles = a.getMediaProfileList();
    const QList<MediaProfile> others = b.getMediaProfileList();
    Check::that(std::equal(profiles.begin(), profiles.end(), others.begin(), others.end(), isSameProfile),
                "the profiles");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, size_t size)
{
    const QString text = Check::text(data, size);
    WebMediaInfo info = usedRecord();
    Nox::YdOutputParser::instance()->parseWebMediaInfo(text, info, QString());
    WebMediaInfo plain = usedRecord();
    PlainPage::parse(text, plain);
    checkSame(info, plain);
    return 0;
}
