#include "hosts/common/InterruptWatcher.h"
#include "hosts/common/Locale.h"
#include "hosts/desk/SingleInstance.h"
#include "hosts/desk/Translation.h"
#include "hosts/desk/model/DeskController.h"
#include "hosts/desk/view/MainWindow.h"

#include <nox/jobs/ToolSetup.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <QLoggingCategory>
#include <QStandardPaths>

namespace {

const QLatin1String newWindow("new-window");

/** Reads the command line. Ends the program for --help and mistakes. */
void read(QCommandLineParser &parser)
{
    parser.addOption(
        {newWindow, QCoreApplication::translate("main", "Open a window of its own, also when there is one already.")});
    parser.setApplicationDescription(QCoreApplication::translate("main", "Downloads videos from web pages."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("URL"), QCoreApplication::translate("main", "Page to read at once."),
                                 QStringLiteral("[URL...]"));
    parser.process(QCoreApplication::arguments());
}

} // namespace

int main(int argc, char *argv[])
{
    using namespace NoxDesk;

    NoxHost::ensureUtf8Locale();
    if (!qEnvironmentVariableIsSet("QT_AUTO_SCREEN_SCALE_FACTOR")) {
        qputenv("QT_AUTO_SCREEN_SCALE_FACTOR", "1"); // Qt 5 does not scale unless asked to
    }
    const QApplication application(argc, argv);
    Nox::ToolSetup::prepareEnvironment();
    QCoreApplication::setOrganizationName(QStringLiteral("noxwebmedia"));
    QCoreApplication::setApplicationName(QStringLiteral("nox-desk"));
    QCoreApplication::setApplicationVersion(QStringLiteral(NOX_DESK_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("nox-desk"));
    // On the debug channel the library traces; QT_LOGGING_RULES brings it back.
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    installTranslation(QLocale());
    QCommandLineParser commandLine;
    read(commandLine);
    SingleInstance instance;
    if (!commandLine.isSet(newWindow) && !instance.begin(commandLine.positionalArguments()))
        return EXIT_SUCCESS;
    QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/nox-desk.png")));

    DeskController controller(QStandardPaths::writableLocation(QStandardPaths::CacheLocation));
    MainWindow window(controller);
    const NoxHost::InterruptWatcher interrupts;
    QObject::connect(&interrupts, &NoxHost::InterruptWatcher::interrupted, &window, &MainWindow::closeAtOnce);
    QObject::connect(&instance, &SingleInstance::handedOver, &window, &MainWindow::takeOver);
    window.show();
    window.takeOver(commandLine.positionalArguments());
    return QApplication::exec();
}
