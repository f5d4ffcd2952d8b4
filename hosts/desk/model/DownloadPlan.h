#pragma once

#include <nox/jobs/DownloadRequest.h>
#include <nox/jobs/StreamChoice.h>
#include <nox/model/WebMediaInfo.h>

#include <QHash>
#include <QObject>
#include <QStringList>

#include <optional>

namespace NoxDesk {

/**
 * The choices for the next download: stream, sound and destination. What the user has not chosen gets a default. Error
 * messages tell why a download is not possible.
 */
class DownloadPlan : public QObject
{
    Q_OBJECT

public:
    explicit DownloadPlan(QObject *parent = nullptr);

    /** Resets all choices for a new page. No stream is chosen then. */
    void setPage(const QString &url, const Nox::WebMediaInfo &page, const Nox::StreamChoice &streams);

    void setFolder(const QString &folder);           ///< Folder for the default destination.
    void setSound(Nox::SoundFormat sound);           ///< Format for sound without a picture.
    void setTaken(const QStringList &paths);         ///< Paths that other downloads will use.
    void setSize(const QString &code, qint64 bytes); ///< Size of the stream with format code @p code.

    void setStream(const Nox::MediaProfile &stream); ///< Chooses a stream, with its default sound.
    void setAudio(const QString &code);              ///< Chooses the sound to join; empty for none.
    void setDestination(const QString &text);        ///< Chooses the file, as typed by the user.

    /** The user has finished typing: appends the suffix if the name has none. */
    void completeDestination();

    /** Selects a free name for the next download; prefers the name that the user typed. */
    void renumber();

    /** Whether sound can be joined to the stream. */
    bool takesAudio() const;

    Nox::MediaProfile stream() const { return m_stream; } ///< The chosen stream; invalid if none is chosen.
    QList<Nox::MediaProfile> audioChoices() const;        ///< The sounds to choose from.
    QString audio() const;                                ///< Code of the sound to join; empty for none.
    QString destination() const;                          ///< The destination as shown to the user.
    QString suffix() const;                               ///< Suffix of the file, without a dot.
    QString path() const; ///< Absolute path of the file, with its suffix; empty without a name.

    QString soundError() const;       ///< Error message if the sound cannot be joined; else empty.
    QString destinationError() const; ///< Error message if the file cannot be created; else empty.

    /** A warning about the file's suffix or about too little disk space; may be empty. It does not prevent the
     * download. */
    QString destinationWarning() const;

    /** A warning about a long conversion; may be empty. It does not prevent the download. */
    QString warning() const;

    /** The folder of the file if it does not exist and can be created; else empty. */
    QString missingFolder() const;

    void makeFolder(); ///< Creates the missing folder.

    /** Whether the download can start. */
    bool isComplete() const;

    Nox::DownloadRequest request() const;

Q_SIGNALS:
    void changed();

private:
    QString chosenPath() const;
    void follow(const QString &oldSuffix);

    QString m_url;
    Nox::WebMediaInfo m_page;
    Nox::StreamChoice m_streams;
    QString m_folder;
    Nox::SoundFormat m_sound = Nox::SoundFormat::AsIs;
    QStringList m_taken;
    QHash<QString, qint64> m_sizes;
    Nox::MediaProfile m_stream;          // its preferred audio code is the chosen one
    std::optional<QString> m_chosenFile; // as typed by the user; if not set, the default is used
    bool m_isNumbered = false;           // the chosen file is being downloaded: the next download gets a free name
};

} // namespace NoxDesk
