#pragma once

#include "hosts/fetch/ItemSelection.h"

#include <nox/jobs/SoundFormat.h>
#include <nox/jobs/StreamPreference.h>

#include <QString>
#include <QStringList>

#include <optional>

namespace NoxFetch {

/** What the user asks for on the command line. */
struct Options {
    enum class Mode { Download, List, Json, ToolVersion };

    Mode mode = Mode::Download;
    QStringList urls;                   ///< At least one, but for Mode::ToolVersion. Those of a file may be none.
    std::optional<ItemSelection> items; ///< Which videos of a page; nothing for the page's own choice.
    QString formatCode;                 ///< Empty for the best stream.
    QString audioCode;                  ///< Empty for the best companion.
    bool noAudio = false;
    Nox::StreamPreference preference; ///< Where no code says otherwise.
    Nox::SoundFormat sound = Nox::SoundFormat::AsIs;
    bool keepsParts = false; ///< What has been fetched stays, and the next run goes on with it.
    QString folder;          ///< Absolute path of the folder for files that are named after the title.
    QString output;          ///< Absolute path, or empty for a name from the title.
    QString toolFile;        ///< Empty for the default.
    QString pycacheFolder;   ///< Empty for the default.
    QString logFile;         ///< Empty for none.
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
