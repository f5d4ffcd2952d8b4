#pragma once

#include <QByteArray>
#include <QSettings>
#include <QString>

namespace NoxDesk {

/** What the program remembers from one time to the next. */
class DeskSettings
{
public:
    QByteArray windowGeometry() const;
    void setWindowGeometry(const QByteArray &geometry);

    QByteArray splitterState() const;
    void setSplitterState(const QByteArray &state);

    /** Where files go: the folder used last, or the user's folder for videos. */
    QString folder() const;
    void setFolder(const QString &folder);

private:
    QSettings m_settings;
};

} // namespace NoxDesk
