#include "MicroBenchmarks.h"
#include "Paired.h"
#include "SampleProfiles.h"

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

double copyTime(const Profiles &list)
{
    Profiles copy;
    return Paired::processorTimeOf([&] { copy = SampleProfiles::deepCopy(list); });
}

double operationTime(const Profiles &list, Ownership ownership, void (*operation)(Profiles &))
{
    Profiles subject = ownership == Ownership::Own ? SampleProfiles::deepCopy(list) : list;
    const double time = Paired::processorTimeOf([&] { operation(subject); });
    if (subject.isEmpty() || subject.size() >= list.size())
        throw Mismatch("the operation removed nothing, or everything");
    return time;
}

double sortTime(const WebMediaInfo &page)
{
    WebMediaInfo subject = page;
    return Paired::processorTimeOf([&subject] { subject.sortProfileDesc(); });
}

// A page that nothing else holds: sorting it back costs the same as sorting it for the first time would, so
// it is filled anew each time.
double ownSortTime(const Profiles &list)
{
    WebMediaInfo subject;
    for (const MediaProfile &profile : list)
        subject.addMediaProfile(profile);
    return Paired::processorTimeOf([&subject] { subject.sortProfileDesc(); });
}

WebMediaInfo pageOf(const Profiles &list)
{
    WebMediaInfo page;
    for (const MediaProfile &profile : list)
        page.addMediaProfile(profile);
    return page;
}

Sides sorting(Ownership ownership)
{
    const Profiles list = SampleProfiles::shuffled(count);
    const auto copy = [list] { return copyTime(list); };
    if (ownership == Ownership::Own)
        return {[list] { return ownSortTime(list); }, copy};
    return {[page = pageOf(list)] { return sortTime(page); }, copy};
}

void addOperation(const std::string &name, double bar, Profiles (*makeList)(int), void (*operation)(Profiles &))
{
    for (const Ownership ownership : {Ownership::Own, Ownership::Shared}) {
        const auto make = [=]() -> Sides {
            const Profiles list = makeList(count);
            return {[=] { return operationTime(list, ownership, operation); }, [list] { return copyTime(list); }};
        };
        Paired::add({name + (ownership == Ownership::Own ? ", own" : ", shared"), bar, pairs, make});
    }
}

} // namespace

void MicroBenchmarks::addLists()
{
    Paired::add({"list: sort / deep copy, own", 2.0, pairs, [] { return sorting(Ownership::Own); }});
    Paired::add({"list: sort / deep copy, shared", 2.0, pairs, [] { return sorting(Ownership::Shared); }});
    addOperation("list: duplicates / deep copy", 1.0, SampleProfiles::sorted, MediaListRemoveDuplicatedResolutions);
    addOperation("list: twins / deep copy", 1.0, SampleProfiles::twins, MediaListRemoveDuplicatedResolutions);
    addOperation("list: audio / deep copy", 1.5, SampleProfiles::shuffled, MediaListRemoveAudio);
    addOperation("list: sorted audio / deep copy", 1.5, SampleProfiles::sorted, MediaListRemoveAudio);
}
