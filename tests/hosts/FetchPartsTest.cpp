#include "hosts/fetch/Options.h"
#include "hosts/fetch/ProgressLine.h"

#include <QDir>
#include <QtTest>

using namespace NoxFetch;
using NoxHost::TransferFigures;

/** The parts of nox-fetch that need no process. */
class FetchPartsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void commandLines_data();
    void commandLines();
    void allOptions();
    void statusLines();
};

void FetchPartsTest::commandLines_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<int>("exitCode"); // -1 to go on
    QTest::addColumn<QString>("words");
    const auto row = [](const char *arguments, int exitCode, const char *words) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments) << exitCode << QString::fromLatin1(words);
    };
    row("http://a/", -1, "");
    row("--help", 0, "--no-audio");
    row("-h", 0, "Exit code");
    row("--version", 0, "nox-fetch 1.");
    row("", 2, "exactly one");
    row("http://a/ http://b/", 2, "exactly one");
    row("file:///etc/passwd", 2, "http://");
    row("http://a/\"x", 2, "quotes");
    row("--nonsense http://a/", 2, "nonsense");
    row("-f", 2, "value");
    row("-f= http://a/", 2, "--format needs");
    row("-l --json http://a/", 2, "exclude");
    row("-a 1 --no-audio http://a/", 2, "exclude");
    row("-v -q http://a/", 2, "exclude");
    row("-o /none/x http://a/", 2, "does not exist");
    row("-o x. http://a/", 2, "dot");
    row("-l -o /none/x http://a/", -1, "");
}

void FetchPartsTest::commandLines()
{
    QFETCH(QString, arguments);
    QFETCH(QString, words);
    const QStringList split = arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const CommandLine line = CommandLine::read(QStringList(QStringLiteral("nox-fetch")) + split);
    QTEST(line.exitCode.value_or(-1), "exitCode");
    QVERIFY2(line.text.contains(words), qPrintable(line.text));
}

void FetchPartsTest::allOptions()
{
    const QString all = QStringLiteral("nox-fetch -v -f 1 -a 2 -o out --tool t --pycache p --log l https://a/");
    const CommandLine line = CommandLine::read(all.split(QLatin1Char(' ')));
    QVERIFY(!line.exitCode);
    const Options &options = line.options;
    QCOMPARE(
        QStringList({options.formatCode, options.audioCode, options.output, options.toolFile, options.pycacheFolder,
                     options.logFile, options.url}),
        QStringList({QStringLiteral("1"), QStringLiteral("2"), QDir::current().absoluteFilePath(QStringLiteral("out")),
                     QStringLiteral("t"), QStringLiteral("p"), QStringLiteral("l"), QStringLiteral("https://a/")}));
    QVERIFY(options.verbose && !options.quiet && !options.noAudio && options.mode == Options::Mode::Download);
}

void FetchPartsTest::statusLines()
{
    const QString video = QStringLiteral("video");
    const TransferFigures half(2000, 1000, 100);
    QCOMPARE(statusLine(video, {}, 80, 5), QStringLiteral("video /"));
    QCOMPARE(statusLine(video, half, 80, 0),
             QStringLiteral("video      50% [############------------] 1.0 kB / 2.0 kB  100 bytes/s  0:00:10"));
    for (const int width : {1, 10, 40, 60, 200})
        QVERIFY(statusLine(video, half, width, 0).size() < width);
    QCOMPARE(plainLine(video, half), QStringLiteral("video  50%  1.0 kB / 2.0 kB  100 bytes/s  0:00:10 left"));
    QCOMPARE(plainLine(video, TransferFigures(2000, 1000, 0)), QStringLiteral("video  50%  1.0 kB / 2.0 kB"));
}

QTEST_GUILESS_MAIN(FetchPartsTest)
#include "FetchPartsTest.moc"
