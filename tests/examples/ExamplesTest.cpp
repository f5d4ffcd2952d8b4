#include "tests/support/DemoPage.h"
#include "tests/support/TestMain.h"
#include "tests/util/Files.h"
#include "tests/util/Rows.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <memory>

/** The examples with the real tool and the real ffmpeg, on a page that is served on the loopback address. */
class ExamplesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void commands_data();
    void commands();
    void windows_data();
    void windows();

private:
    std::unique_ptr<QProcess> start(const QString &example, const QStringList &arguments) const;
    static QString names(const QString &folder) { return Files::names(folder).join(QLatin1Char('|')); }

    static constexpr int Timeout = 120000; // milliseconds; only a failing test waits so long

    QTemporaryDir m_root;
    DemoPage m_page;
};

void ExamplesTest::initTestCase()
{
    QVERIFY(m_page.serve());
}

/** The example, copied beside this program, where the external programs are; with a home and a folder of its own. */
std::unique_ptr<QProcess> ExamplesTest::start(const QString &example, const QStringList &arguments) const
{
    const QString program = QCoreApplication::applicationDirPath() + "/"_s + example;
    QFile::remove(program);
    if (!QFile::copy(QStringLiteral(NOX_EXAMPLES) + "/%1/%1"_s.arg(example), program))
        return nullptr;
    const QString home = m_root.filePath(example);
    QDir().mkpath(home + "/Videos"_s);
    qputenv("HOME", QFile::encodeName(home));
    qputenv("QT_QUICK_BACKEND", "software"); // a machine for tests has no OpenGL
    for (const char *name : {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
        qputenv(name, QFile::encodeName(home) + '/' + name);
    auto process = std::make_unique<QProcess>();
    process->setWorkingDirectory(home + "/Videos"_s);
    process->start(program, arguments);
    return process;
}

void ExamplesTest::commands_data()
{
    rows(
        {"example", "arguments", "exitCode", "line", "files"},
        {
            R"(titles -> PAGE -> 0 -> Open the café/bar\? A clip in two streams.* -> )"_s,
            R"(titles -> PAGEmissing -> 1 ->  -> )"_s,
            R"(record -> PAGE -> 0 -> Open the café/bar\? A clip in two streams.* -> )"_s,
            R"(record -> PAGEmissing -> 1 ->  -> )"_s,
            R"(download -> PAGE clip.mp4 -> 0 -> done: clip\.mp4 -> clip\.mp4)"_s,
            R"(save -> PAGEmissing -> 1 -> [^|]*(page|address)[^|]*\. -> )"_s,
            R"(save -> PAGE -> 0 -> .*Open the café bar.*\.mp4 -> Open the café bar[^|]*\.mp4)"_s,
            R"(queue -> PAGE PAGEmissing -> 0 -> Open the café bar.*\.mp4: Finished, .* -> Open the café bar[^|]*\.mp4)"_s,
        });
}

void ExamplesTest::commands()
{
    QFETCH(QString, example);
    QFETCH(QString, arguments);
    const auto process = start(example, arguments.replace("PAGE"_s, m_page.url()).split(QLatin1Char(' ')));
    QVERIFY(process);
    QVERIFY(process->waitForFinished(Timeout));
    const QString output = QString::fromUtf8(process->readAllStandardOutput());
    const QString said = output + QString::fromUtf8(process->readAllStandardError());
    QVERIFY2(process->exitStatus() == QProcess::NormalExit, qPrintable(said));
    QTEST(QString::number(process->exitCode()), "exitCode");
    QFETCH(QString, files);
    const auto matches = [](const QString &pattern, const QString &text) {
        return QRegularExpression(QRegularExpression::anchoredPattern(pattern)).match(text).hasMatch();
    };
    QFETCH(QString, line);
    QVERIFY2(matches(line, output.trimmed().section(QLatin1Char('\n'), -1)), qPrintable(said));
    const QString folder = process->workingDirectory();
    QVERIFY2(matches(files, names(folder)), qPrintable(names(folder)));
    if (!files.isEmpty())
        QCOMPARE(DemoPage::codecs(folder + "/"_s + names(folder)), QByteArray("h264\naac\n"));
}

void ExamplesTest::windows_data()
{
    rows({"example"}, {"window"_s, "quick"_s});
}

void ExamplesTest::windows()
{
    QFETCH(QString, example);
    if (!QFile::exists(QStringLiteral(NOX_EXAMPLES) + "/%1/%1"_s.arg(example)))
        QSKIP("Qt Quick Controls 2 was not found");
    const auto process = start(example, {m_page.url()});
    QVERIFY(process);
    const QString folder = process->workingDirectory();
    const QRegularExpression file(R"(\AOpen the café bar[^|]*\.mp4\z)"_s); // and nothing beside it
    QTRY_VERIFY_WITH_TIMEOUT(names(folder).contains(file) || process->state() == QProcess::NotRunning, Timeout);
    const bool goesOn = process->state() == QProcess::Running;
    process->kill();
    process->waitForFinished(Timeout);
    QVERIFY2(goesOn && names(folder).contains(file), process->readAllStandardError().constData());
    QCOMPARE(process->readAllStandardError(), QByteArray());
    QCOMPARE(DemoPage::codecs(folder + "/"_s + names(folder)), QByteArray("h264\naac\n"));
}

NOX_TEST_MAIN(ExamplesTest)
#include "ExamplesTest.moc"
