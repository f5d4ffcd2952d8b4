#pragma once

#include <QString>

namespace NoxFetch {

/**
 * The two outputs of the program: results on standard output, everything else on standard error,
 * where a status line that is overwritten again and again gives way to whole lines.
 */
class Console
{
public:
    Console();

    /** Whether standard error is a terminal, so that a status line makes sense. */
    bool isTerminal() const { return m_isTerminal; }

    /** Columns of the terminal. */
    int width() const;

    /** Leaves notes out. */
    void setQuiet(bool quiet);

    /** A line for the user's information. */
    void note(const QString &text);

    /**
     * What went wrong, one or more lines; the first is marked with the program's name.
     * @param details what the tool said of it, on lines of its own
     */
    void error(const QString &message, const QString &details = {});

    /** The program's result. @return whether it could be written */
    bool result(const QString &text);

    /** Shows @p line in place of the last status line; only on a terminal. */
    void showStatus(const QString &line);

    /** Takes the status line away. */
    void clearStatus();

private:
    void writeError(const QString &text);

    bool m_isTerminal;
    bool m_quiet = false;
    bool m_hasStatus = false;
};

} // namespace NoxFetch
