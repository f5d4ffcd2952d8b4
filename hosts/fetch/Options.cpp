#include "hosts/fetch/Options.h"

#include "hosts/common/Destination.h"
#include "hosts/common/UrlCheck.h"
#include "hosts/fetch/ExitCode.h"

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QDir>

namespace NoxFetch {

namespace {

QString description()
{
    return QStringLiteral("Downloads the video of a web page. Without options: the best stream, joined with the best\n"
                          "audio, into a file named after the page's title. Prints the file's path.\n"
                          "With -f, -a and -o nothing is looked up on the page, which saves one run of the tool.\n"
                          "\n"
                          "Exit code: 0 done, 1 page not readable, 2 wrong usage, 3 download failed, 130 interrupted.");
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
        {text("tool"), text("The download tool (default: yt.zip beside this program)."), text("FILE")},
        {text("pycache"), text("Where Python keeps its compiled code."), text("DIR")},
        {text("log"), text("Append a log to this file."), text("FILE")},
        {{text("v"), text("verbose")}, text("Show debug messages; log everything.")},
        {{text("q"), text("quiet")}, text("Show neither progress nor notes.")},
        {{text("h"), text("help")}, text("Show this help.")},
        {text("version"), text("Show the version.")},
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
    options.mode = isSet("json") ? Options::Mode::Json : isSet("list") ? Options::Mode::List : Options::Mode::Download;
    options.url = parser.positionalArguments().value(0);
    options.formatCode = value("format");
    options.audioCode = value("audio");
    options.noAudio = isSet("no-audio");
    options.output = isSet("output") ? QDir::current().absoluteFilePath(value("output")) : QString();
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
    if (isSet("list") && isSet("json"))
        return QStringLiteral("--list and --json exclude each other.");
    if (isSet("audio") && isSet("no-audio"))
        return QStringLiteral("--audio and --no-audio exclude each other.");
    if (isSet("verbose") && isSet("quiet"))
        return QStringLiteral("--verbose and --quiet exclude each other.");
    for (const char *name : {"format", "audio", "output", "tool", "pycache", "log"})
        if (isSet(name) && parser.value(QString::fromLatin1(name)).isEmpty())
            return QStringLiteral("--%1 needs a value.").arg(QString::fromLatin1(name));
    return {};
}

} // namespace

CommandLine CommandLine::read(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(description());
    parser.addPositionalArgument(QStringLiteral("URL"), QStringLiteral("Address of the page, http or https."));
    parser.addOptions(optionList());
    if (!parser.parse(arguments))
        return refused(parser.errorText());
    if (parser.isSet(QStringLiteral("help")))
        return ended(Done, parser.helpText().trimmed());
    if (parser.isSet(QStringLiteral("version")))
        return ended(Done, QStringLiteral("nox-fetch " NOX_FETCH_VERSION));
    if (const QString words = conflict(parser); !words.isEmpty())
        return refused(words);
    if (parser.positionalArguments().size() != 1)
        return refused(QStringLiteral("Give exactly one address."));
    CommandLine result;
    result.options = optionsFrom(parser);
    if (const QString words = NoxHost::UrlCheck::problem(result.options.url); !words.isEmpty())
        return refused(words);
    if (result.options.mode == Options::Mode::Download) {
        const QString words = result.options.output.isEmpty() ? NoxHost::Destination::folderProblem(QDir::currentPath())
                                                              : NoxHost::Destination::problem(result.options.output);
        if (!words.isEmpty())
            return ended(UsageError, words);
    }
    return result;
}

} // namespace NoxFetch
