#pragma once

#include <QObject>
#include <QProcess>

namespace NoxDesk {

/** Fetches a newer download tool by the command nox-renew-tool. Ends the command when it is deleted. */
class ToolRenewal : public QObject
{
    Q_OBJECT

public:
    explicit ToolRenewal(QObject *parent = nullptr);
    ~ToolRenewal() override;

    void start(); ///< Does nothing while it runs.
    void cancel();
    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }

    /** When the user's own tool was made, in words; empty when there is none. */
    static QString dateText();

Q_SIGNALS:
    /** @param outcome what has become of it, in words */
    void finished(const QString &outcome);

private:
    void onFinished(int code, QProcess::ExitStatus status);
    void sendSignal(int number);

    QProcess m_process;
    bool m_isCancelled = false;
};

} // namespace NoxDesk
