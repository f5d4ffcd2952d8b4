#include "HostProgram.h"
#include "SignalLog.h"
#include "Stage.h"
#include "TestMain.h"

#include <nox/front/ToolEnvironment.h>
#include <nox/front/WebMediaDownloaderFactory.h>

#include <QDir>
#include <QMetaMethod>
#include <QUuid>
#include <QtTest>

#include <memory>

using namespace Nox;

/** What hosts see of the workers' classes, and the exact command lines that start the tool. */
class FrontTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void metaObjects_data();
    void metaObjects();
    void factory();
    void commandLines_data();
    void commandLines();
    void realInterpreter();
    void applicationFolder_data();
    void applicationFolder();

private:
    static bool isMethod(const QMetaObject *meta, int index, const QString &text);
    static QStringList expectedHead(const QString &tool, const QString &cache, const QStringList &option,
                                    bool isSwitched);
};

/** Whether the method stands at @p index under exactly the given signature, behind its kind. */
bool FrontTest::isMethod(const QMetaObject *meta, int index, const QString &text)
{
    const QStringList words = text.split(QLatin1Char(' '));
    const QMetaMethod method = meta->method(index);
    QStringList names;
    for (const QByteArray &name : method.parameterNames())
        names.append(QString::fromLatin1(name));
    const bool isKind = words.first() == QLatin1String("signal")
        ? method.methodType() == QMetaMethod::Signal
        : method.methodType() == QMetaMethod::Slot && method.access() == QMetaMethod::Protected;
    return isKind && method.returnType() == QMetaType::Void && names == words.mid(2)
        && meta->indexOfMethod(qPrintable(words.at(1))) == index;
}

void FrontTest::metaObjects_data()
{
    QTest::addColumn<bool>("isDownloader");
    QTest::addColumn<bool>("isInterface");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("parent");
    QTest::addColumn<QStringList>("methods");

    const auto row = [](bool isDownloader, bool isInterface, const char *name, const char *parent,
                        const char *methods) {
        QTest::newRow(name) << isDownloader << isInterface << QString::fromLatin1(name) << QString::fromLatin1(parent)
                            << QString::fromLatin1(methods).split(QLatin1Char('\n'));
    };
    row(false, true, "Nox::WebMediaInfoExtractor", "QObject",
        "signal finished(Nox::WebMediaInfo) mediaInfo\n"
        "signal error(qint32) errorCode");
    row(true, true, "Nox::WebMediaDownloader", "QObject",
        "signal started()\n"
        "signal progress(qint64,qint64,qint64) total finish speed\n"
        "signal error(qint32) errorCode\n"
        "signal finished()");
    row(false, false, "Nox::YdExtractor", "Nox::WebMediaInfoExtractor",
        "slot ydReadOutputData()\n"
        "slot ydFinished(int,QProcess::ExitStatus) exitCode exitStatus\n"
        "slot ydProcessError(QProcess::ProcessError) error\n"
        "slot ydReadError()");
    row(true, false, "Nox::YdDownloader", "Nox::WebMediaDownloader",
        "slot ydReadOutputData()\n"
        "slot ydFinished(int,QProcess::ExitStatus) exitCode exitStatus\n"
        "slot ydProcessError(QProcess::ProcessError) error\n"
        "slot ydReadError()\n"
        "slot ffmpegReadOutputData()\n"
        "slot ffmpegFinished(int,QProcess::ExitStatus) exitCode exitStatus\n"
        "slot ffmpegProcessError(QProcess::ProcessError) error\n"
        "slot ffmpegReadStandardError()");
}

void FrontTest::metaObjects()
{
    QFETCH(bool, isDownloader);
    QFETCH(bool, isInterface);
    QFETCH(QString, name);
    QFETCH(QString, parent);
    QFETCH(QStringList, methods);

    const Stage stage;
    std::unique_ptr<QObject> worker;
    if (isDownloader)
        worker = stage.newDownloader();
    else
        worker = stage.newExtractor();
    const QMetaObject *meta = isInterface ? worker->metaObject()->superClass() : worker->metaObject();
    QCOMPARE(QString::fromLatin1(meta->className()), name);
    QCOMPARE(QString::fromLatin1(meta->superClass()->className()), parent);

    QCOMPARE(meta->methodCount() - meta->methodOffset(), int(methods.size()));
    for (int i = 0; i < int(methods.size()); ++i)
        QVERIFY2(isMethod(meta, meta->methodOffset() + i, methods.at(i)), qPrintable(methods.at(i)));
    QCOMPARE(meta->propertyCount(), meta->propertyOffset());
    QCOMPARE(meta->enumeratorCount(), meta->enumeratorOffset());
    QCOMPARE(meta->classInfoCount(), meta->classInfoOffset());
    QCOMPARE(meta->constructorCount(), 0);
    QCOMPARE(worker->qt_metacast(qPrintable(name)), static_cast<void *>(worker.get()));
    QCOMPARE(worker->qt_metacast("Nox::MediaInfo"), nullptr);
    QCOMPARE(worker->qt_metacast(isDownloader ? "Nox::YdExtractor" : "Nox::YdDownloader"), nullptr);
}

void FrontTest::factory()
{
    const Stage stage;
    const auto factory = WebMediaDownloaderFactory::instance();
    QCOMPARE(WebMediaDownloaderFactory::instance(), factory);
    const auto first = stage.newDownloader();
    const auto second = stage.newDownloader();
    const auto extractor = stage.newExtractor();
    QVERIFY(first != second);
    QVERIFY(!first->parent() && !extractor->parent());
    QCOMPARE(GetPythonExecPath(),
             QCoreApplication::applicationDirPath() + QStringLiteral("/python3.10/bin/python3.10"));
}

void FrontTest::commandLines_data()
{
    for (const char *name : {"tool", "cache", "folder", "url", "sentUrl"})
        QTest::addColumn<QString>(name);
    QTest::addColumn<bool>("extractorSwitch");
    QTest::addColumn<bool>("downloaderSwitch");

    const auto row = [](const char *name, const char *tool, const char *cache, const char *folder, bool extractorSwitch,
                        bool downloaderSwitch, const char *url = "http://h/p", const char *sentUrl = "http://h/p") {
        QTestData &data = QTest::newRow(name);
        for (const char *text : {tool, cache, folder, url, sentUrl})
            data << QString::fromUtf8(text);
        data << extractorSwitch << downloaderSwitch;
    };
    row("plain", "/x/yt.zip", "/c", "/d", true, true);
    row("tool of another name", "/x/tool.zip", "/c", "/d/yt.zip", false, false);
    row("capitals", "/x/YT.ZIP", "/c", "/d", false, false);
    row("mark in the cache folder", "/x/tool.zip", "/c/yt.zip-cache", "/d", true, false);
    row("mark in the middle of the tool's path", "/x/yt.zip.d/tool", "/c", "/d", true, true);
    row("mark in the address", "/x/tool", "/c", "/d", false, false, "http://h/yt.zip", "http://h/yt.zip");
    row("no cache folder", "/x/yt.zip", "", "/d", true, true);
    row("blanks", "/x y/my yt.zip", "/c  c/ d", "/d d/ e ", true, true);
    row("double quotes inside", "/x\"y/yt.zip", "/c \"c\" d", "/d\"\"d/\"e f\"/g", true, true);
    row("double quotes at the ends", "\"x y/yt.zip\"", "\"", "/\"\"\"", true, true);
    row("markers of templates", "/%1%2/yt.zip", "/c%1/%3", "/d/%2%4 %1/%(id)s", true, true);
    row("characters of shells and other scripts", "/x\\ y/'$a'/yt.zip", "/c\\",
        "/Gr\xc3\xbc\xc3\x9f"
        "e \xe6\xbc\xa2/d\\",
        true, true);
    row("address cut", "/x/yt.zip", "/c", "/d", true, true, "http://h/watch?v=1&list=2&v=3", "http://h/watch?v=1");
    row("address left alone", "/x/yt.zip", "/c", "/d", true, true, "http://h/w?a=1&v=%1%20'$x\\",
        "http://h/w?a=1&v=%1%20'$x\\");
}

QStringList FrontTest::expectedHead(const QString &tool, const QString &cache, const QStringList &option,
                                    bool isSwitched)
{
    QStringList result{QStringLiteral("-X"), QStringLiteral("pycache_prefix=") + cache, tool};
    result += option;
    if (isSwitched)
        result += QStringLiteral("--no-check-certificate");
    return result;
}

void FrontTest::commandLines()
{
    QFETCH(QString, tool);
    QFETCH(QString, cache);
    QFETCH(QString, folder);
    QFETCH(QString, url);
    QFETCH(QString, sentUrl);
    QFETCH(bool, extractorSwitch);
    QFETCH(bool, downloaderSwitch);

    Stage stage;
    stage.play(QStringLiteral("dump: exit 1\n137: exit 1"));
    const auto factory = WebMediaDownloaderFactory::instance();
    const std::unique_ptr<WebMediaInfoExtractor> extractor(factory->createExtractor(tool, cache));
    const SignalLog extraction(extractor.get());
    extractor->getMediaInfoBySignal(url);
    QTRY_COMPARE_WITH_TIMEOUT(extraction.text(), QStringLiteral("error(-1)"), Stage::Patience);
    QCOMPARE(stage.arguments(QStringLiteral("dump")),
             expectedHead(tool, cache, {QStringLiteral("--dump-json")}, extractorSwitch) + QStringList(sentUrl));
    extractor->getMediaInfo(url);
    QCOMPARE(stage.runs().value(1).arguments, stage.arguments(QStringLiteral("dump")));

    const std::unique_ptr<WebMediaDownloader> downloader(factory->createDownloader(tool, cache));
    const SignalLog download(downloader.get());
    MediaProfile profile;
    profile.setName(QStringLiteral("137"));
    downloader->download(url, profile, folder + QStringLiteral("/clip.mp4"));
    QTRY_COMPARE_WITH_TIMEOUT(download.text(), QStringLiteral("started error(-4)"), Stage::Patience);
    QStringList arguments = stage.arguments(QStringLiteral("137"));
    QVERIFY(arguments.size() > 2);
    const QString output = arguments.takeAt(arguments.size() - 2);
    QStringList expected = expectedHead(tool, cache, {QStringLiteral("-f"), QStringLiteral("137")}, downloaderSwitch);
    expected << QStringLiteral("-o") << sentUrl;
    QCOMPARE(arguments, expected);
    QVERIFY2(output.startsWith(folder + QStringLiteral("/{")), qPrintable(output));
    QCOMPARE(output.mid(folder.size() + 1 + 38), QStringLiteral("YDTMP_.%(ext)s"));
    const QUuid id(output.mid(folder.size() + 1, 38));
    QVERIFY2(!id.isNull() && id.version() == QUuid::Random, qPrintable(output));
}

/** The real interpreter takes the cache folder from the option and runs the file under the name given. */
void FrontTest::realInterpreter()
{
    Stage stage;
    stage.provide(Stage::Interpreter, Stage::Real);
    const QString cache = stage.path(QStringLiteral("byte code"));
    const auto factory = WebMediaDownloaderFactory::instance();
    std::unique_ptr<WebMediaInfoExtractor> extractor(factory->createExtractor(stage.tool(), cache));
    QCOMPARE(SignalLog::recordText(extractor->getMediaInfo(QStringLiteral("http://h/p"))),
             QStringLiteral("finished(Clip|137,140|)"));
    QCOMPARE(stage.arguments(QStringLiteral("prefix")), QStringList(cache));
    QCOMPARE(stage.arguments(QStringLiteral("dump")),
             expectedHead(stage.tool(), cache, {QStringLiteral("--dump-json")}, true)
                 + QStringList(QStringLiteral("http://h/p")));

    // A tool that is not there is the interpreter's failure, not a failure to start.
    QVERIFY(QFile::remove(stage.tool()));
    const auto downloader = stage.newDownloader();
    const SignalLog download(downloader.get());
    MediaProfile profile;
    profile.setName(QStringLiteral("137"));
    downloader->download(QStringLiteral("http://h/p"), profile, QStringLiteral("clip.mp4"));
    QTRY_COMPARE_WITH_TIMEOUT(download.text(), QStringLiteral("started error(-4)"), Stage::Patience);
    extractor = stage.newExtractor();
    const SignalLog extraction(extractor.get());
    extractor->getMediaInfoBySignal(QStringLiteral("http://h/p"));
    QTRY_VERIFY_WITH_TIMEOUT(extraction.text().endsWith(QStringLiteral(" error(-1) error(-1)")), Stage::Patience);
    QVERIFY(extraction.text().startsWith(QStringLiteral("finished(||")));
    QVERIFY(extraction.text().contains(stage.tool()));
}

void FrontTest::applicationFolder_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<bool>("isSwitched");
    QTest::newRow("plain") << QStringLiteral("app") << false;
    QTest::newRow("blanks, quotes and markers") << QStringLiteral("my \"app\" %1%2 \"") << false;
    QTest::newRow("mark of the certificate switch") << QStringLiteral("yt.zip app") << true;
}

/** The programs are found beside the host's executable, and the extractor looks at the whole command. */
void FrontTest::applicationFolder()
{
    QFETCH(QString, folder);
    QFETCH(bool, isSwitched);
    Stage stage;
    stage.play(QStringLiteral("ffmpeg: merge"));
    HostProgram host(stage.path(folder));
    host.start(QStringLiteral("extract"), QStringLiteral("/x/tool"), {});
    QVERIFY(host.waitForEnd());
    QCOMPARE(stage.arguments(QStringLiteral("dump")),
             expectedHead(QStringLiteral("/x/tool"), {}, {QStringLiteral("--dump-json")}, isSwitched)
                 + QStringList(QStringLiteral("http://127.0.0.1/page")));
    host.start(QStringLiteral("download"), QStringLiteral("/x/tool"), stage.folder() + QStringLiteral("/clip.mp4"));
    QVERIFY(host.waitForEnd());
    QCOMPARE(stage.keys().mid(1),
             (QStringList{QStringLiteral("137"), QStringLiteral("140"), QStringLiteral("ffmpeg")}));
    QVERIFY(!stage.arguments(QStringLiteral("137")).contains(QStringLiteral("--no-check-certificate")));
    QCOMPARE(stage.files(), QStringLiteral("clip.mp4=137+140"));
}

NOX_TEST_MAIN(FrontTest)
#include "FrontTest.moc"
