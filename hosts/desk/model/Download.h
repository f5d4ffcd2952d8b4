#pragma once

#include "hosts/desk/model/DownloadRequest.h"

#include <nox/jobs/DownloadJob.h>
#include <nox/jobs/PageJob.h>
#include <nox/jobs/ToolSetup.h>
#include <nox/jobs/TransferFigures.h>

#include <QJsonObject>
#include <QObject>

#include <functional>
#include <memory>

namespace NoxDesk {

/**
 * One download as the user sees it, from its request on: how far it is, and what has become of it. A download of which
 * only the address is known reads the page first.
 */
class Download : public QObject
{
    Q_OBJECT

public:
    enum class State { Waiting, Running, Cancelling, Finished, Failed, Cancelled, Pausing, Paused };
    Q_ENUM(State)

    /** Makes the request for a page that has been read; without a stream when there is none to download. */
    using Chooser = std::function<DownloadRequest(const Nox::PageJob &page)>;

    /** @param request without a stream, the page is read first */
    explicit Download(const DownloadRequest &request, QObject *parent = nullptr);

    /** A download of an earlier time. @param stored what toJson() told; an unfinished download is paused */
    explicit Download(const QJsonObject &stored, QObject *parent = nullptr);

    /** A paused download. @param record of the job that goes on with it */
    Download(const QJsonObject &record, const QString &url, const QString &file, QObject *parent);

    QJsonObject toJson() const; ///< In a form to be stored.

    void start(const Nox::ToolSetup &tools, const Chooser &choose); ///< Begins, if it waits.
    void pause();
    void cancel();

    /** Lets a download wait again that is paused, has failed or been cancelled; it goes on with what is there. */
    void retry();

    void discard(); ///< Removes what is kept to go on with. Not while it runs.

    State state() const { return m_state; }

    /** Whether it waits or runs. */
    bool isActive() const { return m_state == State::Waiting || isRunning(); }

    /** Whether processes of it may be there. */
    bool isRunning() const
    {
        return m_state == State::Running || m_state == State::Cancelling || m_state == State::Pausing;
    }

    bool isEnded() const { return !isActive() && m_state != State::Paused; }
    bool canRetry() const { return !isActive() && m_state != State::Finished; }
    QString url() const { return m_url; }   ///< Address of the page.
    QString file() const { return m_file; } ///< Path of the file that is being made, or has been; may be empty yet.
    QString name() const;                   ///< The file's name, or the address.
    int percent() const;                    ///< 0 to 100, or -1 when it cannot be told.
    QString status() const;                 ///< Phase and figures, or the outcome, in words.
    QString errorString() const { return m_error; } ///< What went wrong, for a person; empty unless it has failed.

    /** What the external programs said of the failure; empty when it is not known. */
    QString errorDetails() const { return m_errorDetails; }

    /** Whether it fetches what @p request asks for. */
    bool isSameAs(const DownloadRequest &request) const;

Q_SIGNALS:
    void changed();

    /** It does not run any more. But for the finished file and what is kept to go on with, nothing is left of it. */
    void ended();

private:
    void startJob();
    void onPageRead();
    void onFinished();
    void end(const Nox::Job &job);
    void end(State state);
    void setState(State state);
    QString phaseText() const;
    QString figuresText() const;

    QString m_url;
    QString m_file;
    QJsonObject m_record; // of the job; empty until it is known what to download
    State m_state = State::Waiting;
    QString m_error;
    QString m_errorDetails;
    Nox::ToolSetup m_tools;
    Chooser m_choose;
    std::unique_ptr<Nox::PageJob> m_page;    // while the page is read
    std::unique_ptr<Nox::DownloadJob> m_job; // of the last attempt
};

} // namespace NoxDesk
