#include <nox/jobs/DownloadStore.h>

#include <nox/jobs/Destination.h>

#include <QCoreApplication>
#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace Nox {

namespace {

constexpr int storeVersion = 1;
constexpr int mostInstances = 9;
const QLatin1String storeVersionKey("version");
const QLatin1String downloadsKey("downloads");
const QLatin1String lockSuffix(".lock");

QDir folder()
{
    const QString state = qEnvironmentVariable("XDG_STATE_HOME");
    return QDir(QDir::isAbsolutePath(state) ? state : QDir::home().filePath(QStringLiteral(".local/state")))
        .filePath(QStringLiteral("noxwebmedia"));
}

} // namespace

DownloadStore::DownloadStore(const QString &application)
    : m_application(application)
{
    folder().mkpath(QStringLiteral("."));
    for (int instance = 1; instance <= mostInstances && m_lock == nullptr; ++instance) {
        m_lock = newLock(instance);
        m_file = m_lock == nullptr ? QString() : fileOf(instance);
    }
}

QString DownloadStore::fileOf(int instance) const
{
    return folder().filePath(QStringLiteral("%1-downloads-%2.json").arg(m_application).arg(instance));
}

std::unique_ptr<QLockFile> DownloadStore::newLock(int instance) const
{
    auto lock = std::make_unique<QLockFile>(fileOf(instance) + lockSuffix);
    lock->setStaleLockTime(0); // stale only if its process no longer exists
    return lock->tryLock(0) ? std::move(lock) : nullptr;
}

bool DownloadStore::isAlone() const
{
    for (int instance = 1; instance <= mostInstances; ++instance) {
        const QString file = fileOf(instance);
        const bool isForeign = file != m_file && m_taken.count(instance) == 0;
        if (isForeign && QFile::exists(file + lockSuffix) && newLock(instance) == nullptr)
            return false;
    }
    return true;
}

QJsonArray DownloadStore::load()
{
    QJsonArray result = m_lock == nullptr ? QJsonArray() : read(m_file);
    for (int instance = 1; instance <= mostInstances && m_lock != nullptr; ++instance) {
        const QString file = fileOf(instance);
        std::unique_ptr<QLockFile> lock = QFile::exists(file) && file != m_file ? newLock(instance) : nullptr;
        if (lock == nullptr)
            continue;
        const QJsonArray others = read(file);
        for (const auto &download : others)
            result += download;
        m_taken[instance] = std::move(lock);
    }
    if (!m_taken.empty())
        save(result);
    return result;
}

QJsonArray DownloadStore::read(const QString &name)
{
    QFile file(name);
    if (!file.exists())
        return {};
    const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    const QJsonObject list = QJsonDocument::fromJson(text).object();
    if (list.value(storeVersionKey).toInt() == storeVersion && list.value(downloadsKey).isArray())
        return list.value(downloadsKey).toArray();
    const QString aside = Nox::Destination::free(name + QStringLiteral(".unreadable"));
    file.rename(aside);
    m_error = QCoreApplication::translate("Nox::DownloadStore",
                                          "The list of downloads could not be read. It was renamed to \"%1\".")
                  .arg(aside);
    return {};
}

bool DownloadStore::save(const QJsonArray &downloads)
{
    QSaveFile file(m_file);
    if (m_lock == nullptr || !file.open(QIODevice::WriteOnly))
        return false;
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    const QByteArray text =
        QJsonDocument(QJsonObject{{storeVersionKey, storeVersion}, {downloadsKey, downloads}}).toJson();
    // A part of the text is no error for commit().
    if (file.write(text) != text.size() || !file.flush() || !file.commit())
        return false;
    for (const auto &taken : m_taken)
        QFile::remove(fileOf(taken.first));
    m_taken.clear();
    return true;
}

} // namespace Nox
