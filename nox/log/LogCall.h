#pragma once

#include <nox/log/Logger.h>

#include <QByteArray>
#include <QString>

/**
 * How the library's own sources write to the log: one macro a level, which supplies source file,
 * function and line, and the two byte forms in which a text goes into a record.
 */
namespace Nox::LogCall {

/** The bare name of a source file, whatever folder the build named it with. */
constexpr const char *fileName(const char *path)
{
    const char *name = path;
    for (const char *c = path; *c != '\0'; ++c) {
        if (*c == '/')
            name = c + 1;
    }
    return name;
}

/** Characters beyond which a record is cut in any case; there is no use in converting more. */
constexpr int longestText = 128000;

/** @p text in UTF-8, the form of most texts in a record. */
inline QByteArray utf8(const QString &text)
{
    return text.size() > longestText ? text.left(longestText).toUtf8() : text.toUtf8();
}

/** @p text in Latin-1 with a question mark for what that lacks, the form of file names and tool output. */
inline QByteArray latin1(const QString &text)
{
    return text.size() > longestText ? text.left(longestText).toLatin1() : text.toLatin1();
}

} // namespace Nox::LogCall

#define NOX_LOG(level, ...) \
  ::Nox::Logger::log(level, "", ::Nox::LogCall::fileName(__FILE__), __func__, __LINE__, __VA_ARGS__)

#define NOX_LOG_DEBUG(...) NOX_LOG(::Nox::LOG_DEBUG, __VA_ARGS__)
#define NOX_LOG_INFO(...) NOX_LOG(::Nox::LOG_INFO, __VA_ARGS__)
#define NOX_LOG_ERROR(...) NOX_LOG(::Nox::LOG_ERROR, __VA_ARGS__)
