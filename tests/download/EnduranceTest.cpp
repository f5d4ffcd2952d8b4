#include "tests/support/Processes.h"
#include "tests/support/Setup.h"
#include "tests/support/TestMain.h"
#include "tests/support/TestSandbox.h"

#include <QEventLoop>
#include <QFile>
#include <QLoggingCategory>
#include <QTimer>
#include <QtTest>

using namespace Nox;

namespace {

/** Resources that must not grow. */
struct Holdings {
    int openFiles = Processes::openFileCount();
    qint64 memory = Processes::residentBytes();
};

/** Makes a fake that starts quickly. */
void provide(const QString &name, const char *script)
{
    QFile file(QCoreApplication::applicationDirPath() + name);
    file.remove();
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(script);
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

/** Starts a job, and waits for the first outcome; empty when none comes. */
template <typename Worker, typename Start>
QString outcome(Worker *worker, Start start)
{
    QString result;
    QEventLoop loop;
    QTimer watchdog;
    QObject::connect(&watchdog, &QTimer::timeout, &loop, &QEventLoop::quit);
    watchdog.start(TestSandbox::Timeout);
    const auto end = [&](const char *text) {
        result = QString::fromLatin1(text);
        loop.quit();
    };
    QObject::connect(worker, &Worker::finished, &loop, [&] { end("finished"); });
    QObject::connect(worker, &Worker::error, &loop, [&] { end("error"); });
    start();
    loop.exec();
    return result;
}

} // namespace

/** Many extractions and downloads one after the other in one process do not leak. */
class EnduranceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false")); }

    void extractions()
    {
        constexpr int count = 1000;
        TestSandbox sandbox;
        provide(QStringLiteral("/python3.10/bin/python3.10"), "#!/bin/sh\necho '{\"title\":\"Clip\"}'\n");
        const auto extractor = sandbox.newExtractor();
        Holdings early;
        for (int i = 0; i < count; ++i) {
            if (i == count / 10)
                early = Holdings();
            QCOMPARE(outcome(extractor.get(), [&] { extractor->getMediaInfoBySignal(Setup::url()); }),
                     QStringLiteral("finished"));
        }
        const Holdings late;
        QCOMPARE(late.openFiles, early.openFiles);
        QVERIFY(Processes::children().isEmpty());
        // The process objects stay with the extractor.
        QCOMPARE(int(extractor->findChildren<QProcess *>().size()), count);
        const qint64 each = (late.memory - early.memory) / (count - count / 10);
        qInfo("%lld bytes for each extraction", static_cast<long long>(each));
        if (Processes::isMemoryMeasurable)
            QVERIFY(each < qint64(16) * 1024);
    }

    void downloads()
    {
        constexpr int count = 300;
        TestSandbox sandbox;
        provide(QStringLiteral("/python3.10/bin/python3.10"),
                "#!/bin/sh\n"
                "file=\"${8%'%(ext)s'}mp4\"\n"
                "echo \"$5\" > \"$file\"\n"
                "echo \"[download] Destination: $file\"\n"
                "echo '[download] 50% of 10KiB at 1KiB/s ETA 1'\n");
        provide(QStringLiteral("/ffmpeg"), "#!/bin/sh\nfor last; do :; done\ncat \"$2\" \"$4\" > \"$last\"\n");
        const Setup one({}, sandbox);
        const Setup two(QStringLiteral("two"), sandbox);
        Holdings early;
        for (int i = 0; i < count; ++i) {
            if (i == count / 10)
                early = Holdings();
            const auto downloader = sandbox.newDownloader();
            const Setup &setup = i % 2 == 0 ? one : two;
            QCOMPARE(outcome(downloader.get(),
                             [&] { downloader->download(Setup::url(), setup.profile(), setup.destination()); }),
                     QStringLiteral("finished"));
            QCOMPARE(sandbox.files(),
                     i % 2 == 0 ? QStringLiteral("clip.mp4=137\n") : QStringLiteral("clip.mp4=137\n140\n"));
            QVERIFY(QFile::remove(setup.destination()));
        }
        const Holdings late;
        QCOMPARE(late.openFiles, early.openFiles);
        QVERIFY(Processes::children().isEmpty());
        const qint64 each = (late.memory - early.memory) / (count - count / 10);
        qInfo("%lld bytes for each download", static_cast<long long>(each));
        if (Processes::isMemoryMeasurable)
            QVERIFY(each < qint64(2) * 1024);
    }
};

NOX_TEST_MAIN(EnduranceTest)
#include "EnduranceTest.moc"
