#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace NoxHost {

/**
 * Turns SIGINT, SIGTERM and SIGHUP into a Qt signal from the event loop, so that the download can be stopped properly.
 * At most one may exist; while it exists, these signals do not end the program. A signal that was ignored at the start,
 * such as SIGHUP under nohup, stays ignored.
 */
class InterruptWatcher : public QObject
{
    Q_OBJECT

public:
    explicit InterruptWatcher(QObject *parent = nullptr);
    ~InterruptWatcher() override;

Q_SIGNALS:
    /** The user or the system asks the program to end. */
    void interrupted();

private:
    void drain();

    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace NoxHost
