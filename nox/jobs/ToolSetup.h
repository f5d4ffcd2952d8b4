#pragma once

#include <nox/jobs/JobsExport.h>

#include <QCoreApplication>
#include <QString>

namespace Nox {

/** Paths of the external programs, and whether they exist. A value. */
class NOX_JOBS_EXPORT ToolSetup
{
    Q_DECLARE_TR_FUNCTIONS(Nox::ToolSetup)

public:
    /**
     * Prepares the environment of the external programs. Puts this program's folder first in PATH, so that the tool
     * finds the ffmpeg there. Removes PYTHONDONTWRITEBYTECODE, so that the interpreter can use its bytecode cache. To
     * be called once, right after the application object was created.
     */
    static void prepareEnvironment();

    /**
     * @param toolFile file of the tool; empty for the user's own tool in $XDG_DATA_HOME/noxwebmedia, or else "yt.zip"
     *        beside this program
     * @param pycacheFolder folder for the interpreter's bytecode; empty for a folder in the user's cache
     */
    explicit ToolSetup(const QString &toolFile = {}, const QString &pycacheFolder = {});

    QString toolFile() const { return m_toolFile; } ///< Absolute path of the tool.

    /**
     * Absolute path of the bytecode cache. If the folder or those above it are missing, they are created with access
     * for the user only. Empty (no cache) if that fails, if the folder belongs to somebody else, or if others may write
     * into it: the interpreter runs the code that it finds there.
     */
    QString pycacheFolder() const;

    /** The error message if a program for extraction and download is missing; else empty. */
    QString errorString() const;

    /**
     * Path for the user's own, newer tool. It is used only if the file and its folder belong to the user and nobody
     * else may write to them.
     */
    static QString ownToolFile();

    /** The error message if a program for joining and encoding (ffmpeg) is missing; else empty. */
    static QString joiningErrorString();

private:
    QString m_toolFile;
    QString m_pycacheFolder;
};

} // namespace Nox
