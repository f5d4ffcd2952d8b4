#pragma once

#include <nox/jobs/PageJob.h>
#include <nox/jobs/StreamChoice.h>
#include <nox/jobs/ToolSetup.h>
#include <nox/model/WebMediaInfo.h>

#include <QObject>
#include <QStringList>

#include <memory>

namespace NoxDesk {

/**
 * The current page. It reads one page at a time; a new request replaces the one before. The last page stays until
 * another one was read.
 */
class PageReader : public QObject
{
    Q_OBJECT

public:
    enum class State { Empty, Reading, Ready, Failed };
    Q_ENUM(State)

    explicit PageReader(const Nox::ToolSetup &tools, QObject *parent = nullptr);

    /** Used for pages that are read from now on. */
    void setTools(const Nox::ToolSetup &tools) { m_tools = tools; }

    /**
     * Reads the page with the address @p text, completed if necessary, or emits refused(). If this page is being read
     * already, and was not cancelled, nothing happens.
     */
    void read(const QString &text);

    /** Reads the page of the last request again. */
    void readAgain();

    /** Stops reading. When the tool has ended, the state is Ready with the page before, or Empty without one. */
    void cancel();

    /** Leaves the state Failed. */
    void dismissError();

    State state() const { return m_state; }
    QString requestedUrl() const { return m_requestedUrl; } ///< Address of the last request; may be empty.
    bool hasPage() const { return !m_url.isEmpty(); }       ///< Whether a page was read.
    bool isOutdated() const;                                ///< Whether the last request was for another page.
    QString url() const { return m_url; }                   ///< Address of the page that was read.
    Nox::WebMediaInfo page() const { return m_page; }       ///< Its content.
    Nox::StreamChoice streams() const { return m_streams; } ///< Its streams.
    QStringList warnings() const { return m_warnings; }     ///< Warnings of the tool.
    int videoCount() const { return m_videoCount; }         ///< See Nox::PageJob::videoCount().
    bool isInParts() const { return m_isInParts; }          ///< Whether the videos are parts of one.
    QString errorString() const;                            ///< The error message in the state Failed.
    QString errorDetails() const;                           ///< Messages of the tool about it; may be empty.

Q_SIGNALS:
    void stateChanged(NoxDesk::PageReader::State state);

    /** Another page was read. */
    void pageChanged();

    /** The text is not a valid address. Page and state do not change. */
    void refused(const QString &message);

private:
    void setState(State state);
    void onFinished();

    Nox::ToolSetup m_tools;
    std::unique_ptr<Nox::PageJob> m_job; // of the last request
    State m_state = State::Empty;
    QString m_requestedUrl;
    QString m_url;
    Nox::WebMediaInfo m_page;
    Nox::StreamChoice m_streams;
    QStringList m_warnings;
    int m_videoCount = 1;
    bool m_isInParts = false;
};

} // namespace NoxDesk
