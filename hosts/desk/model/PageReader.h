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
 * The page that the user looks at. Reads one after the other, the newest request wins; a page that has been read stays
 * until another one has been.
 */
class PageReader : public QObject
{
    Q_OBJECT

public:
    enum class State { Empty, Reading, Ready, Failed };
    Q_ENUM(State)

    explicit PageReader(const Nox::ToolSetup &tools, QObject *parent = nullptr);

    /** For pages that are read from now on. */
    void setTools(const Nox::ToolSetup &tools) { m_tools = tools; }

    /**
     * Reads the page whose address is @p text, corrected where it is clear what was meant; or refuses it. A page that
     * is being read is not begun anew.
     */
    void read(const QString &text);

    /** Reads the page of the last request again. */
    void readAgain();

    /** Stops reading; when the tool is gone the state is Ready with the page before, or Empty without one. */
    void cancel();

    /** Forgets a failure. */
    void dismissProblem();

    State state() const { return m_state; }
    QString requestedUrl() const { return m_requestedUrl; } ///< Address of the last request, if there was one.
    bool hasPage() const { return !m_url.isEmpty(); }       ///< Whether a page has been read.
    bool isOutdated() const;                                ///< Whether another page is wanted than was read.
    QString url() const { return m_url; }                   ///< Address of the page that has been read.
    Nox::WebMediaInfo page() const { return m_page; }       ///< What it holds.
    Nox::StreamChoice streams() const { return m_streams; } ///< Its streams.
    QStringList warnings() const { return m_warnings; }     ///< What the tool warned of.
    int videoCount() const { return m_videoCount; }         ///< See Nox::PageJob::videoCount().
    bool isInParts() const { return m_isInParts; }          ///< Whether the videos are parts of one.
    QString errorString() const;                            ///< What went wrong, when Failed.
    QString errorDetails() const;                           ///< What the tool itself said of it; may be empty.

Q_SIGNALS:
    void stateChanged(NoxDesk::PageReader::State state);

    /** Another page has been read. */
    void pageChanged();

    /** The text is no address; whatever is shown stays. */
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
