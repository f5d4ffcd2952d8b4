#pragma once

#include <nox/jobs/JobsExport.h>

#include <QCoreApplication>
#include <QString>

namespace Nox {

/** Where the external programs are that the library drives, and whether they are there. A value. */
class NOX_JOBS_EXPORT ToolSetup
{
    Q_DECLARE_TR_FUNCTIONS(Nox::ToolSetup)

public:
    /**
     * Lets the programs that the library will start find each other: this program's folder comes first in PATH, so
     * that the tool finds the ffmpeg there. Removes PYTHONDONTWRITEBYTECODE, which would keep the interpreter from
     * using the cache that it is given. To be called once, right after the application object has been made.
     */
    static void prepareEnvironment();

    /**
     * @param toolFile the tool's file; empty for the one that the user has put into
     *        $XDG_DATA_HOME/noxwebmedia, or else "yt.zip" beside this program
     * @param pycacheFolder where the interpreter keeps its compiled bytecode; empty for a folder in
     *        the user's cache
     */
    explicit ToolSetup(const QString &toolFile = {}, const QString &pycacheFolder = {});

    QString toolFile() const { return m_toolFile; } ///< Absolute path of the tool's file.

    /**
     * Absolute path of the bytecode cache. Makes the folder, and those above it, with access for the user alone where
     * they are missing. Empty, for no cache, where that fails or where the folder is not the user's or others may write
     * into it: the interpreter runs what it finds there.
     */
    QString pycacheFolder() const;

    /** What is missing for extraction and download, in words; empty when nothing is. */
    QString errorString() const;

    /**
     * Where a user may put a newer tool. It counts only while the file and its folder belong to the user and nobody
     * else may write to them.
     */
    static QString ownToolFile();

    /** What is missing for joining a video with its audio, and for encoding sound, in words; empty when nothing is. */
    static QString joiningErrorString();

private:
    QString m_toolFile;
    QString m_pycacheFolder;
};

} // namespace Nox
