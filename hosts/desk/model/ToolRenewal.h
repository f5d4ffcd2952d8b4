#pragma once

#include <QObject>
#include <QProcess>

namespace NoxDesk {

/** Downloads a newer tool with the command nox-renew-tool. The destructor ends the command. */
class ToolRenewal : public QObject
{
    Q_OBJECT

public:
    explicit ToolRenewal(QObject *parent = nullptr);
    ~ToolRenewal() override;

    void start(); ///< Does nothing while the command runs.
    void cancel();
    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }

    /** The date of the user's own tool, as text; empty when there is none. */
    static QString dateText();

Q_SIGNALS:
    /** @param outcome the outcome, as a message */
    void finished(const QString &outcome);

private:
    void onFinished(int code, QProcess::ExitStatus status);
    void sendSignal(int number);

    QProcess m_process;
    bool m_isCancelled = false;
};

} // namespace NoxDesk
