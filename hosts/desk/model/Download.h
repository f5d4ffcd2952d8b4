#pragma once

#include "hosts/common/DownloadJob.h"
#include "hosts/common/ToolSetup.h"
#include "hosts/common/TransferFigures.h"
#include "hosts/desk/model/DownloadRequest.h"
#include "hosts/desk/model/LogSession.h"

#include <QObject>

#include <optional>

namespace NoxDesk {

/** One download as the user sees it, from its beginning on: how far it is, and what has become of it. */
class Download : public QObject
{
    Q_OBJECT

public:
    enum class State { Running, Cancelling, Finished, Failed, Cancelled };
    Q_ENUM(State)

    Download(const NoxHost::ToolSetup &tools, ProgramLog &log, const DownloadRequest &request,
             QObject *parent = nullptr);

    void start();
    void cancel();

    State state() const;
    bool isActive() const; ///< Whether processes and files of it may still be there.
    QString title() const;
    QString file() const;    ///< Path of the file that is being made, or has been.
    int percent() const;     ///< 0 to 100, or -1 when it cannot be told.
    QString status() const;  ///< Phase and figures, or the outcome, in words.
    QString problem() const; ///< What went wrong, in words.

    /** What the external programs said of the failure; empty when it is not known. */
    QString toolWords() const;

Q_SIGNALS:
    void changed();

    /** Nothing is left of it but the finished file. */
    void ended();

private:
    void onProgress(const NoxHost::TransferFigures &figures);
    void end(State state);
    QString phaseText() const;
    QString figuresText() const;

    DownloadRequest m_request;
    ProgramLog &m_log;
    std::optional<LogSession> m_session;
    NoxHost::DownloadJob m_job;
    NoxHost::TransferFigures m_figures;
    State m_state = State::Running;
    QString m_file;
    QString m_problem;
    QString m_toolWords;
};

} // namespace NoxDesk
