#include "tests/support/Processes.h"
#include "tests/support/Setup.h"
#include "tests/support/TestMain.h"
#include "tests/support/TestSandbox.h"
#include "tests/util/Files.h"

#include <QLoggingCategory>
#include <QtTest>

using namespace Nox;

namespace {

/** Resources that must not grow. */
struct Holdings {
    int openFiles = int(QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::Files | QDir::System).size());
    qint64 memory = Processes::residentBytes();
};

/** Makes a fake that starts quickly. */
void provide(const QString &name, const char *script)
{
    const QString file = QCoreApplication::applicationDirPath() + name;
    QFile::remove(file);
    Files::write(file, script);
    QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

/** Repeats a job, which ends an event loop when it has succeeded. @p limit is that of the memory for each, in bytes. */
template <typename Start>
void repeat(int count, qint64 limit, Start start)
{
    Holdings early;
    for (int i = 0; i < count; ++i) {
        if (i == count / 10)
            early = Holdings();
        QTestEventLoop loop;
        start(loop);
        loop.enterLoopMSecs(TestSandbox::Timeout);
        QVERIFY(!loop.timeout());
    }
    const Holdings late;
    QCOMPARE(late.openFiles, early.openFiles);
    QVERIFY(Processes::children().isEmpty());
    const qint64 each = (late.memory - early.memory) / (count - count / 10);
    qInfo("%lld bytes for each", static_cast<long long>(each));
    if (Processes::isMemoryMeasurable)
        QVERIFY(each < limit);
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
        const TestSandbox sandbox;
        provide(QStringLiteral("/python3.10/bin/python3.10"), "#!/bin/sh\necho '{\"title\":\"Clip\"}'\n");
        const auto extractor = sandbox.make<WebMediaInfoExtractor>();
        repeat(count, 16 * 1024, [&](QTestEventLoop &loop) {
            connect(extractor.get(), &WebMediaInfoExtractor::finished, &loop, &QTestEventLoop::exitLoop);
            extractor->getMediaInfoBySignal(Setup::url());
        });
        // The process objects stay with the extractor.
        QCOMPARE(int(extractor->findChildren<QProcess *>().size()), count);
    }

    void downloads()
    {
        TestSandbox sandbox;
        provide(QStringLiteral("/python3.10/bin/python3.10"),
                "#!/bin/sh\n"
                "file=\"${8%'%(ext)s'}mp4\"\n"
                "echo \"$5\" > \"$file\"\n"
                "echo \"[download] Destination: $file\"\n"
                "echo '[download] 50% of 10KiB at 1KiB/s ETA 1'\n");
        provide(QStringLiteral("/ffmpeg"), "#!/bin/sh\nfor last; do :; done\ncat \"$2\" \"$4\" > \"$last\"\n");
        const Setup two(QStringLiteral("two"), sandbox);
        std::unique_ptr<WebMediaDownloader> downloader;
        repeat(300, 2 * 1024, [&](QTestEventLoop &loop) {
            QFile::remove(two.destination());
            downloader = sandbox.make<WebMediaDownloader>();
            connect(downloader.get(), &WebMediaDownloader::finished, &loop, &QTestEventLoop::exitLoop);
            downloader->download(Setup::url(), two.profile(), two.destination());
        });
        QCOMPARE(sandbox.files(), QStringLiteral("clip.mp4=137\n140\n"));
    }
};

NOX_TEST_MAIN(EnduranceTest)
#include "EnduranceTest.moc"
