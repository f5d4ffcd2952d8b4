#pragma once

#include <nox/Export.h>

#include <string>

#if defined(LOG_DEBUG) || defined(LOG_INFO)
#  error "<syslog.h> breaks the names of the log levels: include Logger.h first, or #undef LOG_DEBUG and LOG_INFO"
#endif

#if defined(__GNUC__)
#  define NOX_PRINTF_LIKE(formatIndex, firstArgument) __attribute__((format(printf, formatIndex, firstArgument)))
#else
#  define NOX_PRINTF_LIKE(formatIndex, firstArgument)
#endif

namespace Nox {

/** Level of a log record. Records below the threshold are dropped. */
enum _NoxLogLevel : int {
    LOG_DEBUG = 0, ///< Traces, URLs, raw output of the tool.
    LOG_INFO = 1,  ///< Command lines and milestones.
    LOG_ERROR = 2, ///< Failures and cancel notices.
    LOG_FATAL = 3, ///< Never used by the library itself.
};

constexpr int LOG_OUT_FILE = 1;    ///< Output flag: write to the log file.
constexpr int LOG_OUT_CONSOLE = 2; ///< Output flag: write to standard output.

/**
 * The log of the library. The host may write to it, too.
 *
 * Without init() the first record configures it: threshold #LOG_INFO, both outputs, the file
 * "log.1.log" in the folder that TMPDIR names (or in /tmp). The file is opened and closed for each
 * record and never rotated. Not thread-safe: a host that logs from several threads needs a lock.
 */
class NOX_EXPORT Logger
{
public:
    Logger() = delete;

    /**
     * Configures the log; each call replaces all three settings. Opens no file.
     * @param fileName path of the log file, or empty for the default path
     * @param level threshold: the lowest level that is written
     * @param outType sum of #LOG_OUT_FILE and #LOG_OUT_CONSOLE, or 0 for no output
     */
    static void init(std::string fileName, _NoxLogLevel level, int outType);

    /**
     * Writes one record. Errors are not reported.
     * @param level level of the record
     * @param tag any text; the library passes ""
     * @param file source file name
     * @param func function name
     * @param line line number
     * @param fmt printf format of the arguments that follow; the message is cut to 127999 bytes
     * @return 0
     */
    static int log(_NoxLogLevel level, const char *tag, const char *file, const char *func, int line, const char *fmt,
                   ...) NOX_PRINTF_LIKE(6, 7);

    /** The level's mark in brackets, such as "[ERROR]"; empty for a number that is no level. */
    static std::string getLogPrefix(_NoxLogLevel level);

    /** Local date and time as " YYYY-MM-DD hh:mm:ss ", or empty when the clock cannot be read. */
    static std::string getCurDateTime();

    static bool isInit;                ///< Whether init() has run; the first record runs it if the host has not.
    static _NoxLogLevel m_curLogLevel; ///< Threshold; #LOG_ERROR until init() has run.
    static int m_outType;              ///< Output flags; both until init() has run.
    static std::string m_logFileName;  ///< Path of the log file; empty until init() has run.
};

} // namespace Nox
