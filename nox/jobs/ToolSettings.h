#pragma once

#include <nox/jobs/JobsExport.h>

#include <QByteArray>
#include <QString>

namespace Nox {

/**
 * The user's settings of the download tool, in tool.conf. Users also edit the file by hand: everything that is not set
 * here stays unchanged, comments included. An object of this class holds the content of the file; save() writes it.
 */
class NOX_JOBS_EXPORT ToolSettings
{
public:
    /** An option with a value. */
    struct Option {
        const char *name;      ///< with its dashes
        const char *shortName; ///< may be empty
    };

    static constexpr Option limitRate{"--limit-rate", "-r"};       ///< Limit of speed, such as "500K" per second.
    static constexpr Option proxy{"--proxy", ""};                  ///< Address of a proxy.
    static constexpr Option browser{"--cookies-from-browser", ""}; ///< The browser to take cookies from.

    /** Reads the file. */
    ToolSettings();

    QString value(const Option &option) const;                 ///< Empty if the option is not set.
    void setValue(const Option &option, const QString &value); ///< An empty value removes the option.

    /** Writes the file if anything has changed. @return whether the file contains the settings now */
    bool save();

    static QString fileName(); ///< Path of the file.

private:
    QByteArray m_text;
    QByteArray m_savedText;
    bool m_isReadable = true;
};

} // namespace Nox
