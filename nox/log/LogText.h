#pragma once

#include <nox/log/Logger.h>

#include <QByteArray>
#include <QString>

/**
 * The macros with which the library writes to the log, one for each level, and the two encodings of the texts in
 * records. The macros supply source file, function and line.
 */
namespace Nox::LogText {

/** The name of a source file without its folder. */
constexpr const char *fileName(const char *path)
{
    const char *name = path;
    for (const char *c = path; *c != '\0'; ++c) {
        if (*c == '/')
            name = c + 1;
    }
    return name;
}

/** The logger cuts longer records anyway. */
constexpr int longestText = 128000;

/** @p text in UTF-8, the encoding of most texts in records. */
inline QByteArray utf8(const QString &text)
{
    return text.size() > longestText ? text.left(longestText).toUtf8() : text.toUtf8();
}

/** @p text in Latin-1, the encoding of file names and tool output. Other characters become question marks. */
inline QByteArray latin1(const QString &text)
{
    return text.size() > longestText ? text.left(longestText).toLatin1() : text.toLatin1();
}

} // namespace Nox::LogText

#define NOX_LOG(level, ...) \
  ::Nox::Logger::log(level, "", ::Nox::LogText::fileName(__FILE__), __func__, __LINE__, __VA_ARGS__)

#define NOX_LOG_DEBUG(...) NOX_LOG(::Nox::LOG_DEBUG, __VA_ARGS__)
#define NOX_LOG_INFO(...) NOX_LOG(::Nox::LOG_INFO, __VA_ARGS__)
#define NOX_LOG_ERROR(...) NOX_LOG(::Nox::LOG_ERROR, __VA_ARGS__)
