#include "hosts/fetch/AddressFile.h"
#include "hosts/fetch/Options.h"
#include "hosts/fetch/ProgressLine.h"
#include "tests/util/Files.h"
#include "tests/util/Rows.h"

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
    void addressFile();
    void documents();
    void completion();
    void statusLines();
};

void FetchPartsTest::addressFile()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath("list"_s);
    Files::write(file);
    QVERIFY(AddressFile::read(file).errorString.contains("holds no address"_s));
    QVERIFY(QFile::resize(file, 20 * 1024 * 1024));
    QVERIFY(AddressFile::read(file).errorString.contains("too large"_s));
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
        return QString::fromUtf8(Files::content(QStringLiteral(NOX_FETCH_SOURCES "/") + QLatin1String(name)));
    };
    QCOMPARE(CommandLine::read({"nox-fetch"_s}).exitCode.value_or(-1), 2);
    QCOMPARE(CommandLine::read({"nox-fetch"_s, "--version"_s}).exitCode.value_or(-1), 0);
    const CommandLine help = CommandLine::read({"nox-fetch"_s, "-h"_s});
    QCOMPARE(help.exitCode.value_or(-1), 0);
    const QSet<QString> options = optionsIn(help.text.mid(help.text.indexOf("\nOptions:"_s)));
    QVERIFY(options.size() > 15);
    const QString manual = content("nox-fetch.1");
    QCOMPARE(optionsIn(manual.mid(manual.indexOf(".SH OPTIONS"_s))), options);
    const QString completion = content("nox-fetch.bash").section("compgen -W"_s, 1);
    QCOMPARE(optionsIn(completion.section(QLatin1Char('"'), 1, 1)), options);
}

// As bash calls it: "=" is a word of its own.
void FetchPartsTest::completion()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkpath("my videos"_s));
    Files::write(folder.filePath("my file"_s));
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
    QCOMPARE(plainLine(video, TransferFigures(0, 1000, 0)), "video  1.0 kB"_s);
    QCOMPARE(plainLine(video, TransferFigures::ofTime(20000, 10000, 500)),
             "video  50%  0:00:10 / 0:00:20  0.5x  0:00:20 left"_s);
}

QTEST_GUILESS_MAIN(FetchPartsTest)
#include "FetchPartsTest.moc"
