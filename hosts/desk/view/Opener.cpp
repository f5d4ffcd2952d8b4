#include "hosts/desk/view/Opener.h"

#include "hosts/desk/view/SessionBus.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

namespace NoxDesk {

namespace {

constexpr SessionBus::Service fileManager{"org.freedesktop.FileManager1", "/org/freedesktop/FileManager1"};

} // namespace

void Opener::open(const QUrl &url)
{
    const auto end = [this, url](bool isOpened) {
        if (!isOpened)
            Q_EMIT failed(url.isLocalFile() ? url.toLocalFile() : url.toString());
        deleteLater();
    };
    const QString program = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
    if (program.isEmpty()) {
        end(QDesktopServices::openUrl(url));
        return;
    }
    // Only the exit code shows whether a program was found. The process may run until the user closes that program, and
    // must not be killed when this program ends: so it has no parent, and is deleted only after its end.
    auto *process = new QProcess;
    process->setProcessChannelMode(QProcess::ForwardedChannels);
    connect(process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            [end](int code, QProcess::ExitStatus status) { end(status == QProcess::NormalExit && code == 0); });
    connect(process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), process, &QObject::deleteLater);
    connect(process, &QProcess::errorOccurred, this, [end, process](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart) // after a crash, finished() follows
            return;
        process->deleteLater();
        end(false);
    });
    process->start(program, {url.toString(QUrl::FullyEncoded)});
}

void Opener::showInFolder(const QString &file)
{
    const QVariantList arguments{QStringList(QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded)), QString()};
    SessionBus::call(fileManager, QStringLiteral("ShowItems"), arguments, this,
                     [this, file](bool isAnswered, const QVariantList &) {
                         if (isAnswered) {
                             deleteLater();
                         } else {
                             open(QUrl::fromLocalFile(QFileInfo(file).absolutePath()));
                         }
                     });
}

} // namespace NoxDesk
