#pragma once

#include "hosts/desk/model/Preferences.h"

#include <QByteArray>
#include <QSettings>
#include <QString>
#include <QStringList>

namespace NoxDesk {

/** Settings that are kept between two runs: the user's preferences, and the last used values. */
class DeskSettings
{
public:
    QByteArray windowState(const QString &part) const; ///< Stored position and size of a part of the window.
    void setWindowState(const QString &part, const QByteArray &state);

    /** Folder for downloads: the one from the preferences, or else the user's folder for videos. */
    QString folder() const;
    void setFolder(const QString &folder);

    Preferences preferences() const;
    void setPreferences(const Preferences &preferences);

    QStringList recentAddresses() const; ///< Addresses of pages that could be read, newest first.
    void addRecentAddress(const QString &address);
    void clearRecentAddresses();

private:
    QSettings m_settings;
};

} // namespace NoxDesk
