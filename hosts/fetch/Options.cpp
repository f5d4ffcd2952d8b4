#include "hosts/fetch/Options.h"

#include "hosts/fetch/AddressFile.h"
#include "hosts/fetch/ExitCode.h"

#include <nox/jobs/Destination.h>
#include <nox/jobs/UrlCheck.h>

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>

#include <utility>

namespace NoxFetch {

namespace {

QString description()
{
    return QStringLiteral("Downloads the videos of web pages. Without options: the best stream that is saved without\n"
                          "conversion, joined with the audio that goes with it, into a file named after the page's\n"
                          "title. Prints the file's path. Several pages are taken one after the other.\n"
                          "With -f, -A and -o nothing is looked up on the page, which saves one run of the tool.\n"
                          "\n"
                          "Exit code: 0 done, 1 page not readable, 2 wrong usage, 3 download failed, 130 interrupted;\n"
                          "of several pages that of the first that failed.");
}

QList<QCommandLineOption> optionList()
{
    const auto text = [](const char *latin1) { return QString::fromLatin1(latin1); };
    return {
        {{text("l"), text("list")}, text("Show the streams in a table; with --items the page's videos. No download.")},
        {text("json"), text("Print what is known of the page as JSON; download nothing.")},
        {{text("f"), text("format")}, text("Download the stream with this code."), text("CODE")},
        {{text("A"), text("audio")}, text("Join the video with the sound of the stream with this code."), text("CODE")},
        {text("no-audio"), text("Leave a video without sound as it is.")},
        {text("max-height"), text("Take no picture that is higher, where there is another."), text("LINES")},
        {text("mp3"), text("Save the sound alone, as MP3.")},
        {text("items"), text("Videos of a page with several, such as 2,5-7 or all."), text("LIST")},
        {{text("a"), text("batch-file")},
         text("Take the addresses of this file, one a line; - for standard input."),
         text("FILE")},
        {{text("c"), text("continue")},
         text("Keep what has been fetched of a download that stops, and go on with it.")},
        {{text("o"), text("output")}, text("File to make; it must not exist."), text("FILE")},
        {{text("P"), text("folder")}, text("Folder for the files (default: the working folder)."), text("DIR")},
        {text("tool"), text("The download tool (default: your own, or else yt.zip beside this program)."),
         text("FILE")},
        {text("pycache"), text("Where Python keeps its compiled code."), text("DIR")},
        {text("log"), text("Append a log to this file."), text("FILE")},
        {{text("v"), text("verbose")}, text("Show debug messages; log everything.")},
        {{text("q"), text("quiet")}, text("Show neither progress nor notes.")},
        {{text("h"), text("help")}, text("Show this help.")},
        {text("version"), text("Show the version.")},
        {text("tool-version"), text("Show the version of the download tool.")},
    };
}

CommandLine ended(int exitCode, const QString &text)
{
    CommandLine result;
    result.exitCode = exitCode;
    result.text = text;
    return result;
}

CommandLine refused(const QString &reason)
{
    return ended(UsageError, reason + QStringLiteral("\nTry --help."));
}

/** A parsed command line, with option names in Latin-1. */
class Parsed
{
public:
    explicit Parsed(const QCommandLineParser &parser)
        : m_parser(parser)
    {
    }

    bool isSet(const char *name) const { return m_parser.isSet(QString::fromLatin1(name)); }
    QString value(const char *name) const { return m_parser.value(QString::fromLatin1(name)); }
    QStringList addresses() const { return m_parser.positionalArguments(); }

    /** The error message about two options that exclude each other; empty if there are none. */
    QString conflict() const;

private:
    const QCommandLineParser &m_parser;
};

QString Parsed::conflict() const
{
    constexpr std::pair<const char *, const char *> pairs[] = {
        {"list", "json"},         {"audio", "no-audio"}, {"verbose", "quiet"},     {"mp3", "audio"},
        {"format", "max-height"}, {"items", "output"},   {"batch-file", "output"},
    };
    for (const auto &[first, second] : pairs)
        if (isSet(first) && isSet(second))
            return QStringLiteral("--%1 and --%2 exclude each other.").arg(QLatin1String(first), QLatin1String(second));
    return {};
}

Options optionsFrom(const Parsed &line)
{
    Options options;
    options.mode = line.isSet("tool-version") ? Options::Mode::ToolVersion
        : line.isSet("json")                  ? Options::Mode::Json
        : line.isSet("list")                  ? Options::Mode::List
                                              : Options::Mode::Download;
    const QStringList addresses = line.addresses();
    for (const QString &address : addresses)
        options.urls += Nox::UrlCheck::corrected(address);
    options.items = ItemSelection::fromText(line.value("items"));
    options.formatCode = line.value("format");
    options.audioCode = line.value("audio");
    options.noAudio = line.isSet("no-audio");
    options.preference.maximumHeight = line.value("max-height").toInt();
    options.preference.soundOnly = line.isSet("mp3");
    options.sound = line.isSet("mp3") ? Nox::SoundFormat::Mp3 : Nox::SoundFormat::AsIs;
    options.keepsParts = line.isSet("continue");
    options.folder = QDir::cleanPath(QDir::current().absoluteFilePath(line.value("folder")));
    options.output = line.isSet("output") ? QDir(options.folder).absoluteFilePath(line.value("output")) : QString();
    options.toolFile = line.value("tool");
    options.pycacheFolder = line.value("pycache");
    options.logFile = line.value("log");
    options.verbose = line.isSet("verbose");
    options.quiet = line.isSet("quiet");
    return options;
}

/** The error message about the options, before any file is read; may be empty. */
QString errorIn(const Parsed &line)
{
    for (const char *name : {"format", "audio", "output", "folder", "tool", "pycache", "log", "batch-file"})
        if (line.isSet(name) && line.value(name).isEmpty())
            return QStringLiteral("--%1 needs a value.").arg(QString::fromLatin1(name));
    if (line.value("output") == QLatin1String("-"))
        return QStringLiteral(
            "Standard output cannot take the file, which ffmpeg has to write to the disk: name a file.");
    if (line.isSet("output") && line.addresses().size() > 1)
        return QStringLiteral("--output names one file: give one address with it, or use --folder.");
    if (line.isSet("items") && !ItemSelection::fromText(line.value("items")))
        return QStringLiteral("--items takes numbers from 1 and ranges, such as 2,5-7, or all.");
    if (line.isSet("max-height") && line.value("max-height").toInt() <= 0)
        return QStringLiteral("--max-height takes a number of lines, such as 720.");
    return line.conflict();
}

QString destinationErrorString(const Options &options)
{
    using Nox::Destination;
    if (options.output.isEmpty())
        return Destination::folderErrorString(options.folder);
    if (QFileInfo(options.output).isDir())
        return QStringLiteral("\"%1\" is a folder: with --folder instead of --output the file gets its name from the "
                              "page's title.")
            .arg(options.output);
    return Destination::errorString(options.output);
}

/**
 * @p arguments with "--audio" in place of an "-a" that does not name a file. Earlier versions had -a as the short form
 * of
 * --audio; now it is that of --batch-file.
 */
QStringList withAudioOption(QStringList arguments)
{
    const QString shortForm = QStringLiteral("-a");
    for (QString &argument : arguments) {
        if (argument == shortForm)
            argument = QStringLiteral("--audio");
        else if (argument.startsWith(shortForm))
            argument.replace(0, shortForm.size(), QStringLiteral("--audio="));
    }
    return arguments;
}

bool namesNoFile(const QString &batchFile)
{
    return !batchFile.isEmpty() && batchFile != QLatin1String("-") && !QFileInfo::exists(batchFile);
}

} // namespace

CommandLine CommandLine::read(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(description());
    parser.addPositionalArgument(QStringLiteral("URL"), QStringLiteral("Addresses of the pages, http or https."),
                                 QStringLiteral("URL..."));
    parser.addOptions(optionList());
    bool isParsed = parser.parse(arguments);
    if (namesNoFile(parser.value(QStringLiteral("batch-file"))) && !parser.positionalArguments().isEmpty())
        isParsed = parser.parse(withAudioOption(arguments));
    if (!isParsed)
        return refused(parser.errorText());
    if (parser.isSet(QStringLiteral("help")))
        return ended(Done, parser.helpText().trimmed());
    if (parser.isSet(QStringLiteral("version")))
        return ended(Done, QStringLiteral("nox-fetch " NOX_FETCH_VERSION));
    const Parsed line(parser);
    if (const QString message = errorIn(line); !message.isEmpty())
        return refused(message);
    CommandLine result;
    result.options = optionsFrom(line);
    if (result.options.mode == Options::Mode::ToolVersion)
        return result;
    for (const QString &url : std::as_const(result.options.urls))
        if (const QString message = Nox::UrlCheck::errorString(url); !message.isEmpty())
            return refused(result.options.urls.size() == 1 ? message : QStringLiteral("\"%1\": %2").arg(url, message));
    if (const QString name = line.value("batch-file"); !name.isEmpty()) {
        const AddressFile file = AddressFile::read(name);
        if (!file.errorString.isEmpty())
            return refused(file.errorString);
        result.options.urls += file.urls;
    }
    if (result.options.urls.isEmpty())
        return refused(QStringLiteral("Give at least one address."));
    if (result.options.mode == Options::Mode::Download)
        if (const QString message = destinationErrorString(result.options); !message.isEmpty())
            return ended(UsageError, message);
    return result;
}

} // namespace NoxFetch
