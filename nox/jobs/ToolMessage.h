#pragma once

#include <nox/jobs/Job.h>

#include <QString>
#include <QStringList>

namespace Nox {

/** What the tool and ffmpeg print on standard error, read for a person. */
class ToolMessage
{
public:
    ToolMessage() = delete;

    /**
     * The cause that @p errorOutput names: the tool's front begins its first error with a tag. OtherError where there
     * is no tag, as from a tool without our front, or an unknown one. That the tool's archive cannot be started is
     * known from the interpreter's own exceptions.
     */
    static Job::Error error(const QString &errorOutput);

    /** The cause that the front's tag @p tag stands for; OtherError for an unknown tag. */
    static Job::Error errorOfTag(const QString &tag);

    /** All tags that errorOfTag() knows. */
    static QStringList tags();

    /**
     * The part of @p errorOutput that a person needs, fit for display: the last 8 lines and 600
     * characters at most. Left out are tags, ffmpeg's banner and progress, the tool's hints to its own command
     * line, the inner lines of a traceback, and warnings with their continuation lines unless there is
     * nothing else.
     */
    static QString excerpt(const QString &errorOutput);

    /** The warnings in @p errorOutput, fit for display: each on one line, and once. */
    static QStringList warnings(const QString &errorOutput);
};

} // namespace Nox
