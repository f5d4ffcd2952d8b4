#include "hosts/desk/model/DeskSettings.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace NoxDesk {

namespace {

const QLatin1String windowGroup("window/");
const QLatin1String folderKey("destination/folder");
const QLatin1String linesKey("streams/maximumLines");
const QLatin1String withoutConversionKey("streams/withoutConversion");
const QLatin1String soundOnlyKey("streams/soundOnly");
const QLatin1String parallelKey("downloads/parallel");
const QLatin1String goOnKey("downloads/goOnAtStart");
const QLatin1String mp3Key("streams/mp3");
const QLatin1String clipboardKey("addresses/offerClipboard");
const QLatin1String recentKey("addresses/recent");
const QLatin1String toolKey("tool/file");

constexpr int maximumRecent = 30;

} // namespace

QByteArray DeskSettings::windowState(const QString &part) const
{
    return m_settings.value(windowGroup + part).toByteArray();
}

void DeskSettings::setWindowState(const QString &part, const QByteArray &state)
{
    m_settings.setValue(windowGroup + part, state);
}

QString DeskSettings::folder() const
{
    const QString videos = QStandardPaths::writableLocation(QStandardPaths::MoviesLocation);
    for (const QString &folder : {m_settings.value(folderKey).toString(), videos}) {
        if (!folder.isEmpty() && QFileInfo(folder).isDir())
            return folder;
    }
    return QDir::homePath();
}

void DeskSettings::setFolder(const QString &folder)
{
    m_settings.setValue(folderKey, folder);
}

Preferences DeskSettings::preferences() const
{
    Preferences result;
    Nox::StreamPreference &stream = result.stream;
    stream.maximumHeight = qMax(0, m_settings.value(linesKey, stream.maximumHeight).toInt());
    stream.withoutConversion = m_settings.value(withoutConversionKey, stream.withoutConversion).toBool();
    stream.soundOnly = m_settings.value(soundOnlyKey, stream.soundOnly).toBool();
    result.parallelDownloads =
        qBound(Preferences::leastParallel, m_settings.value(parallelKey, result.parallelDownloads).toInt(),
               Preferences::mostParallel);
    result.offersClipboard = m_settings.value(clipboardKey, result.offersClipboard).toBool();
    result.resumesAtStart = m_settings.value(goOnKey, result.resumesAtStart).toBool();
    result.makesMp3 = m_settings.value(mp3Key, result.makesMp3).toBool();
    result.toolFile = m_settings.value(toolKey).toString();
    return result;
}

void DeskSettings::setPreferences(const Preferences &preferences)
{
    m_settings.setValue(linesKey, preferences.stream.maximumHeight);
    m_settings.setValue(withoutConversionKey, preferences.stream.withoutConversion);
    m_settings.setValue(soundOnlyKey, preferences.stream.soundOnly);
    m_settings.setValue(parallelKey, preferences.parallelDownloads);
    m_settings.setValue(clipboardKey, preferences.offersClipboard);
    m_settings.setValue(goOnKey, preferences.resumesAtStart);
    m_settings.setValue(mp3Key, preferences.makesMp3);
    m_settings.setValue(toolKey, preferences.toolFile);
}

QStringList DeskSettings::recentAddresses() const
{
    return m_settings.value(recentKey).toStringList();
}

void DeskSettings::addRecentAddress(const QString &address)
{
    QStringList addresses = recentAddresses();
    addresses.removeAll(address);
    addresses.prepend(address);
    m_settings.setValue(recentKey, QStringList(addresses.mid(0, maximumRecent)));
}

void DeskSettings::clearRecentAddresses()
{
    m_settings.remove(recentKey);
}

} // namespace NoxDesk
