#pragma once

#include <nox/Export.h>

#include <QString>

#include <json/value.h>

namespace Nox {

/**
 * Reads members of JSON objects, and UTF-8 text files with a byte-order mark. Static functions without state, which log
 * and throw nothing.
 *
 * The getters return the caller's default when the value is no object, or when the member is missing, null or of
 * another type.
 */
class NOX_EXPORT JsonHelper
{
public:
    JsonHelper() = delete;

    /** Text of a string member, up to its first NUL character. */
    static QString getString(const Json::Value &object, QString key, QString defaultValue);

    /** Value of a member that is written as a whole number within 32 bits, which 1080.0 is not. */
    static int getInt(const Json::Value &object, QString key, int defaultValue);

    /** Value of a number member, whole or not. */
    static double getDouble(const Json::Value &object, QString key, double defaultValue);

    /**
     * Writes a byte-order mark and @p text in UTF-8. Replaces the file.
     * @return whether the file could be opened for writing; later write errors are not reported
     */
    static bool writeUtf8Script(const QString &filePath, const QString &text);

    /**
     * Reads a UTF-8 text file, with or without byte-order mark, up to its first zero byte.
     * @return the text; a null string when the file cannot be opened or is shorter than 4 bytes
     */
    static QString readUtf8Script(QString filePath);
};

} // namespace Nox
