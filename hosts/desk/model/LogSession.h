#pragma once

#include "hosts/desk/model/ProgramLog.h"

namespace NoxDesk {

/** One run of the external programs, which writes to the log while it lives. */
class LogSession
{
public:
    /** @param log must outlive the session */
    explicit LogSession(ProgramLog &log);
    ~LogSession();
    LogSession(const LogSession &) = delete;
    LogSession &operator=(const LogSession &) = delete;

private:
    ProgramLog &m_log;
};

} // namespace NoxDesk
