#pragma once

#include <QByteArray>
#include <QString>

namespace NoxDesk {

/**
 * The user's settings of the download tool, in tool.conf. The file is written by hand as well: all that is not set here
 * stays as it is, comments included.
 */
class ToolSettings
{
public:
    /** An option with a value. */
    struct Option {
        const char *name;
        const char *shortName; ///< Or an empty text.
    };

    static constexpr Option limitRate{"--limit-rate", "-r"};
    static constexpr Option proxy{"--proxy", ""};
    static constexpr Option browser{"--cookies-from-browser", ""};

    /** Reads the file. */
    ToolSettings();

    QString value(const Option &option) const;                 ///< Empty when it is not set.
    void setValue(const Option &option, const QString &value); ///< Sets it, or removes it by an empty value.

    /** Writes the file, if anything has changed. @return whether the file holds the settings now */
    bool save();

    static QString fileName();

private:
    QByteArray m_text;
    QByteArray m_savedText;
    bool m_isReadable = true;
};

} // namespace NoxDesk
