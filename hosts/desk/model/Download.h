#pragma once

#include "hosts/desk/model/DownloadRequest.h"

#include <nox/jobs/DownloadJob.h>
#include <nox/jobs/ToolSetup.h>
#include <nox/jobs/TransferFigures.h>

#include <QObject>

#include <memory>

namespace NoxDesk {

/** One download as the user sees it, from its request on: how far it is, and what has become of it. */
class Download : public QObject
{
    Q_OBJECT

public:
    enum class State { Waiting, Running, Cancelling, Finished, Failed, Cancelled };
    Q_ENUM(State)

    explicit Download(const DownloadRequest &request, QObject *parent = nullptr);

    void start(const Nox::ToolSetup &tools); ///< Begins, if it waits.
    void cancel();

    /** Lets a download that has failed or been cancelled wait again. @param file path of the file to make */
    void retry(const QString &file);

    State state() const { return m_state; }

    /** Whether it waits or runs. */
    bool isActive() const { return m_state == State::Waiting || isRunning(); }

    /** Whether processes and files of it may be there. */
    bool isRunning() const { return m_state == State::Running || m_state == State::Cancelling; }

    bool canRetry() const { return m_state == State::Failed || m_state == State::Cancelled; }
    DownloadRequest request() const { return m_request; }
    QString file() const { return m_file; } ///< Path of the file that is being made, or has been.
    int percent() const;                    ///< 0 to 100, or -1 when it cannot be told.
    QString status() const;                 ///< Phase and figures, or the outcome, in words.
    QString errorString() const;            ///< What went wrong, for a person; empty unless it has failed.

    /** What the external programs said of the failure; empty when it is not known. */
    QString errorDetails() const;

Q_SIGNALS:
    void changed();

    /** Nothing is left of it but the finished file. */
    void ended();

private:
    void onFinished();
    void end(State state);
    void setState(State state);
    QString phaseText() const;
    QString figuresText() const;

    DownloadRequest m_request;
    std::unique_ptr<Nox::DownloadJob> m_job; // of the last attempt
    State m_state = State::Waiting;
    QString m_file;
};

} // namespace NoxDesk
