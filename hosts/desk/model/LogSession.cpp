#include "hosts/desk/model/LogSession.h"

namespace NoxDesk {

LogSession::LogSession(ProgramLog &log)
    : m_log(log)
{
    if (m_log.m_sessions++ == 0) {
        m_log.m_watch.start();
    }
}

LogSession::~LogSession()
{
    if (--m_log.m_sessions == 0) {
        m_log.m_watch.stop();
        m_log.rotate();
    }
}

} // namespace NoxDesk
