#pragma once

#include <nox/jobs/Job.h>
#include <nox/jobs/StreamChoice.h>
#include <nox/jobs/ToolSetup.h>
#include <nox/model/WebMediaInfo.h>

#include <QStringList>

namespace Nox {

/** Reads a page: its title, duration, picture and streams. */
class NOX_JOBS_EXPORT PageJob : public Job
{
    Q_OBJECT
    Q_PROPERTY(QString url READ url CONSTANT)
    Q_PROPERTY(QString title READ title NOTIFY stateChanged)
    Q_PROPERTY(QStringList warnings READ warnings NOTIFY stateChanged)
    Q_PROPERTY(int videoCount READ videoCount NOTIFY stateChanged)

public:
    /**
     * @param url address of the page; UrlCheck::corrected() completes what a user types
     * @param tools paths of the external programs
     * @param parent owner of the job, as usual for QObject
     */
    explicit PageJob(const QString &url, const ToolSetup &tools = ToolSetup(), QObject *parent = nullptr);
    ~PageJob() override;

    QString url() const;          ///< Address of the page.
    WebMediaInfo page() const;    ///< The content; it has no stream before the end and after an error.
    StreamChoice streams() const; ///< The streams of page(); at least one after a success.
    QString title() const;        ///< The title of page() on one line, safe to show; may be empty.

    /**
     * Warnings of the tool, for example that it does not use the user's settings: sentences that are safe to show,
     * without repetitions, in the language of the tool. There may be some after a success, too. Empty before the end.
     */
    QStringList warnings() const;

    /**
     * Number of videos on the page: page() describes the first, PlaylistJob lists them. -1 if there are several, but
     * the tool does not know how many; 1 before the end, after an error, and with a tool without our front.
     */
    int videoCount() const;

    bool isInParts() const; ///< Whether these are the parts of one video.

private:
    class Private;
    Private *d() const;
};

} // namespace Nox
