#pragma once

#include <nox/jobs/JobsExport.h>

#include <QMetaType>
#include <QObject>
#include <QString>

namespace Nox {

/** One video of a page with several, as PlaylistJob lists it. A value. */
struct NOX_JOBS_EXPORT PlaylistEntry {
    Q_GADGET
    Q_PROPERTY(int number MEMBER number)
    Q_PROPERTY(QString url MEMBER url)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(qint64 duration MEMBER duration)
    Q_PROPERTY(QString thumbnailUrl MEMBER thumbnailUrl)

public:
    int number = 0;       ///< its place on the page, counted from 1
    QString url;          ///< what to give to PageJob or DownloadJob; always an address for them
    QString title;        ///< fit for display on one line; may be empty
    qint64 duration = 0;  ///< in seconds; 0 when unknown
    QString thumbnailUrl; ///< http or https; empty when there is no picture
};

} // namespace Nox

Q_DECLARE_METATYPE(Nox::PlaylistEntry)
