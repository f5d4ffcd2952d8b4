#pragma once

#include <nox/jobs/Job.h>

#include <QString>
#include <QStringList>

/** Extracts messages for the user from the standard error of the tool and ffmpeg. */
namespace Nox::ToolMessage {

/**
 * The cause in @p errorOutput: the tool's front begins its first error with a tag. OtherError if there is no tag (a
 * tool without our front) or an unknown one. If the archive of the tool cannot be started, the interpreter's own
 * exception shows it.
 */
Job::Error error(const QString &errorOutput);

/** The cause for the front's tag @p tag; OtherError for an unknown tag. */
Job::Error errorOfTag(const QString &tag);

/** All tags that errorOfTag() knows. */
QStringList tags();

/**
 * The part of @p errorOutput that helps a user, safe to show: at most the last 8 lines and 600 characters. Left out are
 * tags, ffmpeg's banner and progress, advice about the tool's command line, the inner lines of a traceback, and
 * warnings, unless there is nothing else.
 */
QString excerpt(const QString &errorOutput);

/** The warnings in @p errorOutput, safe to show: each on one line, without repetitions. */
QStringList warnings(const QString &errorOutput);

} // namespace Nox::ToolMessage
