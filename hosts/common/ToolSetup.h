#pragma once

#include <QCoreApplication>
#include <QString>

namespace NoxHost {

/** Where the external programs are that the library drives, and whether they are there. A value. */
class ToolSetup
{
    Q_DECLARE_TR_FUNCTIONS(NoxHost::ToolSetup)

public:
    /**
     * @param toolFile the tool's file; empty for "yt.zip" beside this program
     * @param pycacheFolder where the interpreter keeps its compiled bytecode; empty for a folder in
     *        the user's cache
     */
    explicit ToolSetup(const QString &toolFile = {}, const QString &pycacheFolder = {});

    QString toolFile() const;      ///< Absolute path of the tool's file.
    QString pycacheFolder() const; ///< Absolute path of the bytecode cache.

    /** What is missing for extraction and download, in words; empty when nothing is. */
    QString problem() const;

    /** What is missing for joining a video with its audio, in words; empty when nothing is. */
    static QString joiningProblem();

private:
    QString m_toolFile;
    QString m_pycacheFolder;
};

} // namespace NoxHost
