#include "hosts/fetch/Options.h"

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
                          "With -f, -a and -o nothing is looked up on the page, which saves one run of the tool.\n"
                          "\n"
                          "Exit code: 0 done, 1 page not readable, 2 wrong usage, 3 download failed, 130 interrupted;\n"
                          "of several pages that of the first that failed.");
}

QList<QCommandLineOption> optionList()
{
    const auto text = [](const char *latin1) { return QString::fromLatin1(latin1); };
    return {
        {{text("l"), text("list")}, text("Show the streams in a table; download nothing.")},
        {text("json"), text("Print what is known of the page as JSON; download nothing.")},
        {{text("f"), text("format")}, text("Download the stream with this code."), text("CODE")},
        {{text("a"), text("audio")}, text("Join the video with the sound of the stream with this code."), text("CODE")},
        {text("no-audio"), text("Leave a video without sound as it is.")},
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

Options optionsFrom(const QCommandLineParser &parser)
{
    const auto isSet = [&parser](const char *name) { return parser.isSet(QString::fromLatin1(name)); };
    const auto value = [&parser](const char *name) { return parser.value(QString::fromLatin1(name)); };
    Options options;
    options.mode = isSet("tool-version") ? Options::Mode::ToolVersion
        : isSet("json")                  ? Options::Mode::Json
        : isSet("list")                  ? Options::Mode::List
                                         : Options::Mode::Download;
    const QStringList addresses = parser.positionalArguments();
    for (const QString &address : addresses)
        options.urls += Nox::UrlCheck::corrected(address);
    options.formatCode = value("format");
    options.audioCode = value("audio");
    options.noAudio = isSet("no-audio");
    options.folder = QDir::cleanPath(QDir::current().absoluteFilePath(value("folder")));
    options.output = isSet("output") ? QDir(options.folder).absoluteFilePath(value("output")) : QString();
    options.toolFile = value("tool");
    options.pycacheFolder = value("pycache");
    options.logFile = value("log");
    options.verbose = isSet("verbose");
    options.quiet = isSet("quiet");
    return options;
}

QString conflict(const QCommandLineParser &parser)
{
    const auto isSet = [&parser](const char *name) { return parser.isSet(QString::fromLatin1(name)); };
    const auto value = [&parser](const char *name) { return parser.value(QString::fromLatin1(name)); };
    if (isSet("list") && isSet("json"))
        return QStringLiteral("--list and --json exclude each other.");
    if (isSet("audio") && isSet("no-audio"))
        return QStringLiteral("--audio and --no-audio exclude each other.");
    if (isSet("verbose") && isSet("quiet"))
        return QStringLiteral("--verbose and --quiet exclude each other.");
    if (value("output") == QLatin1String("-"))
        return QStringLiteral(
            "Standard output cannot take the file, which ffmpeg has to write to the disk: name a file.");
    if (isSet("output") && parser.positionalArguments().size() > 1)
        return QStringLiteral("--output names one file: give one address with it, or use --folder.");
    for (const char *name : {"format", "audio", "output", "folder", "tool", "pycache", "log"})
        if (isSet(name) && value(name).isEmpty())
            return QStringLiteral("--%1 needs a value.").arg(QString::fromLatin1(name));
    return {};
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

} // namespace

CommandLine CommandLine::read(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(description());
    parser.addPositionalArgument(QStringLiteral("URL"), QStringLiteral("Addresses of the pages, http or https."),
                                 QStringLiteral("URL..."));
    parser.addOptions(optionList());
    if (!parser.parse(arguments))
        return refused(parser.errorText());
    if (parser.isSet(QStringLiteral("help")))
        return ended(Done, parser.helpText().trimmed());
    if (parser.isSet(QStringLiteral("version")))
        return ended(Done, QStringLiteral("nox-fetch " NOX_FETCH_VERSION));
    if (const QString message = conflict(parser); !message.isEmpty())
        return refused(message);
    CommandLine result;
    result.options = optionsFrom(parser);
    if (result.options.mode == Options::Mode::ToolVersion)
        return result;
    if (result.options.urls.isEmpty())
        return refused(QStringLiteral("Give at least one address."));
    for (const QString &url : std::as_const(result.options.urls))
        if (const QString message = Nox::UrlCheck::errorString(url); !message.isEmpty())
            return refused(result.options.urls.size() == 1 ? message : QStringLiteral("\"%1\": %2").arg(url, message));
    if (result.options.mode == Options::Mode::Download)
        if (const QString message = destinationErrorString(result.options); !message.isEmpty())
            return ended(UsageError, message);
    return result;
}

} // namespace NoxFetch
