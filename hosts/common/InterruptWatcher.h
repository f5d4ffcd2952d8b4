#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace NoxHost {

/**
 * Turns SIGINT, SIGTERM and SIGHUP into a notification from the event loop, so that the download can
 * be stopped in order. There is one at most; while it lives, these signals do not end the program. A signal
 * that the program was started to ignore, as nohup does with SIGHUP, stays ignored.
 */
class InterruptWatcher : public QObject
{
    Q_OBJECT

public:
    explicit InterruptWatcher(QObject *parent = nullptr);
    ~InterruptWatcher() override;

Q_SIGNALS:
    /** The user, or the system, wants the program to end. */
    void interrupted();

private:
    void drain();

    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace NoxHost
