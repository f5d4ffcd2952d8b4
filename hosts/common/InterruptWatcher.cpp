#include "hosts/common/InterruptWatcher.h"

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace NoxHost {

namespace {

constexpr int watchedSignals[] = {SIGINT, SIGTERM, SIGHUP};
int channel[2] = {-1, -1}; // a pipe: written by the signal handler, read by the event loop

void onSignal(int /*number*/)
{
    const int savedErrno = errno;
    const char byte = 1;
    if (write(channel[0], &byte, 1) < 0) {
        // If the pipe is full, an interrupt is already pending.
    }
    errno = savedErrno;
}

void setHandler(void (*handler)(int))
{
    for (const int number : watchedSignals) {
        struct sigaction action = {};
        if (sigaction(number, nullptr, &action) != 0 || action.sa_handler == SIG_IGN)
            continue;
        action = {};
        action.sa_handler = handler;
        action.sa_flags = SA_RESTART;
        sigemptyset(&action.sa_mask);
        sigaction(number, &action, nullptr);
    }
}

} // namespace

InterruptWatcher::InterruptWatcher(QObject *parent)
    : QObject(parent)
{
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, channel) != 0)
        return; // without the pipe, the signals end the program as usual
    m_notifier = std::make_unique<QSocketNotifier>(channel[1], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &InterruptWatcher::drain);
    setHandler(onSignal);
}

InterruptWatcher::~InterruptWatcher()
{
    if (m_notifier != nullptr) {
        setHandler(SIG_DFL);
        m_notifier.reset();
        close(channel[0]);
        close(channel[1]);
    }
}

void InterruptWatcher::drain()
{
    char bytes[64];
    while (read(channel[1], bytes, sizeof bytes) > 0) {}
    Q_EMIT interrupted();
}

} // namespace NoxHost
