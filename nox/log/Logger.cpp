#include <nox/log/Logger.h>

#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <fstream>
#include <iostream>
#include <utility>

namespace Nox {

bool Logger::isInit = false;
_NoxLogLevel Logger::m_curLogLevel = LOG_ERROR;
int Logger::m_outType = LOG_OUT_FILE | LOG_OUT_CONSOLE;
std::string Logger::m_logFileName;

namespace {

constexpr size_t messageCapacity = 128000;

std::string defaultLogFile()
{
    const char *folder = std::getenv("TMPDIR");
    std::string path = folder != nullptr ? folder : "/tmp";
    if (path.empty() || path.back() != '/')
        path += '/';
    return path + "log" + ".1.log";
}

// A host may pass a null pointer.
const char *orEmpty(const char *text)
{
    return text != nullptr ? text : "";
}

struct CallSite {
    const char *tag;
    const char *file;
    const char *func;
    int line;
};

// Called for each output, so that the time stamp is that of the writing.
std::string recordText(_NoxLogLevel level, const CallSite &site, const char *message)
{
    std::string record = "\n" + Logger::getCurDateTime();
    record.append(" ").append(Logger::getLogPrefix(level)).append(" ").append(site.tag).append(" ");
    record.append(site.func).append("  ").append(site.file);
    record.append("(line").append(std::to_string(site.line)).append(") :\n").append(message);
    return record;
}

void write(_NoxLogLevel level, const CallSite &site, const char *message)
{
    if ((Logger::m_outType & LOG_OUT_CONSOLE) != 0)
        std::cout << recordText(level, site, message) << std::endl;

    // Opened in any case, so that the file that the host has named exists.
    std::ofstream file(Logger::m_logFileName, std::ios::app);
    if ((Logger::m_outType & LOG_OUT_FILE) != 0)
        file << recordText(level, site, message) << std::endl;
}

} // namespace

void Logger::init(std::string fileName, _NoxLogLevel level, int outType)
{
    m_curLogLevel = level;
    m_outType = outType;
    m_logFileName = fileName.empty() ? defaultLogFile() : std::move(fileName);
    isInit = true;
}

int Logger::log(_NoxLogLevel level, const char *tag, const char *file, const char *func, int line, const char *fmt, ...)
{
    std::array<char, messageCapacity> message; // NOLINT: vsnprintf() initialises it
    message[0] = '\0';
    va_list arguments;
    va_start(arguments, fmt);
    static_cast<void>(std::vsnprintf(message.data(), message.size(), fmt, arguments));
    va_end(arguments);

    try {
        if (!isInit)
            init(std::string(), LOG_INFO, LOG_OUT_FILE | LOG_OUT_CONSOLE);
        if (level >= m_curLogLevel)
            write(level, {orEmpty(tag), orEmpty(file), orEmpty(func), line}, message.data());
    } catch (const std::exception &) {
        // Out of memory, or the host has made its streams throw. Logging must never end the caller.
        return 0;
    }
    return 0;
}

std::string Logger::getLogPrefix(_NoxLogLevel level)
{
    switch (level) {
    case LOG_DEBUG:
        return "[DEBUG]";
    case LOG_INFO:
        return "[INFO]";
    case LOG_ERROR:
        return "[ERROR]";
    case LOG_FATAL:
        return "[FATAL]";
    }
    return std::string();
}

std::string Logger::getCurDateTime()
{
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    // localtime_r() reads the time zone only once, but the host may change it.
    ::tzset();
    if (::localtime_r(&now, &local) == nullptr) {
        std::perror("localtime");
        return std::string();
    }

    std::array<char, 32> stamp{};
    if (std::strftime(stamp.data(), stamp.size(), " %Y-%m-%d %H:%M:%S ", &local) == 0) {
        static_cast<void>(std::fputs("strftime returned 0", stderr));
        return std::string();
    }
    return stamp.data();
}

} // namespace Nox
