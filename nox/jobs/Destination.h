#pragma once

#include <nox/jobs/JobsExport.h>

#include <nox/jobs/SoundFormat.h>
#include <nox/model/MediaProfile.h>
#include <nox/model/WebMediaInfo.h>

#include <QCoreApplication>
#include <QString>
#include <QStringList>

namespace Nox {

/** Paths and names for downloaded files. */
class NOX_JOBS_EXPORT Destination
{
    Q_DECLARE_TR_FUNCTIONS(Nox::Destination)

public:
    Destination() = delete;

    /**
     * The default path: the page's title as a file name, with a number if the file exists.
     * @param page title of the page
     * @param stream the chosen stream; its preferred audio code is set if an audio stream is to be joined
     * @param folder for the file
     * @param taken paths that other downloads will use
     * @param sound format of the file if @p stream is audio
     */
    static QString proposed(const WebMediaInfo &page, const MediaProfile &stream, const QString &folder,
                            const QStringList &taken = {}, SoundFormat sound = SoundFormat::AsIs);

    /**
     * @p path; with a number after the base name if it exists or is one of @p taken. If the name ends in a number
     * already, that number is raised.
     */
    static QString free(const QString &path, const QStringList &taken = {});

    /**
     * The absolute path for what a user has typed.
     * @param text a path, which may begin with "~/"; without a text the result is empty
     * @param folder for a relative path
     */
    static QString absolutePath(const QString &text, const QString &folder);

    /** Suffix of the file for @p stream, without a dot; mp4 if two streams are joined. */
    static QString suffix(const MediaProfile &stream, SoundFormat sound = SoundFormat::AsIs);

    /** The error message if no file can be created at @p path; else empty. */
    static QString errorString(const QString &path);

    /** The error message if @p name is not allowed as a file name; else empty. */
    static QString nameErrorString(const QString &name);

    /** The error message if no file can be created in @p folder; else empty. */
    static QString folderErrorString(const QString &folder);

    /** The bytes that the user can still write to the disk of @p folder; -1 if the file system does not tell. */
    static qint64 availableBytes(const QString &folder);

private:
    static QString unusableFolder(const QString &folder);
    static QString baseName(const WebMediaInfo &page, const MediaProfile &stream);
};

} // namespace Nox
