#pragma once

#include "hosts/common/ToolSetup.h"

#include <nox/front/WebMediaInfoExtractor.h>
#include <nox/model/WebMediaInfo.h>

#include <QObject>
#include <QTimer>

#include <memory>

namespace NoxHost {

/**
 * One extraction, with one outcome: exactly one of finished(), failed() and cancelled() comes, from
 * the event loop, when the tool's process is gone.
 *
 * The library notifies of errors more than once, and of some that the tool goes on after; the outcome
 * is what stands when the tool has ended.
 */
class ExtractionJob : public QObject
{
    Q_OBJECT

public:
    explicit ExtractionJob(const ToolSetup &tools, QObject *parent = nullptr);

    /** Begins to read the page at @p url, one that UrlCheck accepts. Once for each job. */
    void start(const QString &url);

    /** Stops; cancelled() follows unless the outcome is known already. */
    void cancel();

    /** After the outcome: the tool's warning that it does not use the user's settings; empty when it does. */
    QString unusedSettings() const;

Q_SIGNALS:
    /** The page holds at least one stream that StreamChoice offers. */
    void finished(const Nox::WebMediaInfo &page);

    /**
     * It does not work.
     * @param words the failure in words
     * @param toolWords what the tool itself said, fit for display; may be empty
     */
    void failed(const QString &words, const QString &toolWords);

    /** Stopped by cancel(). */
    void cancelled();

private:
    enum class State { Idle, Running, Stopping, Ending, Ended };
    enum class Outcome { Finished, Failed, Cancelled };

    void onFinished(const Nox::WebMediaInfo &page);
    void onError(qint32 code);
    void settle();
    void end(Outcome outcome);
    void letGo();
    QString failureText() const;
    void report();

    ToolSetup m_tools;
    std::unique_ptr<Nox::WebMediaInfoExtractor> m_extractor;
    Nox::WebMediaInfo m_page;
    State m_state = State::Idle;
    Outcome m_outcome = Outcome::Failed;
    bool m_awaitsError = false;
    bool m_answered = false;
    int m_code = -1;
    QString m_toolOutput;
    QTimer m_patience;
    QTimer m_settling;
    QTimer m_ending;
};

} // namespace NoxHost
