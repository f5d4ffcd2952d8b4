#pragma once

#include <nox/jobs/Job.h>
#include <nox/jobs/StreamChoice.h>
#include <nox/jobs/ToolSetup.h>
#include <nox/model/WebMediaInfo.h>

#include <QStringList>

namespace Nox {

/** Reads a page: what it is called, how long it plays, which streams it offers. */
class NOX_JOBS_EXPORT PageJob : public Job
{
    Q_OBJECT
    Q_PROPERTY(QString url READ url CONSTANT)
    Q_PROPERTY(QString title READ title NOTIFY stateChanged)
    Q_PROPERTY(QStringList warnings READ warnings NOTIFY stateChanged)
    Q_PROPERTY(int videoCount READ videoCount NOTIFY stateChanged)

public:
    /**
     * @param url address of the page; UrlCheck::corrected() makes one of what a person types
     * @param tools where the programs are that the job runs
     * @param parent deletes the job, if nobody else does
     */
    explicit PageJob(const QString &url, const ToolSetup &tools = ToolSetup(), QObject *parent = nullptr);
    ~PageJob() override;

    QString url() const;          ///< Address of the page.
    WebMediaInfo page() const;    ///< What the page holds; without a stream before the end and after an error.
    StreamChoice streams() const; ///< The streams of page(), at least one after a success.
    QString title() const;        ///< The title of page(), fit for display on one line; may be empty.

    /**
     * What the tool warned of, also after a success, such as that it does not use the user's settings: sentences fit
     * for display, each once, in the language of the tool. Empty before the end.
     */
    QStringList warnings() const;

    /**
     * How many videos the page has: page() describes the first, PlaylistJob lists them. -1 where there are several, but
     * the tool does not know how many; 1 before the end, after an error, and with a tool without our front.
     */
    int videoCount() const;

    bool isInParts() const; ///< Whether these videos are the parts of one.

private:
    class Private;
    Private *d() const;
};

} // namespace Nox
