#include "hosts/desk/model/SharedLog.h"

namespace NoxDesk {

SharedLog::Run::Run(SharedLog &log)
    : m_log(log)
{
    m_log.m_isMixed = m_log.m_runs > 0;
    if (!m_log.m_isMixed) {
        m_log.m_log.mark();
    }
    ++m_log.m_runs;
}

SharedLog::Run::~Run()
{
    --m_log.m_runs;
}

QString SharedLog::Run::complaints() const
{
    return m_log.m_isMixed ? QString() : m_log.m_log.complaints();
}

SharedLog::SharedLog(const QString &file)
{
    using Detail = NoxHost::LibraryLog::Detail;
    if (!m_log.open(file, Detail::Milestones) && !file.isEmpty()) {
        m_log.open({}, Detail::Milestones);
    }
}

QString SharedLog::fileName() const
{
    return m_log.fileName();
}

} // namespace NoxDesk
