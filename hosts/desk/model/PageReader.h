#pragma once

#include "hosts/common/ExtractionJob.h"
#include "hosts/common/StreamChoice.h"
#include "hosts/common/ToolSetup.h"
#include "hosts/desk/model/SharedLog.h"

#include <nox/model/WebMediaInfo.h>

#include <QObject>

#include <optional>

namespace NoxDesk {

/** The page that the user looks at: reads one after the other, the newest request wins. */
class PageReader : public QObject
{
    Q_OBJECT

public:
    enum class State { Empty, Reading, Ready, Failed };
    Q_ENUM(State)

    /** @param log for words of the tool that the library does not notify of; must outlive the reader */
    PageReader(const NoxHost::ToolSetup &tools, SharedLog &log, QObject *parent = nullptr);

    /** Reads the page whose address is @p text, blanks around it aside; or refuses it. */
    void read(const QString &text);

    /** Stops reading; the state is Empty when the tool is gone. */
    void cancel();

    State state() const;
    QString url() const;                   ///< Address of the page; empty before the first one.
    Nox::WebMediaInfo page() const;        ///< What the page holds, when Ready.
    NoxHost::StreamChoice streams() const; ///< The page's streams, when Ready.
    QString problem() const;               ///< What went wrong, when Failed.
    QString toolWords() const;             ///< What the tool itself said of it; may be empty.

Q_SIGNALS:
    void stateChanged(NoxDesk::PageReader::State state);

    /** The text is no address; whatever is shown stays. */
    void refused(const QString &words);

private:
    void dismiss();
    void begin();
    void setState(State state);
    void onFinished(const Nox::WebMediaInfo &page);
    void fail(const QString &words, const QString &toolWords = {});

    NoxHost::ToolSetup m_tools;
    SharedLog &m_log;
    std::optional<SharedLog::Run> m_run;
    NoxHost::ExtractionJob *m_job = nullptr; // a child of this object
    State m_state = State::Empty;
    QString m_url;
    Nox::WebMediaInfo m_page;
    NoxHost::StreamChoice m_streams;
    QString m_problem;
    QString m_toolWords;
};

} // namespace NoxDesk
