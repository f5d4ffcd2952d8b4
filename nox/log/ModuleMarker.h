#pragma once

#include <nox/log/LogCall.h>
#include <nox/log/ModuleLog.h>

#include <QDateTime>

/** Time-stamped marks in the module log. */
namespace Nox::ModuleMarker {

/** Writes where and when, then an empty line. */
inline void write(const char *file, int line)
{
    const QByteArray now = QDateTime::currentDateTime().toString(QStringLiteral("yyyy/MM/dd hh:mm:ss")).toLocal8Bit();
    WriteLog(QStringLiteral("%s(%d) : %s %08x"), file, line, now.constData(), 0);
    WriteLog(QLatin1String(""));
}

} // namespace Nox::ModuleMarker

/** Marks the place of the call in the module log. */
#define NOX_MODULE_MARKER() ::Nox::ModuleMarker::write(::Nox::LogCall::fileName(__FILE__), __LINE__)
