#include <nox/jobs/PartsFolder.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>

#include <cerrno>
#include <cstring>

#include <unistd.h>

namespace Nox {

namespace {

constexpr qint64 longestRecord = 64LL * 1024;

QString recordFile(const QString &path)
{
    return path + QStringLiteral("/record.json");
}

} // namespace

PartsFolder::PartsFolder(const QString &folder)
    : m_path(folder + QLatin1Char('/') + folderName())
{
}

bool PartsFolder::exists() const
{
    const QFileInfo info(m_path);
    return info.isDir() && !info.isSymLink() && info.ownerId() == ::geteuid();
}

QString PartsFolder::write(const DownloadRecord &record) const
{
    constexpr QFile::Permissions ownOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
    if (!exists() && !(QDir().mkdir(m_path) && QFile::setPermissions(m_path, ownOnly)))
        return QString::fromLocal8Bit(std::strerror(errno));
    QSaveFile file(recordFile(m_path));
    const QByteArray text = QJsonDocument(record.toJson()).toJson();
    const bool isWritten = file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.flush()
        && file.commit(); // for which a part of the text is no error
    return isWritten ? QString() : file.errorString();
}

DownloadRecord PartsFolder::record() const
{
    QFile file(recordFile(m_path));
    const QFileInfo info(file);
    if (!exists() || info.isSymLink() || !info.isFile() || !file.open(QIODevice::ReadOnly))
        return {};
    return DownloadRecord::fromJson(QJsonDocument::fromJson(file.read(longestRecord)).object());
}

qint64 PartsFolder::bytes() const
{
    qint64 sum = 0;
    const QFileInfoList files = QDir(m_path).entryInfoList(QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    for (const QFileInfo &file : files)
        if (file.suffix() != QLatin1String("json")) // records of the front about the other files
            sum += file.size();
    return sum;
}

bool PartsFolder::isExpired() const
{
    const QDateTime last = qMax(QFileInfo(m_path).lastModified(), QFileInfo(recordFile(m_path)).lastModified());
    return last.isValid() && last.daysTo(QDateTime::currentDateTime()) > expiryDays;
}

} // namespace Nox
