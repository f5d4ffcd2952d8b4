#pragma once

#include <QString>

namespace NoxFetch {

/**
 * The two outputs of the program: results on standard output, everything else on standard error. There, a status line
 * is overwritten repeatedly, and removed before other lines are printed.
 */
class Console
{
public:
    Console();

    /** Whether standard error is a terminal, so that a status line makes sense. */
    bool isTerminal() const { return m_isTerminal; }

    /** Columns of the terminal. */
    int width() const;

    /** Suppresses notes. */
    void setQuiet(bool quiet);

    /** Prints a line of information for the user. */
    void note(const QString &text);

    /**
     * Prints an error message of one or more lines; the first begins with the program's name.
     * @param details messages of the tool about it, on separate lines
     */
    void error(const QString &message, const QString &details = {});

    /** Prints the result. @return whether it could be written */
    bool result(const QString &text);

    /** Shows @p line in place of the last status line; only on a terminal. */
    void showStatus(const QString &line);

    /** Removes the status line. */
    void clearStatus();

private:
    void writeError(const QString &text);

    bool m_isTerminal;
    bool m_quiet = false;
    bool m_hasStatus = false;
};

} // namespace NoxFetch
