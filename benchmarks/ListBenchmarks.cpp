#include "benchmarks/MicroBenchmarks.h"
#include "benchmarks/Paired.h"
#include "benchmarks/SampleProfiles.h"

#include <nox/model/MediaList.h>
#include <nox/model/WebMediaInfo.h>

#include <string>

namespace {

using Nox::MediaProfile;
using Nox::WebMediaInfo;
using Paired::Mismatch;
using Paired::Sides;
using Profiles = QList<MediaProfile>;

constexpr int count = 200'000;
constexpr int pairs = 40;

// Whether the list that the operation gets has its entries for itself, or has them in common with a copy
// that the host kept.
enum class Ownership { Own, Shared };

// Both sides get the same list, in the same state of memory.
Profiles subjectOf(const Profiles &list, Ownership ownership)
{
    return ownership == Ownership::Own ? SampleProfiles::deepCopy(list) : list;
}

double copyTime(const Profiles &list)
{
    Profiles copy;
    return Paired::processorTimeOf([&] { copy = SampleProfiles::deepCopy(list); });
}

double operationTime(Profiles subject, void (*operation)(Profiles &))
{
    const auto size = subject.size();
    const double time = Paired::processorTimeOf([&] { operation(subject); });
    if (subject.isEmpty() || subject.size() >= size)
        throw Mismatch("the operation removed nothing, or everything");
    return time;
}

WebMediaInfo pageOf(const Profiles &list)
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

// A page that nothing else holds: sorting it back costs the same as sorting it for the first time would, so
// it is filled anew each time.
Sides sorting(Ownership ownership)
{
    const Profiles list = SampleProfiles::shuffled(count);
    if (ownership == Ownership::Own) {
        return {[list] { return sortTime(pageOf(list)); },
                [list] { return copyTime(pageOf(list).getMediaProfileList()); }};
    }
    const WebMediaInfo page = pageOf(list);
    return {[page] { return sortTime(page); }, [page] { return copyTime(page.getMediaProfileList()); }};
}

void addOperation(const std::string &name, double bar, Profiles (*makeList)(int), void (*operation)(Profiles &))
{
    for (const Ownership ownership : {Ownership::Own, Ownership::Shared}) {
        const auto make = [=]() -> Sides {
            const Profiles list = makeList(count);
            return {[=] { return operationTime(subjectOf(list, ownership), operation); },
                    [=] { return copyTime(subjectOf(list, ownership)); }};
        };
        Paired::add({name + (ownership == Ownership::Own ? ", own" : ", shared"), bar, pairs, make});
    }
}

} // namespace

void MicroBenchmarks::addLists()
{
    Paired::add({"list: sort / deep copy, own", 4.0, pairs, [] { return sorting(Ownership::Own); }});
    Paired::add({"list: sort / deep copy, shared", 4.0, pairs, [] { return sorting(Ownership::Shared); }});
    addOperation("list: duplicates / deep copy", 1.5, SampleProfiles::sorted, MediaListRemoveDuplicatedResolutions);
    addOperation("list: twins / deep copy", 1.5, SampleProfiles::twins, MediaListRemoveDuplicatedResolutions);
    addOperation("list: audio / deep copy", 1.5, SampleProfiles::shuffled, MediaListRemoveAudio);
    addOperation("list: sorted audio / deep copy", 1.5, SampleProfiles::sorted, MediaListRemoveAudio);
}
