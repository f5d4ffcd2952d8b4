#pragma once

#include <nox/jobs/JobsExport.h>

#include <nox/jobs/SoundFormat.h>
#include <nox/model/MediaProfile.h>
#include <nox/model/WebMediaInfo.h>

#include <QCoreApplication>
#include <QString>
#include <QStringList>

namespace Nox {

/** Naming the file that a download makes. */
class NOX_JOBS_EXPORT Destination
{
    Q_DECLARE_TR_FUNCTIONS(Nox::Destination)

public:
    Destination() = delete;

    /**
     * A path to propose: the page's title as a file name, numbered when it is taken.
     * @param page what the page is called
     * @param stream the chosen stream, its preferred audio code set when two are to be joined
     * @param folder where the file shall be
     * @param taken paths that other downloads are going to use
     * @param sound what a stream of sound becomes
     */
    static QString proposed(const WebMediaInfo &page, const MediaProfile &stream, const QString &folder,
                            const QStringList &taken = {}, SoundFormat sound = SoundFormat::AsIs);

    /** @p path, or with a number behind its base name when it is on disk or among @p taken. */
    static QString free(const QString &path, const QStringList &taken = {});

    /** Suffix of the file that @p stream makes, without a dot: mp4 when two streams are joined. */
    static QString suffix(const MediaProfile &stream, SoundFormat sound = SoundFormat::AsIs);

    /** Why no file can be made at @p path, in words; empty when one can. */
    static QString errorString(const QString &path);

    /** Why @p name cannot be a file's name, in words; empty when it can. */
    static QString nameErrorString(const QString &name);

    /** Why no file can be made in @p folder, in words; empty when one can. */
    static QString folderErrorString(const QString &folder);

private:
    static QString unusableFolder(const QString &folder);
    static QString baseName(const WebMediaInfo &page, const MediaProfile &stream);
};

} // namespace Nox
