#include "hosts/common/InterruptWatcher.h"
#include "hosts/common/Locale.h"
#include "hosts/fetch/Console.h"
#include "hosts/fetch/ExitCode.h"
#include "hosts/fetch/FetchApp.h"
#include "hosts/fetch/Options.h"

#include <nox/jobs/TextSanitizer.h>
#include <nox/jobs/ToolSetup.h>

#include <QCoreApplication>
#include <QTimer>

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace {

/**
 * Opens standard input, output and error if the program was started without them. Otherwise files that are opened later
 * would get their numbers and receive what the program prints. Writing to a missing output stays an error.
 */
void occupyClosedChannels()
{
    for (const int channel : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(channel, F_GETFD) < 0)
            static_cast<void>(open("/dev/null", O_RDONLY)); // gets the lowest free number, which is this one
}

} // namespace

int main(int argc, char *argv[])
{
    using namespace NoxFetch;

    occupyClosedChannels();
    // So that a closed pipe is a write error that we can report. Child processes get the default action.
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    NoxHost::ensureUtf8Locale();
    static Console console;
    static bool showsTraces = false; // of the library, which uses Qt's debug channel
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &message) {
        const QString line = Nox::TextSanitizer::line(message);
        if (type == QtFatalMsg || type == QtCriticalMsg)
            console.error(line);
        else if (showsTraces)
            console.note(line);
    });
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("nox-fetch"));
    Nox::ToolSetup::prepareEnvironment();

    const CommandLine commandLine = CommandLine::read(QCoreApplication::arguments());
    if (commandLine.exitCode) {
        if (*commandLine.exitCode == Done)
            return console.result(commandLine.text) ? Done : ExtractionFailed;
        console.error(commandLine.text);
        return *commandLine.exitCode;
    }
    console.setQuiet(commandLine.options.quiet);
    showsTraces = commandLine.options.verbose;

    FetchApp fetch(commandLine.options, console);
    NoxHost::InterruptWatcher interrupts;
    QObject::connect(&interrupts, &NoxHost::InterruptWatcher::interrupted, &fetch, &FetchApp::interrupt);
    QObject::connect(&fetch, &FetchApp::ended, &application, &QCoreApplication::exit, Qt::QueuedConnection);
    QTimer::singleShot(0, &fetch, &FetchApp::start);
    return QCoreApplication::exec();
}
