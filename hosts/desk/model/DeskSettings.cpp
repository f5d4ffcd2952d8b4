#include "hosts/desk/model/DeskSettings.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace NoxDesk {

namespace {

const QLatin1String geometryKey("window/geometry");
const QLatin1String splitterKey("window/splitter");
const QLatin1String folderKey("destination/folder");

} // namespace

QByteArray DeskSettings::windowGeometry() const
{
    return m_settings.value(geometryKey).toByteArray();
}

void DeskSettings::setWindowGeometry(const QByteArray &geometry)
{
    m_settings.setValue(geometryKey, geometry);
}

QByteArray DeskSettings::splitterState() const
{
    return m_settings.value(splitterKey).toByteArray();
}

void DeskSettings::setSplitterState(const QByteArray &state)
{
    m_settings.setValue(splitterKey, state);
}

QString DeskSettings::folder() const
{
    const QString videos = QStandardPaths::writableLocation(QStandardPaths::MoviesLocation);
    for (const QString &folder : {m_settings.value(folderKey).toString(), videos}) {
        if (!folder.isEmpty() && QFileInfo(folder).isDir()) {
            return folder;
        }
    }
    return QDir::homePath();
}

void DeskSettings::setFolder(const QString &folder)
{
    m_settings.setValue(folderKey, folder);
}

} // namespace NoxDesk
