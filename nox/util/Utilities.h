#pragma once

#include <nox/Export.h>

#include <QSize>
#include <QString>
#include <QStringList>
#include <QtGlobal>

class QFont;

namespace Nox {

/**
 * Size texts, paths, file names and URLs. Static functions without state, thread-safe unless noted. They report
 * failures only by their result.
 */
class NOX_EXPORT Utilities
{
public:
    Utilities() = delete;

    /** @name Sizes */
    ///@{

    /**
     * Short form in powers of 1000, cut to a whole number.
     * @param number count; a negative one gives "0"
     * @param unit T, G, M or K in any case to use only that unit, if it gives at least 1; empty for the
     *        largest unit that does; any other text gives the plain number
     */
    static QString numberToKmgtString(qint64 number, QString unit);

    /** Reads a short form such as 3m in powers of 1000; -1 when it cannot be read. */
    static qint64 kmgtStringToNumber(QString text);

    /** @p size in bytes for display: a short form, a null string for 0, "--" for a negative size. */
    static QString fileSizeToString(qint64 size);

    /**
     * The first number with a unit letter (B, K, M, G, T, P, E, Z, Y) anywhere in @p text, in bytes
     * with powers of 1024; -1 when there is none. A count beyond 64 bits gives the largest one.
     */
    static qint64 getBytes(QString text);

    /** Width and height from a text such as 1280x720; `QSize(-1, -1)` when it is not of that form. */
    static QSize stringToSizeX(QString text);

    ///@}
    /** @name Paths and file names */
    ///@{

    /** Whether a path has 1 to 247 characters, none that is forbidden, and ends neither in a dot nor in two separators.
     */
    static bool isValidPath(QString path);

    /** Always 0: free space is not measured. */
    static qint64 getDiskSpace(QString path);

    /** Volume root of a path: its "/Volumes/Name" part, or "/". */
    static QString getDiskFromDir(const QString &dir);

    /** @p path without its trailing slashes and backslashes. */
    static QString removePathLastSeperator(QString path);

    /**
     * The first free file name of name.ext, name(1).ext, name(2).ext and so on.
     * @param filePath wanted path; a relative one is resolved against the working directory
     * @param takenNames paths that count as taken besides those on disk
     * @return the absolute path
     */
    static QString addNumberToExistedFileName(QString filePath, QStringList takenNames);

    /** Whether a file name without a folder has 1 to 247 characters, none that is forbidden, and no dot at its end. */
    static bool isValidFileName(QString name);

    /** @p name with each character that is not allowed in file names replaced by @p replacement. */
    static QString filterInvalidCharsOfFileName(QString name, QString replacement);

    ///@}
    /** @name Texts and URLs */
    ///@{

    /**
     * @p text shortened with an ellipsis to @p width pixels in @p font. Needs a QGuiApplication and
     * belongs on its thread.
     */
    static QString elidedText(QString text, const QFont &font, Qt::TextElideMode mode, int width);

    /** Whether @p url starts with http:// or https://, has more behind that, and holds no white space. */
    static bool isValidUrl(QString url);

    /** Replaces each "\uXXXX" escape by the character it names, in linear time. */
    static QString convertHttpSpecificChar2(QString text);

    /** Replaces each "&#NNN;" reference by the character it names, in linear time. */
    static QString convertHttpSpecificChar(QString text);

    /** The items, each followed by one blank. */
    static QString stringList2String(QStringList &list);

    /** Cuts a URL that holds "?v=" behind its first character before its first "&"; others are unchanged. */
    static QString escapeUrl(QString url);

    ///@}
};

} // namespace Nox
