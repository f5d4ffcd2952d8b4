// Compares whole runs of the library and of nox-fetch with bare runs of the external programs.

#include "benchmarks/BareProgram.h"
#include "benchmarks/Paired.h"

#include <nox/NoxWebMedia.h>

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <memory>

namespace {

using Paired::Mismatch;
using Paired::Sides;
using Command = std::vector<std::string>;

constexpr char videoCode[] = "137";
constexpr char audioCode[] = "140";

// The page, the programs in the folder of this one, and a temporary folder.
class Place
{
public:
    explicit Place(QString url)
        : m_url(std::move(url))
    {
    }

    const QString &url() const { return m_url; }

    QString program(const char *name) const
    {
        return QCoreApplication::applicationDirPath() + QLatin1Char('/') + QLatin1String(name);
    }

    QString file(const char *name) const { return m_folder.filePath(QLatin1String(name)); }

    // The library's command line of the tool, with more arguments before and after the certificate switch.
    Command toolCommand(const Command &arguments, const Command &more = {}, const char *tool = "yt.zip") const
    {
        Command command{GetPythonExecPath().toStdString(), "-X", "pycache_prefix=" + file("pycache").toStdString(),
                        program(tool).toStdString()};
        command.insert(command.end(), arguments.begin(), arguments.end());
        command.emplace_back("--no-check-certificate");
        command.insert(command.end(), more.begin(), more.end());
        command.push_back(m_url.toStdString());
        return command;
    }

private:
    QString m_url;
    QTemporaryDir m_folder;
};

void runBare(const Command &command)
{
    std::string output;
    if (BareProgram::run(command, output) != 0)
        throw Mismatch("failed: " + command.front());
}

void remove(const QString &file)
{
    if (!QFile::remove(file))
        throw Mismatch("not made: " + file.toStdString());
}

std::unique_ptr<Nox::WebMediaInfoExtractor> makeExtractor(const Place &place)
{
    return std::unique_ptr<Nox::WebMediaInfoExtractor>(
        Nox::WebMediaDownloaderFactory::instance()->createExtractor(place.program("yt.zip"), place.file("pycache")));
}

void extract(const Place &place)
{
    if (!makeExtractor(place)->getMediaInfo(place.url()).isValid())
        throw Mismatch("the page could not be read");
}

void extractWithNotifications(const Place &place)
{
    const auto extractor = makeExtractor(place);
    bool isValid = false;
    QEventLoop loop;
    QObject::connect(extractor.get(), &Nox::WebMediaInfoExtractor::finished, &loop, [&](const Nox::WebMediaInfo &page) {
        isValid = page.isValid();
        loop.quit();
    });
    QObject::connect(extractor.get(), &Nox::WebMediaInfoExtractor::error, &loop, &QEventLoop::quit);
    extractor->getMediaInfoBySignal(place.url());
    loop.exec();
    if (!isValid)
        throw Mismatch("the page could not be read");
}

void download(const Place &place)
{
    const std::unique_ptr<Nox::WebMediaDownloader> downloader(
        Nox::WebMediaDownloaderFactory::instance()->createDownloader(place.program("yt.zip"), place.file("pycache")));
    Nox::MediaProfile profile;
    profile.setName(QLatin1String(videoCode));
    profile.setFormat(QStringLiteral("MP4"));
    profile.setDash(true);
    profile.setPreferredDashAudioYdCode(QLatin1String(audioCode));

    QEventLoop loop;
    QObject::connect(downloader.get(), &Nox::WebMediaDownloader::finished, &loop, &QEventLoop::quit);
    QObject::connect(downloader.get(), &Nox::WebMediaDownloader::error, &loop, &QEventLoop::quit);
    downloader->download(place.url(), profile, place.file("clip.mp4"));
    loop.exec();
}

void fetch(const Place &place)
{
    runBare({place.program("nox-fetch").toStdString(), "-q", "--pycache", place.file("pycache").toStdString(), "-f",
             videoCode, "-A", audioCode, "-o", place.file("clip.mp4").toStdString(), place.url().toStdString()});
}

// The same work without the library: download both streams, join them, remove them.
void downloadBare(const Place &place)
{
    const std::string video = place.file("bare-video").toStdString();
    const std::string audio = place.file("bare-audio").toStdString();
    runBare(place.toolCommand({"-f", videoCode}, {"-o", video + ".%(ext)s"}));
    runBare(place.toolCommand({"-f", audioCode}, {"-o", audio + ".%(ext)s"}));
    runBare({place.program("ffmpeg").toStdString(), "-i", video + ".mp4", "-i", audio + ".m4a", "-vcodec", "copy",
             "-acodec", "copy", place.file("clip.mp4").toStdString()});
    remove(place.file("bare-video.mp4"));
    remove(place.file("bare-audio.m4a"));
}

// nox-fetch with only the address.
void fetchPage(const Place &place)
{
    runBare({place.program("nox-fetch").toStdString(), "-q", "--pycache", place.file("pycache").toStdString(), "-o",
             place.file("clip.mp4").toStdString(), place.url().toStdString()});
}

// One run of the plain tool.
void fetchPageBare(const Place &place)
{
    runBare(place.toolCommand({"--ignore-config", "-f", std::string(videoCode) + '+' + audioCode},
                              {"--merge-output-format", "mp4", "-o", place.file("clip.%(ext)s").toStdString()},
                              "plain-yt.zip"));
}

double timeOf(const Place &place, void (*work)(const Place &place))
{
    return Paired::wallTimeOf([&] { work(place); });
}

double timeOfMakingClip(const Place &place, void (*work)(const Place &place))
{
    const double time = timeOf(place, work);
    remove(place.file("clip.mp4"));
    return time;
}

void extractBare(const Place &place)
{
    runBare(place.toolCommand({"--dump-json"}));
}

using Work = void (*)(const Place &place);

struct Run {
    const char *name;
    Work work;
    Work bare;
    double bar;
    int pairs;
    int toolRuns;
    double (*time)(const Place &place, Work work);
};

constexpr Run runs[] = {
    {"blocking extraction / bare tool", extract, extractBare, 1.02, 25, 1, timeOf},
    {"notifying extraction / bare tool", extractWithNotifications, extractBare, 1.02, 25, 1, timeOf},
    {"download / tool twice, ffmpeg", download, downloadBare, 1.03, 21, 2, timeOfMakingClip},
    {"nox-fetch / tool twice, ffmpeg", fetch, downloadBare, 1.03, 21, 2, timeOfMakingClip},
};

// A page that answers at once, and one that takes a second.
constexpr Run pageRuns[] = {
    {"nox-fetch URL / one run of the plain tool", fetchPage, fetchPageBare, 2.2, 11, 1, timeOfMakingClip},
    {"nox-fetch URL / the same, page takes 1 s", fetchPage, fetchPageBare, 1.45, 11, 1, timeOfMakingClip},
};

// With the real programs, whose own time varies more than the bars allow.
void addReal(const Run &run, const Place &place)
{
    Paired::add({std::string("run: ") + run.name, run.bar, run.pairs, [&]() -> Sides {
                     return {[&] { return run.time(place, run.work); }, [&] { return run.time(place, run.bare); }};
                 }});
}

// With programs that do nothing, only the added time is measured. The bar allows a share of the shortest time of the
// real tool.
void addAdded(const Run &run, const Place &place)
{
    constexpr double toolTime = 1.25; // seconds for the demonstration's page, with nothing else on the machine
    const double allowed = (run.bar - 1) * toolTime * run.toolRuns;
    Paired::add({std::string("added: ") + run.name, 1.0, 50, [&, allowed]() -> Sides {
                     return {[&] { return run.time(place, run.work) - run.time(place, run.bare); },
                             [allowed] { return allowed; }};
                 }});
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    Nox::Logger::init("/dev/null", Nox::LOG_FATAL, 0);

    const Place place(qEnvironmentVariable("NOX_BENCH_URL"));
    const Place slowPlace(qEnvironmentVariable("NOX_BENCH_URL") + QStringLiteral("?delay=1"));
    const auto addRun = qEnvironmentVariableIsSet("NOX_BENCH_EMPTY") ? addAdded : addReal;
    for (const Run &run : runs)
        addRun(run, place);
    if (addRun == addReal) {
        addReal(pageRuns[0], place);
        addReal(pageRuns[1], slowPlace);
    }
    return Paired::run(argc, argv);
}
