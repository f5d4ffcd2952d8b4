#include "benchmarks/MicroBenchmarks.h"
#include "benchmarks/Paired.h"
#include "benchmarks/PeakMemory.h"
#include "benchmarks/QtJsonPage.h"
#include "benchmarks/SamplePage.h"

#include <nox/model/WebMediaInfo.h>
#include <nox/parse/YdOutputParser.h>

#include <json/reader.h>
#include <json/value.h>

#include <memory>

namespace {

using Nox::WebMediaInfo;
using Nox::YdOutputParser;
using Paired::Mismatch;
using Paired::Sides;

struct Inputs {
    explicit Inputs(const SamplePage &page)
        : text(page.text())
        , prepared(page.preparedBytes())
    {
    }

    QString text;        // what the library's parser gets
    QByteArray prepared; // what it gives the JSON reader
};

void parseWithLibrary(const QString &text, WebMediaInfo &info)
{
    YdOutputParser::instance()->parseWebMediaInfo(text, info, QString());
}

void parseWithReader(const QByteArray &document)
{
    Json::Value root;
    if (!Json::Reader().parse(document.constData(), document.constData() + document.size(), root, false))
        throw Mismatch("the sample page is no JSON");
}

double libraryTime(const QString &text)
{
    WebMediaInfo info;
    const double time = Paired::processorTimeOf([&] { parseWithLibrary(text, info); });
    if (info.getMediaProfileList().isEmpty())
        throw Mismatch("the sample page gave no profile");
    return time;
}

double readerTime(const QByteArray &document)
{
    return Paired::processorTimeOf([&document] { parseWithReader(document); });
}

double qtJsonTime(const QByteArray &document)
{
    WebMediaInfo info;
    return Paired::processorTimeOf([&] { QtJsonPage::parse(document, info); });
}

Sides againstReader(const SamplePage &page)
{
    const auto inputs = std::make_shared<Inputs>(page);
    return {[inputs] { return libraryTime(inputs->text); }, [inputs] { return readerTime(inputs->prepared); }};
}

bool isSameRecord(const WebMediaInfo &a, const WebMediaInfo &b)
{
    const auto isSameProfile = [](const Nox::MediaProfile &x, const Nox::MediaProfile &y) {
        return x == y && x.getUrl() == y.getUrl() && x.getDescription() == y.getDescription()
            && x.isDash() == y.isDash() && x.getOriResStr() == y.getOriResStr() && x.getABitRate() == y.getABitRate();
    };
    const auto profiles = a.getMediaProfileList();
    const auto others = b.getMediaProfileList();
    return a.getTitle() == b.getTitle() && a.getFileName() == b.getFileName() && a.getDuration() == b.getDuration()
        && a.getThumbnailUrl() == b.getThumbnailUrl() && !profiles.isEmpty()
        && std::equal(profiles.begin(), profiles.end(), others.begin(), others.end(), isSameProfile);
}

Sides againstQtJson()
{
    const auto inputs = std::make_shared<Inputs>(SamplePage::ordinary());
    WebMediaInfo byLibrary;
    WebMediaInfo byQt;
    parseWithLibrary(inputs->text, byLibrary);
    if (!QtJsonPage::parse(inputs->prepared, byQt) || !isSameRecord(byLibrary, byQt))
        throw Mismatch("Qt's classes and the library read the page differently");
    return {[inputs] { return libraryTime(inputs->text); }, [inputs] { return qtJsonTime(inputs->prepared); }};
}

constexpr int formatsOfTenMegabytes = 13'300;

// Beyond what the caller holds: the text itself, and the room that the program takes anyway.
double parseGrowth()
{
    QString text;
    WebMediaInfo info;
    return PeakMemory::growthOf([&text] { text = SamplePage::withFormats(formatsOfTenMegabytes).text(); },
                                [&] { parseWithLibrary(text, info); });
}

Sides peakOfParse()
{
    const auto size = static_cast<double>(SamplePage::withFormats(formatsOfTenMegabytes).bytes().size());
    return {parseGrowth, [size] { return size; }};
}

} // namespace

void MicroBenchmarks::addMemory()
{
    Paired::add({"memory: peak of a 10 MB page / its bytes", 5.0, 3, peakOfParse});
}

void MicroBenchmarks::addPages()
{
    Paired::add({"page: 1 MB / bare JSON reader", 0.4, 60, [] { return againstReader(SamplePage::ordinary()); }});
    Paired::add(
        {"page: 1 MB, unusual / bare JSON reader", 1.6, 60, [] { return againstReader(SamplePage::unusual()); }});
    Paired::add(
        {"page: 800 kB of escapes / bare JSON reader", 1.0, 60, [] { return againstReader(SamplePage::described()); }});
    Paired::add({"page: 1 MB / QJsonDocument and a walk", 0.7, 60, againstQtJson});
    Paired::add({"page: 100,000 formats / bare JSON reader", 0.7, 9,
                 [] { return againstReader(SamplePage::withFormats(100'000)); }});
}
