#include "tests/support/SignalLog.h"
#include "tests/support/TestMain.h"
#include "tests/support/TestSandbox.h"
#include "tests/support/TextTable.h"
#include "tests/util/Rows.h"

#include <nox/front/ToolEnvironment.h>
#include <nox/front/WebMediaDownloaderFactory.h>
#include <nox/process/ErrorTail.h>
#include <nox/process/ProcessOutput.h>

#include <QDir>
#include <QMetaMethod>
#include <QProcess>
#include <QUuid>
#include <QtTest>

#include <memory>

using namespace Nox;

namespace {

/** "signal" or "slot", the signature, and the names of the parameters, if the method has this signature. */
QString methodText(const QMetaObject *meta, int index, const QString &signature)
{
    const QMetaMethod method = meta->method(index);
    const bool isSlot = method.methodType() == QMetaMethod::Slot && method.access() == QMetaMethod::Protected;
    QString text = method.methodType() == QMetaMethod::Signal ? "signal "_s : isSlot ? "slot "_s : "other "_s;
    const bool isFound = meta->indexOfMethod(qPrintable(signature)) == index;
    text += isFound ? signature : QString::fromLatin1(method.methodSignature());
    for (const QByteArray &name : method.parameterNames())
        text += QLatin1Char(' ') + QString::fromLatin1(name);
    return method.returnType() == QMetaType::Void ? text : "no void "_s + text;
}

/** The arguments of the tool up to the certificate switch. */
QStringList expectedHead(const QString &tool, const QString &cache, const QStringList &option, bool isSwitched)
{
    QStringList result{"-X"_s, "pycache_prefix="_s + cache, tool};
    result += option;
    if (isSwitched)
        result += "--no-check-certificate"_s;
    return result;
}

} // namespace

/** What hosts see of the workers' classes, and the exact command lines that start the tool. */
class FrontTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void metaObjects_data()
    {
        const TextTable row{"parent", "methods"};
        row("Nox::WebMediaInfoExtractor", "QObject",
            "signal finished(Nox::WebMediaInfo) mediaInfo\n"
            "signal error(qint32) errorCode");
        row("Nox::WebMediaDownloader", "QObject",
            "signal started()\n"
            "signal progress(qint64,qint64,qint64) total finish speed\n"
            "signal error(qint32) errorCode\n"
            "signal finished()");
        row("Nox::YdExtractor", "Nox::WebMediaInfoExtractor",
            "slot ydReadOutputData()\n"
            "slot ydFinished(int,QProcess::ExitStatus) exitCode exitStatus\n"
            "slot ydProcessError(QProcess::ProcessError) error\n"
            "slot ydReadError()");
        row("Nox::YdDownloader", "Nox::WebMediaDownloader",
            "slot ydReadOutputData()\n"
            "slot ydFinished(int,QProcess::ExitStatus) exitCode exitStatus\n"
            "slot ydProcessError(QProcess::ProcessError) error\n"
            "slot ydReadError()\n"
            "slot ffmpegReadOutputData()\n"
            "slot ffmpegFinished(int,QProcess::ExitStatus) exitCode exitStatus\n"
            "slot ffmpegProcessError(QProcess::ProcessError) error\n"
            "slot ffmpegReadStandardError()");
    }

    void metaObjects()
    {
        const auto [parent, methods] = fetchTexts("parent", "methods");
        const QByteArray name = QTest::currentDataTag();
        const TestSandbox sandbox;
        const std::unique_ptr<QObject> downloader = sandbox.make<WebMediaDownloader>();
        const std::unique_ptr<QObject> extractor = sandbox.make<WebMediaInfoExtractor>();
        const bool isDownloader = name.endsWith("Downloader");
        QObject *const worker = isDownloader ? downloader.get() : extractor.get();
        const QMetaObject *const own = worker->metaObject();
        const QMetaObject *const meta = name == own->className() ? own : own->superClass();
        QCOMPARE(QByteArray(meta->className()), name);
        QCOMPARE(QString::fromLatin1(meta->superClass()->className()), parent);

        int index = meta->methodOffset();
        for (const QString &method : methods.split(QLatin1Char('\n')))
            QCOMPARE(methodText(meta, index++, method.section(QLatin1Char(' '), 1, 1)), method);
        QCOMPARE(meta->methodCount(), index);
        QCOMPARE(meta->propertyCount(), meta->propertyOffset());
        QCOMPARE(meta->enumeratorCount(), meta->enumeratorOffset());
        QCOMPARE(meta->classInfoCount(), meta->classInfoOffset());
        QCOMPARE(meta->constructorCount(), 0);
        QCOMPARE(worker->qt_metacast(name.constData()), static_cast<void *>(worker));
        QCOMPARE((isDownloader ? extractor : downloader)->qt_metacast(name.constData()), nullptr);
        QVERIFY(!worker->parent());
    }

    void factory()
    {
        QCOMPARE(WebMediaDownloaderFactory::instance(), WebMediaDownloaderFactory::instance());
        QCOMPARE(GetPythonExecPath(), QCoreApplication::applicationDirPath() + "/python3.10/bin/python3.10"_s);
    }

    void errorTail_data()
    {
        QTest::addColumn<QByteArrayList>("outputs");
        QTest::addColumn<QString>("expected");
        const QByteArray euro("€");
        const QString shown = QString::fromUtf8(euro);
        QTest::newRow("a character in two outputs")
            << QByteArrayList{"a\xe2", "\x82\xac", "b"} << "a"_s + shown + QLatin1Char('b');
        QTest::newRow("zero byte") << QByteArrayList{QByteArray("a\0b", 3)} << QString("a\0b"_s);
        QTest::newRow("one more") << QByteArrayList{"y", QByteArray(4096, 'x')} << QString(4096, QLatin1Char('x'));
        QTest::newRow("many small ones") << QByteArrayList(QVector<QByteArray>(20000, "xy").toList())
                                         << "xy"_s.repeated(2048);
        QTest::newRow("cut between characters") << QByteArrayList{euro.repeated(5000)} << shown.repeated(1365);
    }

    void errorTail()
    {
        QFETCH(QByteArrayList, outputs);
        QFETCH(QString, expected);
        QObject worker;
        ErrorTail tail(&worker);
        for (const QByteArray &output : outputs)
            tail.append(output, ProcessOutput::fromLocal8Bit);
        QCOMPARE(ErrorTail::textOf(&worker), expected);
        tail.append("!", ProcessOutput::fromUtf8); // another encoding begins behind the earlier text
        QCOMPARE(ErrorTail::textOf(&worker).right(4000), (expected + QLatin1Char('!')).right(4000));
        QVERIFY(ErrorTail::textOf(&worker).toUtf8().size() <= 4096);
        QCOMPARE(ErrorTail::textOf(this), QString());
    }

    void commandLines_data()
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
        row("characters of shells and other scripts", "/x\\ y/'$a'/yt.zip", "/c\\", "/Grüße 漢/d\\", "both");
        row("address cut", "/x/yt.zip", "/c", "/d", "both", "http://h/watch?v=1&list=2&v=3", "http://h/watch?v=1");
        row("address left alone", "/x/yt.zip", "/c", "/d", "both", "http://h/w?a=1&v=%1%20'$x\\",
            "http://h/w?a=1&v=%1%20'$x\\");
    }

    void commandLines()
    {
        auto [tool, cache, folder, url, sentUrl, switches] =
            fetchTexts("tool", "cache", "folder", "url", "sentUrl", "switches");
        const bool extractorSwitch = !switches.isEmpty();
        const bool downloaderSwitch = switches == "both"_s;
        if (url.isEmpty())
            url = sentUrl = "http://h/p"_s;

        TestSandbox sandbox;
        sandbox.play("dump: exit 1\n137: exit 1"_s);
        auto *const factory = WebMediaDownloaderFactory::instance();
        const std::unique_ptr<WebMediaInfoExtractor> extractor(factory->createExtractor(tool, cache));
        const SignalLog extraction(extractor.get());
        extractor->getMediaInfoBySignal(url);
        QTRY_COMPARE_WITH_TIMEOUT(extraction.text(), "error(-1)"_s, TestSandbox::Timeout);
        QCOMPARE(sandbox.arguments("dump"_s),
                 expectedHead(tool, cache, {"--dump-json"_s}, extractorSwitch) + QStringList(sentUrl));
        extractor->getMediaInfo(url);
        QCOMPARE(sandbox.runs().value(1).arguments, sandbox.arguments("dump"_s));

        const std::unique_ptr<WebMediaDownloader> downloader(factory->createDownloader(tool, cache));
        const SignalLog download(downloader.get());
        MediaProfile profile;
        profile.setName("137"_s);
        downloader->download(url, profile, folder + "/clip.mp4"_s);
        QTRY_COMPARE_WITH_TIMEOUT(download.text(), "started error(-4)"_s, TestSandbox::Timeout);
        QStringList arguments = sandbox.arguments("137"_s);
        QVERIFY(arguments.size() > 2);
        const QString output = arguments.takeAt(arguments.size() - 2);
        QStringList expected = expectedHead(tool, cache, {"-f"_s, "137"_s}, downloaderSwitch);
        expected << "-o"_s << sentUrl;
        QCOMPARE(arguments, expected);
        QVERIFY2(output.startsWith(folder + "/{"_s), qPrintable(output));
        QCOMPARE(output.mid(folder.size() + 1 + 38), "YDTMP_.%(ext)s"_s);
        const QUuid id(output.mid(folder.size() + 1, 38));
        QVERIFY2(!id.isNull() && id.version() == QUuid::Random, qPrintable(output));
    }

    /** The real interpreter uses the cache folder of the option and runs the file with its name. */
    void realInterpreter()
    {
        TestSandbox sandbox;
        TestSandbox::provide(TestSandbox::Interpreter, TestSandbox::Real);
        const QString cache = sandbox.path("byte code"_s);
        auto *const factory = WebMediaDownloaderFactory::instance();
        std::unique_ptr<WebMediaInfoExtractor> extractor(factory->createExtractor(sandbox.tool(), cache));
        QCOMPARE(SignalLog::recordText(extractor->getMediaInfo("http://h/p"_s)), "finished(Clip|137,140|)"_s);
        QCOMPARE(sandbox.arguments("prefix"_s), QStringList(cache));
        QCOMPARE(sandbox.arguments("dump"_s),
                 expectedHead(sandbox.tool(), cache, {"--dump-json"_s}, true) + QStringList("http://h/p"_s));
    }

    void applicationFolder_data()
    {
        const TextTable row{"folder", "switches"};
        row("plain", "app");
        row("blanks, quotes and markers", R"(my "app" %1%2 ")");
        row("mark of the certificate switch", "yt.zip app", "extractor");
    }

    /** The programs are in the folder of the host's executable, which counts for the certificate switch. */
    void applicationFolder()
    {
        const auto [folder, switches] = fetchTexts("folder", "switches");
        const TestSandbox sandbox;
        const QString host = TestSandbox::provideHost(sandbox.path(folder));
        QCOMPARE(QProcess::execute(host, {"extract"_s, "/x/tool"_s}), 0);
        QCOMPARE(sandbox.arguments("dump"_s),
                 expectedHead("/x/tool"_s, {}, {"--dump-json"_s}, !switches.isEmpty())
                     + QStringList("http://127.0.0.1/page"_s));
        QCOMPARE(QProcess::execute(host, {"download"_s, "/x/tool"_s, sandbox.folder() + "/clip.mp4"_s}), 0);
        QCOMPARE(sandbox.keys().mid(1), (QStringList{"137"_s, "140"_s, "ffmpeg"_s}));
        QVERIFY(!sandbox.arguments("137"_s).contains("--no-check-certificate"_s));
        QCOMPARE(sandbox.files(), "clip.mp4=137+140"_s);
    }
};

NOX_TEST_MAIN(FrontTest)
#include "FrontTest.moc"
