#pragma once

#include "hosts/fetch/ItemSelection.h"

#include <nox/jobs/SoundFormat.h>
#include <nox/jobs/StreamPreference.h>

#include <QString>
#include <QStringList>

#include <optional>

namespace NoxFetch {

/** The options of the command line. */
struct Options {
    enum class Mode { Download, List, Json, ToolVersion };

    Mode mode = Mode::Download;
    QStringList urls; ///< At least one, except for Mode::ToolVersion. Those of a file are not checked.
    std::optional<ItemSelection> items; ///< Requested videos of a page; no value for the default.
    QString formatCode;                 ///< Empty for the best stream.
    QString audioCode;                  ///< Empty for the default audio.
    bool noAudio = false;
    Nox::StreamPreference preference; ///< Used if there is no format code.
    Nox::SoundFormat sound = Nox::SoundFormat::AsIs;
    bool keepsParts = false; ///< Keeps the parts of a download, and resumes from them.
    QString folder;          ///< Absolute path of the folder for files with default names.
    QString output;          ///< Absolute path, or empty for a default name.
    QString toolFile;        ///< Empty for the default.
    QString pycacheFolder;   ///< Empty for the default.
    QString logFile;         ///< Empty for none.
    bool verbose = false;
    bool quiet = false;
};

/** The result of reading a command line: either options, or a text to print before the program ends. */
struct CommandLine {
    Options options;
    std::optional<int> exitCode; ///< Set if the program shall end.
    QString text;                ///< The text to print then: on standard output for success, else on standard error.

    /** Reads @p arguments, the program's name first. */
    static CommandLine read(const QStringList &arguments);
};

} // namespace NoxFetch
