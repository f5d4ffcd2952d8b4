#pragma once

#include "hosts/desk/model/DownloadRequest.h"

#include <nox/jobs/StreamChoice.h>
#include <nox/model/WebMediaInfo.h>

#include <QHash>
#include <QObject>
#include <QStringList>

#include <optional>

namespace NoxDesk {

/**
 * The choices that lead to a download: stream, sound, destination. What the user has not chosen
 * follows from the rest, and what stands in the way is told in words.
 */
class DownloadPlan : public QObject
{
    Q_OBJECT

public:
    explicit DownloadPlan(QObject *parent = nullptr);

    /** Begins anew for a page. No stream is chosen yet. */
    void setPage(const QString &url, const Nox::WebMediaInfo &page, const Nox::StreamChoice &streams);

    void setFolder(const QString &folder);           ///< Sets where files are proposed.
    void setSound(Nox::SoundFormat sound);           ///< Sets what sound without a picture becomes.
    void setTaken(const QStringList &paths);         ///< Tells what other downloads are going to make.
    void setSize(const QString &code, qint64 bytes); ///< Tells the size of a stream.

    void setStream(const Nox::MediaProfile &stream); ///< Chooses, with the sound that suits it best.
    void setCompanion(const QString &code);          ///< Chooses the sound to join; empty for none.
    void setDestination(const QString &text);        ///< Chooses a file, as the user writes it.

    /** The user has written the file: its name gets a suffix, if it has none. */
    void completeDestination();

    /** Goes on to a name that is still free, for the next download; to the user's own as soon as that is. */
    void renumber();

    /** Whether sound can be joined to the stream. */
    bool takesCompanion() const;

    Nox::MediaProfile stream() const { return m_stream; } ///< The stream; invalid when none is chosen.
    QList<Nox::MediaProfile> companions() const;          ///< The sounds to choose from.
    QString companion() const;                            ///< Code of the sound to join; empty for none.
    QString destination() const;                          ///< The file as shown to the user.
    QString suffix() const;                               ///< Suffix of the file, without a dot.
    QString path() const; ///< The file's absolute path, with a suffix; empty without a name.

    QString soundProblem() const;       ///< Why the sound cannot be joined; empty when it can.
    QString destinationProblem() const; ///< Why the file cannot be made; empty when it can.

    /** What is strange about the file, or that there is too little room for it; may be empty. Does not stand in the
     * way. */
    QString destinationWarning() const;

    /** What will take long, and how long about; empty when nothing does. Does not stand in the way. */
    QString warning() const;

    /** The folder of the file, if it does not exist but can be made; else empty. */
    QString missingFolder() const;

    void makeFolder(); ///< Makes the missing folder.

    /** What the user means by @p text, which may be relative to @p folder or begin with "~/"; empty without a text. */
    static QString absolutePath(const QString &text, const QString &folder);

    /** As Nox::Destination::proposed(), but a name that ends in a number gets no second one. */
    static QString proposed(const Nox::WebMediaInfo &page, const Nox::MediaProfile &stream, const QString &folder,
                            const QStringList &taken, Nox::SoundFormat sound);

    /** Whether a download can begin. */
    bool isComplete() const;

    DownloadRequest request() const;

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
    std::optional<QString> m_chosenFile; // as the user writes it; without it the file is proposed
    bool m_isNumbered = false;           // a download of the chosen file has begun: the next one gets a free name
};

} // namespace NoxDesk
