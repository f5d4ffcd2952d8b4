#pragma once

#include <nox/log/Logger.h>

#include <QString>
#include <QStringList>

/**
 * The library's log in a file at the lowest level, read record by record. A sequence of "~", with which fakes flood
 * their outputs, reads as one.
 */
class LogFile
{
public:
    explicit LogFile(const QString &path);

    /**
     * The records from a level up as "function: message", or with @p withSource as "[LEVEL] source function: message".
     * The bytes of the file are read as Latin-1.
     */
    QStringList records(Nox::_NoxLogLevel lowest, bool withSource = false) const;

private:
    QString m_path;
};
