#pragma once

#include <QString>

namespace Nox {

/** Marks the names of temporary files. */
extern const QString YD_TEMP_MARK;

/** Parts of command texts. ChildProcess splits such a text into arguments. */
namespace ToolCommand {

/**
 * @p text for use between double quotes: each double quote in it is tripled, which the splitting reads as one.
 */
QString escaped(const QString &text);

/** @p text between double quotes. */
QString quoted(const QString &text);

/** The beginning of every tool command: interpreter, cache option, tool file. Ends with a quote. */
QString head(const QString &toolPath, const QString &pycacheDir);

/** Whether @p text names the usual tool archive, which is run without certificate checks. */
bool needsCertificateSwitch(const QString &text);

inline const QLatin1String certificateSwitch("--no-check-certificate ");

} // namespace ToolCommand

} // namespace Nox
