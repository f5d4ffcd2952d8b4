#pragma once

#include <nox/jobs/JobsExport.h>

#include <QMetaType>
#include <QObject>
#include <QString>

namespace Nox {

/** One entry in the list of a PlaylistJob. A value. */
struct NOX_JOBS_EXPORT PlaylistEntry {
    Q_GADGET
    Q_PROPERTY(int number MEMBER number)
    Q_PROPERTY(QString url MEMBER url)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(qint64 duration MEMBER duration)
    Q_PROPERTY(QString thumbnailUrl MEMBER thumbnailUrl)

public:
    int number = 0;       ///< position on the page, from 1
    QString url;          ///< address for PageJob and DownloadJob; always valid
    QString title;        ///< on one line, safe to show; may be empty
    qint64 duration = 0;  ///< in seconds; 0 if unknown
    QString thumbnailUrl; ///< http or https; empty if there is no picture
};

} // namespace Nox

Q_DECLARE_METATYPE(Nox::PlaylistEntry)
