#pragma once

#include <QString>

namespace Nox {

/** In the name of every file that the tool downloads, so that such files can be told from finished ones. */
extern const QString YD_TEMP_MARK;

/** The pieces of which command texts are made; ChildProcess splits such a text into its arguments again. */
namespace ToolCommand {

/**
 * @p text for a place between double quotes: a double quote in it is written as three, which the
 * splitting reads as one.
 */
QString escaped(const QString &text);

/** @p text between double quotes. */
QString quoted(const QString &text);

/** How every tool command begins: interpreter, cache option, tool file. It ends behind the last quote. */
QString head(const QString &toolPath, const QString &pycacheDir);

/** Whether @p text names the usual tool archive, which is run without certificate checks. */
bool needsCertificateSwitch(const QString &text);

inline const QLatin1String certificateSwitch("--no-check-certificate ");

} // namespace ToolCommand

} // namespace Nox
