#pragma once

#include "hosts/common/ToolSetup.h"

#include <QObject>
#include <QProcess>
#include <QTimer>

namespace NoxHost {

/**
 * Asks the tool for its version. Exactly one of finished() and failed() comes, from the event loop;
 * deleting the job stops the tool.
 */
class ToolVersionJob : public QObject
{
    Q_OBJECT

public:
    explicit ToolVersionJob(const ToolSetup &tools, QObject *parent = nullptr);
    ~ToolVersionJob() override;

    void start(); ///< Begins. Once for each job.

Q_SIGNALS:
    /** @param version as the tool tells it, fit for display */
    void finished(const QString &version);

    /** @param words the failure in words @param toolWords what the tool itself said, may be empty */
    void failed(const QString &words, const QString &toolWords);

private:
    void onEnd();

    ToolSetup m_tools;
    QProcess m_process;
    QTimer m_patience;
};

} // namespace NoxHost
