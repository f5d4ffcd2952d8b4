#pragma once

#include "hosts/common/ExtractionJob.h"
#include "hosts/common/StreamChoice.h"
#include "hosts/common/ToolSetup.h"

#include <nox/model/WebMediaInfo.h>

#include <QObject>

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

    explicit PageReader(const NoxHost::ToolSetup &tools, QObject *parent = nullptr);

    /** For pages that are read from now on. */
    void setTools(const NoxHost::ToolSetup &tools) { m_tools = tools; }

    /** Reads the page whose address is @p text, mended where it is clear what was meant; or refuses it. */
    void read(const QString &text);

    /** Reads the page of the last request again. */
    void readAgain();

    /** Stops reading; when the tool is gone the state is Ready with the page before, or Empty without one. */
    void cancel();

    /** Forgets a failure. */
    void dismissProblem();

    State state() const { return m_state; }
    QString requestedUrl() const { return m_requestedUrl; }     ///< Address of the last request, if there was one.
    bool hasPage() const { return !m_url.isEmpty(); }           ///< Whether a page has been read.
    QString url() const { return m_url; }                       ///< Address of the page that has been read.
    Nox::WebMediaInfo page() const { return m_page; }           ///< What it holds.
    NoxHost::StreamChoice streams() const { return m_streams; } ///< Its streams.
    QString unusedSettings() const { return m_unusedSettings; } ///< Why the user's settings for the tool were not used.
    QString problem() const { return m_problem; }               ///< What went wrong, when Failed.
    QString toolWords() const { return m_toolWords; }           ///< What the tool itself said of it; may be empty.

Q_SIGNALS:
    void stateChanged(NoxDesk::PageReader::State state);

    /** Another page has been read. */
    void pageChanged();

    /** The text is no address; whatever is shown stays. */
    void refused(const QString &words);

private:
    void dismissJob();
    void begin();
    void setState(State state);
    void onFinished(const Nox::WebMediaInfo &page);
    void fail(const QString &words, const QString &toolWords = {});

    NoxHost::ToolSetup m_tools;
    NoxHost::ExtractionJob *m_job = nullptr; // a child of this object
    State m_state = State::Empty;
    QString m_requestedUrl;
    QString m_url;
    Nox::WebMediaInfo m_page;
    NoxHost::StreamChoice m_streams;
    QString m_unusedSettings;
    QString m_problem;
    QString m_toolWords;
};

} // namespace NoxDesk
