#include "hosts/fetch/MessageHandler.h"

#include "hosts/common/TextSanitizer.h"
#include "hosts/fetch/Console.h"

#include <QtGlobal>

namespace NoxFetch {

namespace {

Console *target = nullptr;
bool showsAll = false;

void handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    Q_UNUSED(context)
    if (target == nullptr)
        return;
    if (type == QtFatalMsg || type == QtCriticalMsg)
        target->problem(NoxHost::TextSanitizer::line(message));
    else if (showsAll)
        target->note(NoxHost::TextSanitizer::line(message));
}

} // namespace

MessageHandler::MessageHandler(Console &console)
{
    target = &console;
    qInstallMessageHandler(handle);
}

MessageHandler::~MessageHandler()
{
    qInstallMessageHandler(nullptr);
    target = nullptr;
}

void MessageHandler::setVerbose(bool verbose)
{
    showsAll = verbose;
}

} // namespace NoxFetch
