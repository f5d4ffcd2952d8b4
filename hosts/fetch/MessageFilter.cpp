#include "MessageFilter.h"

#include "Console.h"
#include "common/PrintableText.h"

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
        target->problem(NoxHost::printableLine(message));
    else if (showsAll)
        target->note(NoxHost::printableLine(message));
}

} // namespace

MessageFilter::MessageFilter(Console &console)
{
    target = &console;
    qInstallMessageHandler(handle);
}

MessageFilter::~MessageFilter()
{
    qInstallMessageHandler(nullptr);
    target = nullptr;
}

void MessageFilter::setVerbose(bool verbose)
{
    showsAll = verbose;
}

} // namespace NoxFetch
