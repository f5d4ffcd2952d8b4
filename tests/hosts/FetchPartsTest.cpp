#include "hosts/fetch/AddressFile.h"
#include "hosts/fetch/ItemSelection.h"
#include "hosts/fetch/Options.h"
#include "hosts/fetch/ProgressLine.h"
#include "tests/util/Rows.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

using namespace NoxFetch;
using Nox::TransferFigures;

/** The parts of nox-fetch that need no process. */
class FetchPartsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void commandLines_data();
    void commandLines();
    void paths();
    void items();
    void addressFile();
    void documents();
    void completion();
    void statusLines();
};

void FetchPartsTest::commandLines_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<int>("exitCode"); // -1 to go on
    QTest::addColumn<QString>("words");
    const auto row = [](const QByteArray &arguments, int exitCode, const char *words) {
        QTest::newRow(arguments.constData())
            << QString::fromLatin1(arguments) << exitCode << QString::fromLatin1(words);
    };
    row("-h", 0, "Exit code");
    row("--version", 0, "nox-fetch 1.");
    row("", 2, "at least one");
    row("--tool-version", -1, "");
    row("http://a/ HTTP://b/ www.c", -1, "");
    row("http://a/ ftp://b/", 2, "\"ftp://b/\"");
    row("--nonsense http://a/", 2, "nonsense");
    row("-f", 2, "value");
    row("-f= http://a/", 2, "--format needs");
    for (const char *pair : {"-l --json", "-A 1 --no-audio", "-f 1 --max-height 9", "--mp3 -A 1", "--items all -o x",
                             "-v -q", "-a - -o x"})
        row(QByteArray(pair) + " http://a/", 2, "exclude");
    for (const char *lines : {"-5", "720p"})
        row(QByteArray("http://a/ --max-height ") + lines, 2, "720");
    for (const char *items : {"0", "5-2", "1,,2", "99999999"})
        row(QByteArray("http://a/ --items ") + items, 2, "2,5-7");
    row("-a /none/list", 2, "\"/none/list\" cannot be read: No such file");
    row("-l -o /none/x http://a/", -1, "");
    row("-o - http://a/", 2, "name a file");
    row("-o / http://a/", 2, "--folder");
    row("-o x http://a/ http://b/", 2, "--folder");
    row("-P /none http://a/", 2, "does not exist");
    row("-P /none -o x http://a/", 2, "does not exist");
}

void FetchPartsTest::commandLines()
{
    QFETCH(QString, arguments);
    QFETCH(QString, words);
    const QStringList split = arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const CommandLine line = CommandLine::read(QStringList("nox-fetch"_s) + split);
    QTEST(line.exitCode.value_or(-1), "exitCode");
    QVERIFY2(line.text.contains(words), qPrintable(line.text));
}

void FetchPartsTest::paths()
{
    const QString line = "nox-fetch -P / -o out --tool t --pycache p HTTPS://a/"_s;
    const Options options = CommandLine::read(line.split(QLatin1Char(' '))).options;
    QCOMPARE(QStringList({options.output, options.toolFile, options.pycacheFolder}) + options.urls,
             QStringList({"/out"_s, "t"_s, "p"_s, "https://a/"_s}));
}

void FetchPartsTest::items()
{
    const auto chosen = [](const char *text, int count) {
        const auto selection = ItemSelection::fromText(QLatin1String(text));
        QString numbers;
        for (int number = selection->next(0); number > 0 && number <= count; number = selection->next(number))
            numbers += QString::number(number) + QLatin1Char(' ');
        return numbers.trimmed();
    };
    QCOMPARE(chosen("all", 4), "1 2 3 4"_s);
    QCOMPARE(chosen("2,5-7", 12), "2 5 6 7"_s);
    QCOMPARE(chosen("9-11, 1,2-10", 10), "1 2 3 4 5 6 7 8 9 10"_s);
    QCOMPARE(ItemSelection::fromText("2,1-9000000"_s)->last().value_or(0), 9000000);
    QVERIFY(!ItemSelection::fromText("all"_s)->last());
}

// Comments, empty lines, a byte order mark and the ends of lines of another system; what is no address stays one line.
void FetchPartsTest::addressFile()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("list"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("\xef\xbb\xbf# ours\r\nhttp://a/#b\r\n\n  www.c \n #http://d/\nno address\n\nhttp://e/");
    file.close();
    const AddressFile read = AddressFile::read(file.fileName());
    QCOMPARE(read.urls.mid(0, 3), (QStringList{"http://a/#b"_s, "https://www.c"_s, "no address"_s}));
    QCOMPARE(read.urls.last(), "http://e/"_s);
    QVERIFY(AddressFile::read(folder.path()).errorString.contains("cannot be read"_s));
    QVERIFY(file.resize(20 * 1024 * 1024) && AddressFile::read(file.fileName()).errorString.contains("too large"_s));
    QVERIFY(file.resize(0));
    for (const QStringList &more : {QStringList("http://a/"_s), {"--max-height"_s, "5"_s}}) {
        const CommandLine line = CommandLine::read(QStringList{"nox-fetch"_s, "-a"_s, file.fileName()} + more);
        QCOMPARE(line.exitCode.value_or(-1), 2);
        QVERIFY2(line.text.contains("holds no address"_s), qPrintable(line.text));
    }
    for (const QStringList &audio : {QStringList{"-a"_s, "140"_s}, {"-a140"_s}, {"-A"_s, "140"_s}})
        QCOMPARE(CommandLine::read(QStringList("nox-fetch"_s) + audio + QStringList("http://a/"_s)).options.audioCode,
                 "140"_s);
}

// The manual page and the completion know the options that the program has, and no others.
void FetchPartsTest::documents()
{
    const auto optionsIn = [](QString text) {
        text.replace(R"(\-)"_s, "-"_s); // as the manual page writes it
        static const QRegularExpression option(R"((?<![\w-])--?[A-Za-z][a-z-]*)"_s);
        QSet<QString> options;
        for (auto matches = option.globalMatch(text); matches.hasNext();)
            options += matches.next().captured();
        return options;
    };
    const auto content = [](const char *name) {
        QFile file(QStringLiteral(NOX_FETCH_SOURCES "/") + QLatin1String(name));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    };
    const QString help = CommandLine::read({"nox-fetch"_s, "--help"_s}).text;
    const QSet<QString> options = optionsIn(help.mid(help.indexOf("\nOptions:"_s)));
    QVERIFY(options.size() > 15);
    QString manual = content("nox-fetch.1");
    QCOMPARE(optionsIn(manual.mid(manual.indexOf(".SH OPTIONS"_s))), options);
    QString completion = content("nox-fetch.bash");
    completion = completion.mid(completion.indexOf("compgen -W"_s));
    QCOMPARE(optionsIn(completion.section(QLatin1Char('"'), 1, 1)), options);
}

// As bash calls it: "=" is a word of its own.
void FetchPartsTest::completion()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkpath("my videos"_s));
    QVERIFY(QFile(folder.filePath("my file"_s)).open(QIODevice::WriteOnly));
    const auto completed = [&folder](const char *words) {
        QProcess bash;
        bash.setWorkingDirectory(folder.path());
        const QString script = QStringLiteral(". '" NOX_FETCH_SOURCES "/nox-fetch.bash'; COMP_WORDS=(nox-fetch %1)"
                                              " COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _nox_fetch; "
                                              "IFS='|'; echo -n \"${COMPREPLY[*]}\"")
                                   .arg(QLatin1String(words));
        bash.start("bash"_s, {"-c"_s, script});
        return bash.waitForFinished() ? QString::fromUtf8(bash.readAllStandardOutput()) : "no end"_s;
    };
    QCOMPARE(completed("--fo"), "--format|--folder"_s);
    QCOMPARE(completed("-P m"), "my videos"_s);
    QCOMPARE(completed("-o my\\ f"), "my file"_s);
    QCOMPARE(completed("--folder ="), "my videos"_s);
    QCOMPARE(completed("--tool = my\\ f"), "my file"_s);
    QCOMPARE(completed("-f m"), QString());
    QCOMPARE(completed("-a my\\ f"), "my file"_s);
}

void FetchPartsTest::statusLines()
{
    const QString video = "video"_s;
    const TransferFigures half(2000, 1000, 100);
    QCOMPARE(statusLine(video, {}, 80, 5), "video /"_s);
    QCOMPARE(statusLine(video, half, 80, 0),
             "video      50% [############------------] 1.0 kB / 2.0 kB  100 bytes/s  0:00:10"_s);
    for (const int width : {1, 10, 40, 60, 200})
        QVERIFY(statusLine(video, half, width, 0).size() < width);
    QCOMPARE(statusLine(video, TransferFigures(0, 1000, 100), 80, 0), "video  1.0 kB  100 bytes/s |"_s);
    QCOMPARE(plainLine(video, TransferFigures(0, 1000, 0)), "video  1.0 kB"_s);
    QCOMPARE(plainLine(video, TransferFigures::ofTime(20000, 10000, 500)),
             "video  50%  0:00:10 / 0:00:20  0.5x  0:00:20 left"_s);
    QCOMPARE(plainLine(video, half), "video  50%  1.0 kB / 2.0 kB  100 bytes/s  0:00:10 left"_s);
}

QTEST_GUILESS_MAIN(FetchPartsTest)
#include "FetchPartsTest.moc"
