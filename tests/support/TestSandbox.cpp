#include "tests/support/TestSandbox.h"

#include "tests/support/Processes.h"
#include "tests/util/Files.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <algorithm>
#include <cstdio>

using namespace Nox;

TestSandbox::TestSandbox()
    : m_workingFolder(QDir::currentPath())
    , m_log(path(QStringLiteral("library.log")))
{
    for (const char *name : {"my videos", "tmp", "notes"})
        QDir().mkpath(path(QLatin1String(name)));
    QFile::link(QStringLiteral(NOX_FAKE_PROGRAM), tool());
    QDir::setCurrent(folder());
    qputenv("TMPDIR", path(QStringLiteral("tmp")).toLocal8Bit());
    qputenv("NOX_STAGE", path(QStringLiteral("notes")).toLocal8Bit());
    play(QString());
    provide(Interpreter, StandIn);
    provide(Ffmpeg, StandIn);
}

TestSandbox::~TestSandbox()
{
    for (const Run &run : runs())
        Processes::end(run.pid);
    QFile::setPermissions(folder(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner); // a run may lock it
    QDir::setCurrent(m_workingFolder);
    if (m_tmpdir.isNull())
        qunsetenv("TMPDIR");
    else
        qputenv("TMPDIR", m_tmpdir);
}

void TestSandbox::provide(Program program, Condition condition, const QString &appFolder)
{
    const QString file =
        appFolder + (program == Ffmpeg ? QStringLiteral("/ffmpeg") : QStringLiteral("/python3.10/bin/python3.10"));
    QDir().mkpath(QFileInfo(file).path());
    const QString next = file + QStringLiteral(".next");
    if (condition == Missing)
        QFile::remove(file);
    else if (condition == NotExecutable)
        Files::write(next);
    else if (condition == StandIn)
        QFile::link(QStringLiteral(NOX_FAKE_PROGRAM), next);
    else
        QFile::link(program == Ffmpeg ? QStringLiteral("/usr/bin/ffmpeg") : QStringLiteral("/usr/bin/python3"), next);
    // In one step: a process that has just been started may not have found its program yet.
    if (condition != Missing
        && std::rename(QFile::encodeName(next).constData(), QFile::encodeName(file).constData()) != 0)
        qFatal("cannot provide %s", qPrintable(file));
}

QString TestSandbox::provideHost(const QString &appFolder)
{
    provide(Interpreter, StandIn, appFolder);
    provide(Ffmpeg, StandIn, appFolder);
    const QString host = appFolder + QStringLiteral("/host");
    if (!QFile::copy(QStringLiteral(NOX_TEST_HOST), host))
        qFatal("cannot copy the host program to %s", qPrintable(host));
    return host;
}

void TestSandbox::mark(const QString &name)
{
    Files::write(path(QStringLiteral("notes/mark.") + name));
}

QList<TestSandbox::Run> TestSandbox::runs() const
{
    QList<Run> result;
    const QString all = QString::fromUtf8(Files::content(path(QStringLiteral("notes/runs"))));
    const QStringList lines = all.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        const QStringList parts = line.split(QLatin1Char('\x1f'));
        result.append({parts.value(0), parts.value(1).toLongLong(), parts.mid(2)});
    }
    return result;
}

QStringList TestSandbox::keys() const
{
    QStringList result;
    for (const Run &run : runs())
        result.append(run.key);
    return result;
}

QStringList TestSandbox::arguments(const QString &key) const
{
    const QList<Run> all = runs();
    const auto found = std::find_if(all.begin(), all.end(), [&key](const Run &run) { return run.key == key; });
    return found == all.end() ? QStringList{QStringLiteral("not run: ") + key} : found->arguments;
}

bool TestSandbox::isQuiet() const
{
    const QList<Run> all = runs();
    return std::none_of(all.begin(), all.end(), [](const Run &run) { return Processes::isRunning(run.pid); })
        && Processes::children().isEmpty();
}

QString TestSandbox::files() const
{
    QStringList result;
    const QFileInfoList infos = QDir(folder()).entryInfoList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QFileInfo &info : infos) {
        const QString text = QString::fromUtf8(Files::content(info.filePath()));
        const QString content = info.isSymLink() ? QStringLiteral("link") : text;
        result.append(plain(info.fileName() + QLatin1Char('=') + content));
    }
    result.sort();
    return result.join(QStringLiteral(", "));
}

void TestSandbox::putFile(const QString &name)
{
    Files::write(folder() + QLatin1Char('/') + name, "old");
}

void TestSandbox::putFileElsewhere(const QString &name)
{
    m_elsewhere.append(path(name));
    Files::write(path(name), "old");
}

bool TestSandbox::isElsewhereUntouched() const
{
    return std::all_of(m_elsewhere.begin(), m_elsewhere.end(),
                       [](const QString &name) { return Files::content(name) == "old"; });
}

QStringList TestSandbox::records(_NoxLogLevel lowest, bool withSource) const
{
    QStringList result;
    for (const QString &record : m_log.records(lowest, withSource)) {
        const QString text = plain(record);
        if (!text.trimmed().endsWith(QLatin1String(": ~")) || !result.endsWith(text)) // a flood counts as one
            result.append(text);
    }
    return result;
}

QString TestSandbox::plain(QString text) const
{
    static const QRegularExpression unique(QStringLiteral("\\{[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}\\}"));
    static const QRegularExpression flood(QStringLiteral("~~+"));
    text.replace(folder(), QStringLiteral("DIR")).replace(m_root.path(), QStringLiteral("ROOT"));
    text.replace(QCoreApplication::applicationDirPath(), QStringLiteral("APP"));
    int number = 0;
    for (const Run &run : runs()) {
        const QRegularExpressionMatch match = unique.match(run.arguments.join(QLatin1Char(' ')));
        if (match.hasMatch() && run.key != QLatin1String("ffmpeg"))
            text.replace(match.captured(), QStringLiteral("{%1}").arg(++number));
    }
    return text.replace(flood, QStringLiteral("~"));
}
