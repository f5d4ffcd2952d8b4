#pragma once

#include <nox/log/Logger.h>

#include <QString>
#include <QStringList>

/**
 * The library's log, turned to a file at the lowest level, and read back record by record. A row of
 * "~", with which stand-ins flood their outputs, reads as one.
 */
class LogFile
{
public:
    explicit LogFile(const QString &path);

    /**
     * The records from a level up, in the file's bytes as Latin-1 and as "function: message"; with
     * @p withSource as "[LEVEL] source function: message".
     */
    QStringList records(Nox::_NoxLogLevel lowest, bool withSource = false) const;

private:
    QString m_path;
};
