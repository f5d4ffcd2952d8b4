#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace NoxFetch {

/** What the user asks for on the command line. */
struct Options {
    enum class Mode { Download, List, Json, ToolVersion };

    Mode mode = Mode::Download;
    QStringList urls;   ///< At least one, but for Mode::ToolVersion.
    QString formatCode; ///< Empty for the best stream.
    QString audioCode;  ///< Empty for the best companion.
    bool noAudio = false;
    QString folder;        ///< Absolute path of the folder for files that are named after the title.
    QString output;        ///< Absolute path, or empty for a name from the title.
    QString toolFile;      ///< Empty for the default.
    QString pycacheFolder; ///< Empty for the default.
    QString logFile;       ///< Empty for none.
    bool verbose = false;
    bool quiet = false;
};

/** A command line, read: either options to work by, or a text to show and be done. */
struct CommandLine {
    Options options;
    std::optional<int> exitCode; ///< Set when there is nothing more to do.
    QString text;                ///< What to show then: on standard output for success, else on standard error.

    /** Reads @p arguments, the program's name first. */
    static CommandLine read(const QStringList &arguments);
};

} // namespace NoxFetch
