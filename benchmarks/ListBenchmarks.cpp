#include "benchmarks/MicroBenchmarks.h"
#include "benchmarks/Paired.h"
#include "benchmarks/SampleProfiles.h"

#include <nox/model/WebMediaInfo.h>

namespace {

using Nox::MediaProfile;
using Nox::WebMediaInfo;

WebMediaInfo pageOf(const QList<MediaProfile> &list)
{
    WebMediaInfo page;
    for (const MediaProfile &profile : list)
        page.addMediaProfile(profile);
    return page;
}

double sortTime(WebMediaInfo page)
{
    return Paired::processorTimeOf([&page] { page.sortProfileDesc(); });
}

double copyTime(const QList<MediaProfile> &list)
{
    QList<MediaProfile> copy;
    return Paired::processorTimeOf([&] {
        copy.reserve(list.size());
        for (const MediaProfile &profile : list)
            copy.append(profile);
    });
}

// Both sides get a new page, so that their lists are in the same state of memory.
Paired::Sides sorting()
{
    const QList<MediaProfile> list = SampleProfiles::shuffled(200'000);
    return {[list] { return sortTime(pageOf(list)); }, [list] { return copyTime(pageOf(list).getMediaProfileList()); }};
}

} // namespace

void MicroBenchmarks::addLists()
{
    Paired::add({"list: sort / deep copy", 4.0, 40, sorting});
}
