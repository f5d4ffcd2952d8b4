#include "tests/desk/DeskSandbox.h"

#include "tests/support/Processes.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSettings>

#include <algorithm>

DeskSandbox::DeskSandbox()
{
    m_temporaryFolder = qgetenv("TMPDIR");
    for (const char *name : {"Videos", "config", "cache", "notes", "tmp"})
        QDir(m_root.path()).mkdir(QString::fromLatin1(name));
    qputenv("HOME", QFile::encodeName(m_root.path()));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(path(QStringLiteral("config"))));
    qputenv("XDG_CACHE_HOME", QFile::encodeName(path(QStringLiteral("cache"))));
    qputenv("XDG_DATA_HOME", QFile::encodeName(path(QStringLiteral("data"))));
    qputenv("TMPDIR", QFile::encodeName(path(QStringLiteral("tmp"))));
    qputenv("NOX_STAGE", QFile::encodeName(path(QStringLiteral("notes"))));
    // Qt reads XDG_CONFIG_HOME once, so that later settings would bring back the folder of the first sandbox.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, path(QStringLiteral("config")));
    play(pageScenario());
}

DeskSandbox::~DeskSandbox()
{
    const QList<qint64> all = pids();
    std::for_each(all.cbegin(), all.cend(), Processes::end);
    qputenv("TMPDIR", m_temporaryFolder); // the one of this sandbox goes
}

QString DeskSandbox::path(const QString &name) const
{
    return m_root.filePath(name);
}

QString DeskSandbox::videos() const
{
    return path(QStringLiteral("Videos"));
}

void DeskSandbox::play(const QString &scenario)
{
    qputenv("NOX_SCENARIO", scenario.toUtf8());
}

QString DeskSandbox::pageScenario()
{
    return QStringLiteral(
        R"(dump: out {"title":"Clip","duration":3725,"formats":[)"
        R"({"format_id":"140","ext":"m4a","vcodec":"none","acodec":"mp4a","abr":128},)"
        R"({"format_id":"251","ext":"webm","vcodec":"none","acodec":"opus","abr":160},)"
        R"({"format_id":"18","ext":"mp4","vcodec":"avc1","acodec":"mp4a","width":640,"height":360},)"
        R"({"format_id":"136","ext":"mp4","vcodec":"avc1","acodec":"none","width":1280,"height":720},)"
        R"({"format_id":"298","ext":"mp4","vcodec":"avc1","acodec":"none","width":1280,"height":720},)"
        R"({"format_id":"137","ext":"mp4","vcodec":"avc1","acodec":"none","width":1920,"height":1080}]})");
}

void DeskSandbox::installStandIns()
{
    const QDir programs(QCoreApplication::applicationDirPath());
    programs.mkpath(QStringLiteral("python3.10/bin"));
    for (const char *name : {"python3.10/bin/python3.10", "ffmpeg", "yt.zip"})
        QFile::link(QStringLiteral(NOX_FAKE_PROGRAM), programs.filePath(QString::fromLatin1(name)));
}

void DeskSandbox::removeFfmpeg()
{
    QFile::remove(QCoreApplication::applicationDirPath() + QStringLiteral("/ffmpeg"));
}

void DeskSandbox::let(const QString &mark) const
{
    QFile(path(QStringLiteral("notes/mark.") + mark)).open(QIODevice::WriteOnly);
}

bool DeskSandbox::hangs(const QString &key) const
{
    return QFile::exists(path(QStringLiteral("notes/mark.hang.") + key));
}

QList<qint64> DeskSandbox::pids() const
{
    QList<qint64> result;
    QFile file(path(QStringLiteral("notes/runs")));
    if (file.open(QIODevice::ReadOnly)) {
        const QByteArrayList lines = file.readAll().split('\n');
        for (const QByteArray &line : lines) {
            if (!line.isEmpty())
                result += line.split('\x1f').value(1).toLongLong();
        }
    }
    return result;
}

int DeskSandbox::runCount() const
{
    return static_cast<int>(pids().size());
}

bool DeskSandbox::isQuiet() const
{
    const QList<qint64> all = pids();
    return std::none_of(all.cbegin(), all.cend(), Processes::isRunning) && Processes::children().isEmpty();
}

QStringList DeskSandbox::files() const
{
    return QDir(videos()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}
