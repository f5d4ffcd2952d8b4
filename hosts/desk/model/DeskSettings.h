#pragma once

#include "hosts/desk/model/Preferences.h"

#include <QByteArray>
#include <QSettings>
#include <QString>
#include <QStringList>

namespace NoxDesk {

/** What the program remembers from one time to the next: the user's preferences, and what was used last. */
class DeskSettings
{
public:
    QByteArray windowState(const QString &part) const; ///< Place and size of a part of the window.
    void setWindowState(const QString &part, const QByteArray &state);

    /** Where files go: the folder chosen in the preferences, or the user's folder for videos. */
    QString folder() const;
    void setFolder(const QString &folder);

    Preferences preferences() const;
    void setPreferences(const Preferences &preferences);

    QStringList recentAddresses() const; ///< Of pages that could be read, the last one first.
    void addRecentAddress(const QString &address);
    void clearRecentAddresses();

private:
    QSettings m_settings;
};

} // namespace NoxDesk
