// record URL: prints the title of the video on a web page, without blocking; shows when a page has been read.

#include <nox/NoxWebMedia.h>

#include <QCoreApplication>
#include <QProcess>
#include <QStandardPaths>
#include <QTimer>

#include <iostream>
#include <memory>
#include <optional>

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    Nox::Logger::init("/dev/null", Nox::LOG_ERROR, 0); // standard output is for the title

    const QString tool = QCoreApplication::applicationDirPath() + QLatin1String("/yt.zip");
    const QString cache = QStandardPaths::writableLocation(QStandardPaths::CacheLocation);
    using Nox::WebMediaInfoExtractor;
    const std::unique_ptr<WebMediaInfoExtractor> extractor(
        Nox::WebMediaDownloaderFactory::instance()->createExtractor(tool, cache));

    // A record is valid only if no error follows before control returns to the event loop.
    std::optional<Nox::WebMediaInfo> record;
    QTimer noError;
    noError.setSingleShot(true);
    QObject::connect(&noError, &QTimer::timeout, [&record] {
        if (!record)
            return;
        std::cout << qUtf8Printable(record->getTitle()) << '\n';
        QCoreApplication::exit(record->isValid() ? 0 : 1);
    });
    QObject::connect(extractor.get(), &WebMediaInfoExtractor::finished, [&](const Nox::WebMediaInfo &page) {
        record = page;
        noError.start();
    });
    QObject::connect(extractor.get(), &WebMediaInfoExtractor::error, [&](qint32 errorCode) {
        const bool followsRecord = record.has_value();
        record.reset();
        // An error behind a record is a message of the tool, which goes on. It ends with a record or with an error
        // alone. Only an interpreter that could not be started sends nothing more.
        if (followsRecord && errorCode != QProcess::FailedToStart)
            return;
        std::cerr << "The page could not be read.\n" << qUtf8Printable(extractor->errorDetail());
        QCoreApplication::exit(1);
    });

    QTimer::singleShot(0, extractor.get(),
                       [&] { extractor->getMediaInfoBySignal(QCoreApplication::arguments().last()); });
    return QCoreApplication::exec();
}
