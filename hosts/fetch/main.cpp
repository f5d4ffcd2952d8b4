#include "hosts/common/InterruptWatcher.h"
#include "hosts/common/Locale.h"
#include "hosts/common/ToolSetup.h"
#include "hosts/fetch/Console.h"
#include "hosts/fetch/ExitCode.h"
#include "hosts/fetch/FetchApp.h"
#include "hosts/fetch/MessageHandler.h"
#include "hosts/fetch/Options.h"

#include <QCoreApplication>
#include <QTimer>

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace {

/**
 * Occupies standard input, output and error where the program was started without them: files that it opens later
 * would get their numbers, and what it prints. To write to the missing output stays an error.
 */
void occupyClosedChannels()
{
    for (const int channel : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(channel, F_GETFD) < 0)
            static_cast<void>(open("/dev/null", O_RDONLY)); // takes the lowest number that is free, which is this one
}

} // namespace

int main(int argc, char *argv[])
{
    using namespace NoxFetch;

    occupyClosedChannels();
    // A reader that goes away shows as an error of the write, which can be told. The programs get the usual answer.
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    NoxHost::ensureUtf8Locale();
    Console console;
    MessageHandler messages(console);
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("nox-fetch"));
    NoxHost::ToolSetup::prepareEnvironment();

    const CommandLine commandLine = CommandLine::read(QCoreApplication::arguments());
    if (commandLine.exitCode) {
        if (*commandLine.exitCode == Done)
            return console.result(commandLine.text) ? Done : ExtractionFailed;
        console.problem(commandLine.text);
        return *commandLine.exitCode;
    }
    console.setQuiet(commandLine.options.quiet);
    messages.setVerbose(commandLine.options.verbose);

    FetchApp fetch(commandLine.options, console);
    NoxHost::InterruptWatcher interrupts;
    QObject::connect(&interrupts, &NoxHost::InterruptWatcher::interrupted, &fetch, &FetchApp::interrupt);
    QObject::connect(&fetch, &FetchApp::ended, &application, &QCoreApplication::exit, Qt::QueuedConnection);
    QTimer::singleShot(0, &fetch, &FetchApp::start);
    return QCoreApplication::exec();
}
