#pragma once

#include <nox/Export.h>

#include <QMap>
#include <QString>

namespace Nox {

class WebMediaInfo;

/**
 * Reads the output of the tool: the JSON description of a page and the status lines of a download. It keeps no state
 * between calls.
 */
class NOX_EXPORT YdOutputParser
{
public:
    /** Fills the table of format codes. Hosts use instance(). */
    YdOutputParser();

    /** The process-wide parser, made on the first call and never destroyed. Not thread-safe. */
    static YdOutputParser *instance();

    /**
     * Fills @p info from the tool's JSON description of a page: title, file name, duration,
     * thumbnail, and one profile in front of the list for each usable stream.
     * @param output the tool's standard output
     * @param info record to fill, which is not cleared first. Text that is not JSON leaves it unchanged and
     *        gives one log record
     * @param tempDir ignored
     */
    void parseWebMediaInfo(QString output, WebMediaInfo &info, QString tempDir);

    /**
     * Reads the first progress line of the tool's output. Output that names a destination, or a file that is there
     * already, counts as having no progress line.
     * @param text output of the tool
     * @param[out] total size in bytes, or -1 for a size without a unit
     * @param[out] finish bytes done
     * @param[out] speed bytes per second
     * @return always 0; without a progress line the outputs keep their values
     */
    int parseDownloadeInfo(QString text, qint64 &total, qint64 &finish, qint64 &speed);

    /** Container format, such as MP4, of an old numeric format code; "FLV" for every other code. */
    QString getYdFormat(QString ydCode);

    /** Length in characters of getYdFormat(). */
    int getYdFormatLen(QString ydCode);

    /**
     * Waits until a file exists: tests 30 times at intervals of 100 milliseconds. Blocks the calling
     * thread for up to 3 seconds.
     * @return whether the file exists
     */
    bool waitFile(QString filePath);

private:
    QString m_defaultFormat;
    QMap<QString, QString> m_formats;
};

} // namespace Nox
