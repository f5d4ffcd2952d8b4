#include "tests/support/HostProgram.h"
#include "tests/support/SignalLog.h"
#include "tests/support/TestMain.h"
#include "tests/support/TestSandbox.h"
#include "tests/support/TextTable.h"

#include <nox/front/ToolEnvironment.h>
#include <nox/front/WebMediaDownloaderFactory.h>
#include <nox/process/ErrorTail.h>
#include <nox/process/ProcessOutput.h>

#include <QDir>
#include <QMetaMethod>
#include <QUuid>
#include <QtTest>

#include <memory>

using namespace Nox;

namespace {

class TestWorker : public QObject, public ErrorTail
{
public:
    void print(const QByteArray &output, bool isTool)
    {
        appendToErrorTail(output, isTool ? ProcessOutput::fromLocal8Bit : ProcessOutput::fromUtf8);
    }
};

} // namespace

/** What hosts see of the workers' classes, and the exact command lines that start the tool. */
class FrontTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void metaObjects_data();
    void metaObjects();
    void factory();
    void errorTail_data();
    void errorTail();
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
    const TextTable row{"kind", "parent", "methods"};
    row("Nox::WebMediaInfoExtractor", "extractor interface", "QObject",
        "signal finished(Nox::WebMediaInfo) mediaInfo\n"
        "signal error(qint32) errorCode");
    row("Nox::WebMediaDownloader", "downloader interface", "QObject",
        "signal started()\n"
        "signal progress(qint64,qint64,qint64) total finish speed\n"
        "signal error(qint32) errorCode\n"
        "signal finished()");
    row("Nox::YdExtractor", "extractor", "Nox::WebMediaInfoExtractor",
        "slot ydReadOutputData()\n"
        "slot ydFinished(int,QProcess::ExitStatus) exitCode exitStatus\n"
        "slot ydProcessError(QProcess::ProcessError) error\n"
        "slot ydReadError()");
    row("Nox::YdDownloader", "downloader", "Nox::WebMediaDownloader",
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
    QFETCH(QString, kind);
    QFETCH(QString, parent);
    QFETCH(QString, methods);
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    const bool isDownloader = kind.startsWith(QLatin1String("downloader"));
    const QStringList expected = methods.split(QLatin1Char('\n'));

    const TestSandbox stage;
    std::unique_ptr<QObject> worker;
    if (isDownloader)
        worker = stage.newDownloader();
    else
        worker = stage.newExtractor();
    const QMetaObject *meta =
        kind.endsWith(QLatin1String("interface")) ? worker->metaObject()->superClass() : worker->metaObject();
    QCOMPARE(QString::fromLatin1(meta->className()), name);
    QCOMPARE(QString::fromLatin1(meta->superClass()->className()), parent);

    QCOMPARE(meta->methodCount() - meta->methodOffset(), int(expected.size()));
    for (int i = 0; i < int(expected.size()); ++i)
        QVERIFY2(isMethod(meta, meta->methodOffset() + i, expected.at(i)), qPrintable(expected.at(i)));
    QCOMPARE(meta->propertyCount(), meta->propertyOffset());
    QCOMPARE(meta->enumeratorCount(), meta->enumeratorOffset());
    QCOMPARE(meta->classInfoCount(), meta->classInfoOffset());
    QCOMPARE(meta->constructorCount(), 0);
    QCOMPARE(worker->qt_metacast(qPrintable(name)), static_cast<void *>(worker.get()));
    for (const char *other : {"Nox::MediaInfo", "ErrorTail", "Nox::ErrorTail"})
        QCOMPARE(worker->qt_metacast(other), nullptr);
    QCOMPARE(worker->qt_metacast(isDownloader ? "Nox::YdExtractor" : "Nox::YdDownloader"), nullptr);
}

void FrontTest::factory()
{
    const TestSandbox stage;
    auto *const factory = WebMediaDownloaderFactory::instance();
    QCOMPARE(WebMediaDownloaderFactory::instance(), factory);
    const auto first = stage.newDownloader();
    const auto second = stage.newDownloader();
    const auto extractor = stage.newExtractor();
    QVERIFY(first != second);
    QVERIFY(!first->parent() && !extractor->parent());
    QCOMPARE(GetPythonExecPath(),
             QCoreApplication::applicationDirPath() + QStringLiteral("/python3.10/bin/python3.10"));
}

void FrontTest::errorTail_data()
{
    QTest::addColumn<QByteArrayList>("outputs");
    QTest::addColumn<QString>("expected");
    const QByteArray euro("\xe2\x82\xac");
    const QString shown = QString::fromUtf8(euro);
    QTest::newRow("nothing") << QByteArrayList() << QString();
    QTest::newRow("a character in two outputs")
        << QByteArrayList{"a\xe2", "\x82\xac", "b"} << QStringLiteral("a") + shown + QLatin1Char('b');
    QTest::newRow("zero byte") << QByteArrayList{QByteArray("a\0b", 3)} << QString(QStringLiteral("a\0b"));
    QTest::newRow("exactly the limit") << QByteArrayList{QByteArray(4096, 'x')} << QString(4096, QLatin1Char('x'));
    QTest::newRow("one more") << QByteArrayList{"y", QByteArray(4096, 'x')} << QString(4096, QLatin1Char('x'));
    QTest::newRow("one big output") << QByteArrayList{QByteArray(1000000, 'x') + "y"}
                                    << QString(4095, QLatin1Char('x')) + QLatin1Char('y');
    QTest::newRow("many small ones") << QByteArrayList(QVector<QByteArray>(20000, "xy").toList())
                                     << QStringLiteral("xy").repeated(2048);
    QTest::newRow("cut between characters") << QByteArrayList{euro.repeated(5000)} << shown.repeated(1365);
}

void FrontTest::errorTail()
{
    QFETCH(QByteArrayList, outputs);
    QFETCH(QString, expected);
    TestWorker worker;
    for (const QByteArray &output : outputs)
        worker.print(output, true);
    QCOMPARE(ErrorTail::of(&worker), expected);
    worker.print("!", false); // decoded anew behind what was there
    QCOMPARE(ErrorTail::of(&worker).right(4000), (expected + QLatin1Char('!')).right(4000));
    QVERIFY(ErrorTail::of(&worker).toUtf8().size() <= 4096);
    QCOMPARE(ErrorTail::of(this), QString());
}

void FrontTest::commandLines_data()
{
    const TextTable row{"tool", "cache", "folder", "switches", "url", "sentUrl"};
    row("plain", "/x/yt.zip", "/c", "/d", "both");
    row("tool of another name", "/x/tool.zip", "/c", "/d/yt.zip", "");
    row("capitals", "/x/YT.ZIP", "/c", "/d", "");
    row("mark in the cache folder", "/x/tool.zip", "/c/yt.zip-cache", "/d", "extractor");
    row("mark in the middle of the tool's path", "/x/yt.zip.d/tool", "/c", "/d", "both");
    row("mark in the address", "/x/tool", "/c", "/d", "", "http://h/yt.zip", "http://h/yt.zip");
    row("no cache folder", "/x/yt.zip", "", "/d", "both");
    row("blanks", "/x y/my yt.zip", "/c  c/ d", "/d d/ e ", "both");
    row("double quotes inside", R"(/x"y/yt.zip)", R"(/c "c" d)", R"(/d""d/"e f"/g)", "both");
    row("double quotes at the ends", R"("x y/yt.zip")", R"(")", R"(/""")", "both");
    row("markers of templates", "/%1%2/yt.zip", "/c%1/%3", "/d/%2%4 %1/%(id)s", "both");
    row("characters of shells and other scripts", "/x\\ y/'$a'/yt.zip", "/c\\",
        "/Gr\xc3\xbc\xc3\x9f"
        "e \xe6\xbc\xa2/d\\",
        "both");
    row("address cut", "/x/yt.zip", "/c", "/d", "both", "http://h/watch?v=1&list=2&v=3", "http://h/watch?v=1");
    row("address left alone", "/x/yt.zip", "/c", "/d", "both", "http://h/w?a=1&v=%1%20'$x\\",
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
    QFETCH(QString, switches);
    const bool extractorSwitch = !switches.isEmpty();
    const bool downloaderSwitch = switches == QLatin1String("both");
    if (url.isEmpty())
        url = sentUrl = QStringLiteral("http://h/p");

    TestSandbox stage;
    stage.play(QStringLiteral("dump: exit 1\n137: exit 1"));
    auto *const factory = WebMediaDownloaderFactory::instance();
    const std::unique_ptr<WebMediaInfoExtractor> extractor(factory->createExtractor(tool, cache));
    const SignalLog extraction(extractor.get());
    extractor->getMediaInfoBySignal(url);
    QTRY_COMPARE_WITH_TIMEOUT(extraction.text(), QStringLiteral("error(-1)"), TestSandbox::Patience);
    QCOMPARE(stage.arguments(QStringLiteral("dump")),
             expectedHead(tool, cache, {QStringLiteral("--dump-json")}, extractorSwitch) + QStringList(sentUrl));
    extractor->getMediaInfo(url);
    QCOMPARE(stage.runs().value(1).arguments, stage.arguments(QStringLiteral("dump")));

    const std::unique_ptr<WebMediaDownloader> downloader(factory->createDownloader(tool, cache));
    const SignalLog download(downloader.get());
    MediaProfile profile;
    profile.setName(QStringLiteral("137"));
    downloader->download(url, profile, folder + QStringLiteral("/clip.mp4"));
    QTRY_COMPARE_WITH_TIMEOUT(download.text(), QStringLiteral("started error(-4)"), TestSandbox::Patience);
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
    TestSandbox stage;
    stage.provide(TestSandbox::Interpreter, TestSandbox::Real);
    const QString cache = stage.path(QStringLiteral("byte code"));
    auto *const factory = WebMediaDownloaderFactory::instance();
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
    QTRY_COMPARE_WITH_TIMEOUT(download.text(), QStringLiteral("started error(-4)"), TestSandbox::Patience);
    extractor = stage.newExtractor();
    const SignalLog extraction(extractor.get());
    extractor->getMediaInfoBySignal(QStringLiteral("http://h/p"));
    QTRY_VERIFY_WITH_TIMEOUT(extraction.text().endsWith(QStringLiteral(" error(-1) error(-1)")), TestSandbox::Patience);
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
    TestSandbox stage;
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
