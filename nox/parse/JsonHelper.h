#pragma once

#include <nox/Export.h>

#include <QString>

#include <json/value.h>

namespace Nox {

/**
 * Reads of JSON members that cannot fail, and UTF-8 text files with a byte-order mark. Static
 * functions without state; nothing is logged, nothing thrown.
 *
 * A reader answers with the caller's default when the value is no object, or when the member is
 * missing, null or of another type.
 */
class NOX_EXPORT JsonHelper
{
public:
    JsonHelper() = delete;

    /** Text of a string member, up to its first NUL character. */
    static QString getString(const Json::Value &object, QString key, QString defaultValue);

    /** Value of a member written as a whole number within 32 bits; 1080.0 is not one. */
    static int getInt(const Json::Value &object, QString key, int defaultValue);

    /** Value of a number member, whole or not. */
    static double getDouble(const Json::Value &object, QString key, double defaultValue);

    /**
     * Writes @p text in UTF-8 behind a byte-order mark, replacing the file.
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
