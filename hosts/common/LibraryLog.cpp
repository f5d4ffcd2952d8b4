#include "hosts/common/LibraryLog.h"

#include <nox/log/Logger.h>

#include <QFile>
#include <QFileInfo>

namespace NoxHost {

namespace {

Nox::_NoxLogLevel levelFor(LibraryLog::Detail detail)
{
    switch (detail) {
    case LibraryLog::Detail::Errors:
        return Nox::LOG_ERROR;
    case LibraryLog::Detail::Milestones:
        return Nox::LOG_INFO;
    case LibraryLog::Detail::Everything:
        break;
    }
    return Nox::LOG_DEBUG;
}

} // namespace

bool LibraryLog::open(const QString &file, Detail detail)
{
    if (file.isEmpty()) {
        if (!m_temporary.open()) {
            Nox::Logger::init("/dev/null", levelFor(detail), 0);
            return false;
        }
        m_fileName = m_temporary.fileName();
    } else {
        m_fileName = QFileInfo(file).absoluteFilePath();
        if (!QFile(m_fileName).open(QIODevice::WriteOnly | QIODevice::Append))
            return false;
    }
    Nox::Logger::init(QFile::encodeName(m_fileName).toStdString(), levelFor(detail), Nox::LOG_OUT_FILE);
    return true;
}

} // namespace NoxHost
