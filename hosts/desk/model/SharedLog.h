#pragma once

#include "hosts/common/LibraryLog.h"

#include <QString>

namespace NoxDesk {

/**
 * The library's log, which all runs of the external programs share. It does not say which run a
 * complaint is about, so only one that ran by itself can be told.
 */
class SharedLog
{
public:
    /** One run, while it lives. */
    class Run
    {
    public:
        explicit Run(SharedLog &log);
        ~Run();
        Run(const Run &) = delete;
        Run &operator=(const Run &) = delete;

        /** What the external programs complained about; empty when others ran at the same time. */
        QString complaints() const;

    private:
        SharedLog &m_log;
    };

    /** @param file the log file; where it cannot be written, or for an empty text, a temporary one */
    explicit SharedLog(const QString &file);

    QString fileName() const;

private:
    NoxHost::LibraryLog m_log;
    int m_runs = 0;
    bool m_isMixed = false;
};

} // namespace NoxDesk
