#include "hosts/desk/model/LogSession.h"

namespace NoxDesk {

LogSession::LogSession(ProgramLog &log)
    : m_log(log)
{
    m_log.m_isMixed = m_log.m_sessions > 0;
    if (m_log.m_sessions++ == 0) {
        m_log.m_log.mark();
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

QString LogSession::complaints() const
{
    return m_log.m_isMixed ? QString() : m_log.m_log.complaints();
}

} // namespace NoxDesk
