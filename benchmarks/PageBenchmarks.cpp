#include "benchmarks/MicroBenchmarks.h"
#include "benchmarks/Paired.h"
#include "benchmarks/PeakMemory.h"
#include "benchmarks/SamplePage.h"

#include <nox/model/WebMediaInfo.h>
#include <nox/parse/YdOutputParser.h>

#include <json/reader.h>
#include <json/value.h>

#include <memory>
#include <utility>

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

    QString text;        // for the library's parser
    QByteArray prepared; // for jsoncpp
};

void parseWithLibrary(QString text, WebMediaInfo &info)
{
    YdOutputParser::instance()->parseWebMediaInfo(std::move(text), info, QString());
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
    QString own(text.constData(), text.size()); // the extractor, too, hands over its only copy
    const double time = Paired::processorTimeOf([&] { parseWithLibrary(std::move(own), info); });
    if (info.getMediaProfileList().isEmpty())
        throw Mismatch("the sample page gave no profile");
    return time;
}

double readerTime(const QByteArray &document)
{
    return Paired::processorTimeOf([&document] { parseWithReader(document); });
}

Sides againstReader(const SamplePage &page)
{
    const auto inputs = std::make_shared<Inputs>(page);
    return {[inputs] { return libraryTime(inputs->text); }, [inputs] { return readerTime(inputs->prepared); }};
}

constexpr int formatsOfTenMegabytes = 13'300;

// Without the memory of the text and of the program.
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
    Paired::add({"page: 100,000 formats / bare JSON reader", 1.3, 9,
                 [] { return againstReader(SamplePage::withFormats(100'000)); }});
}
