#pragma once

#include <QString>

namespace Nox {

/** What the tool and ffmpeg print on standard error, read for a person. */
class ToolMessage
{
public:
    ToolMessage() = delete;

    /**
     * The part of @p errorOutput that a person needs, fit for display: the last 8 lines and 600
     * characters at most. Left out are ffmpeg's banner and progress, the tool's hints to its own command
     * line, the inner lines of a traceback, and warnings with their continuation lines unless there is
     * nothing else.
     */
    static QString excerpt(const QString &errorOutput);

    /** Whether @p errorOutput tells that the tool's archive is damaged or incomplete. */
    static bool tellsBrokenArchive(const QString &errorOutput);

    /** Whether @p errorOutput tells that the tool has read the page and found nothing there that can be had. */
    static bool tellsNoStream(const QString &errorOutput);

    /** Whether @p errorOutput tells that the tool does not take what the user's settings file holds. */
    static bool tellsRefusedSettings(const QString &errorOutput);

    /** The warning in @p errorOutput that the user's settings file is not used, fit for display; empty without one. */
    static QString unusedSettings(const QString &errorOutput);
};

} // namespace Nox
