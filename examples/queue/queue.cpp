// queue URL...: downloads the videos of several pages into the current folder, two at a time. If it is interrupted, the
// next run resumes.

#include <nox/NoxWebMedia.h>
#include <nox/NoxWebMediaJobs.h>

#include <QCoreApplication>
#include <QDir>

#include <iostream>

using Nox::DownloadQueue;

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    Nox::Logger::init("/dev/null", Nox::LOG_ERROR, 0);
    DownloadQueue queue;
    queue.setLimit(2);
    queue.setChooser([&queue](const Nox::PageJob &page) {
        const Nox::MediaProfile stream = page.streams().withAudio(page.streams().best());
        const QString file = Nox::Destination::proposed(page.page(), stream, QDir::currentPath(), queue.activeFiles());
        return Nox::DownloadRequest{page.url(), stream, file, page.page().getDuration()};
    });
    QObject::connect(&queue, &DownloadQueue::ended, [&queue](int row) {
        const QString name = queue.index(row).data().toString();
        const QString status = queue.index(row).data(DownloadQueue::StatusRole).toString();
        std::cout << qUtf8Printable(name) << ": " << qUtf8Printable(status) << std::endl;
    });
    QObject::connect(&queue, &DownloadQueue::allEnded, &app, &QCoreApplication::quit, Qt::QueuedConnection);

    Nox::DownloadStore store(QStringLiteral("queue-example"));
    queue.restore(store.load());
    queue.removeEnded();
    queue.resumeAll();
    const QStringList urls = QCoreApplication::arguments().mid(1);
    for (const QString &url : urls)
        queue.add({url, {}, {}});
    QObject::connect(&queue, &DownloadQueue::countsChanged, [&] { store.save(queue.toJson()); });
    store.save(queue.toJson());
    return queue.activeCount() > 0 ? QCoreApplication::exec() : 0;
}
