// save URL: downloads the best video of a web page, with its sound, into the current folder.

#include <nox/NoxWebMedia.h>
#include <nox/NoxWebMediaJobs.h>

#include <QCoreApplication>

#include <iostream>

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    Nox::Logger::init("/dev/null", Nox::LOG_ERROR, 0); // standard output is for the file's path
    Nox::PageJob page(QCoreApplication::arguments().last());
    QObject::connect(&page, &Nox::Job::finished, [&page] {
        auto *download = new Nox::DownloadJob(page, QStringLiteral("."), &page);
        QObject::connect(download, &Nox::Job::finished, [download] {
            const bool isSaved = download->error() == Nox::Job::NoError;
            std::cout << qUtf8Printable(isSaved ? download->filePath() : download->errorString()) << '\n';
            QCoreApplication::exit(isSaved ? 0 : 1);
        });
        download->start();
    });
    page.start();
    return QCoreApplication::exec();
}
