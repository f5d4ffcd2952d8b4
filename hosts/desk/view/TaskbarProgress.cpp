#include "hosts/desk/view/TaskbarProgress.h"

#include "hosts/desk/view/SessionBus.h"

#include <QGuiApplication>

namespace NoxDesk {

void TaskbarProgress::show(int percent)
{
    if (percent == m_shown)
        return;
    m_shown = percent;
    const QVariantMap values{{QStringLiteral("progress"), qMax(0, percent) / 100.0},
                             {QStringLiteral("progress-visible"), percent >= 0}};
    SessionBus::tell(QStringLiteral("/com/canonical/unity/launcherentry/1"),
                     QStringLiteral("com.canonical.Unity.LauncherEntry"), QStringLiteral("Update"),
                     {QStringLiteral("application://%1.desktop").arg(QGuiApplication::desktopFileName()), values});
}

} // namespace NoxDesk
