#include "tests/jobs/HostSandbox.h"

#include "tests/support/Processes.h"
#include "tests/util/Files.h"
#include "tests/util/Rows.h"

#include <QCoreApplication>
#include <QSettings>

#include <algorithm>

HostSandbox::HostSandbox()
{
    m_temporaryFolder = qgetenv("TMPDIR");
    for (const char *name : {"Videos", "config", "cache", "notes", "tmp"})
        QDir(m_root.path()).mkdir(QString::fromLatin1(name));
    qputenv("HOME", QFile::encodeName(m_root.path()));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(path("config"_s)));
    qputenv("XDG_CACHE_HOME", QFile::encodeName(path("cache"_s)));
    qputenv("XDG_DATA_HOME", QFile::encodeName(path("data"_s)));
    qputenv("TMPDIR", QFile::encodeName(path("tmp"_s)));
    qputenv("NOX_STAGE", QFile::encodeName(path("notes"_s)));
    // Qt reads XDG_CONFIG_HOME once, so that later settings would bring back the folder of the first sandbox.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, path("config"_s));
    play(pageScenario());
}

HostSandbox::~HostSandbox()
{
    const QList<qint64> all = pids();
    std::for_each(all.cbegin(), all.cend(), Processes::end);
    qputenv("TMPDIR", m_temporaryFolder); // the one of this sandbox goes
}

QString HostSandbox::pageScenario()
{
    return R"(dump: out {"title":"Clip","duration":3725,"formats":[)"
           R"({"format_id":"140","ext":"m4a","vcodec":"none","acodec":"mp4a","abr":128},)"
           R"({"format_id":"251","ext":"webm","vcodec":"none","acodec":"opus","abr":160},)"
           R"({"format_id":"18","ext":"mp4","vcodec":"avc1","acodec":"mp4a","width":640,"height":360},)"
           R"({"format_id":"136","ext":"mp4","vcodec":"avc1","acodec":"none","width":1280,"height":720},)"
           R"({"format_id":"298","ext":"mp4","vcodec":"avc1","acodec":"none","width":1280,"height":720},)"
           R"({"format_id":"137","ext":"mp4","vcodec":"avc1","acodec":"none","width":1920,"height":1080}]})"_s;
}

void HostSandbox::installStandIns()
{
    const QDir programs(QCoreApplication::applicationDirPath());
    programs.mkpath("python3.10/bin"_s);
    for (const char *name : {"python3.10/bin/python3.10", "ffmpeg", "yt.zip"})
        QFile::link(QStringLiteral(NOX_FAKE_PROGRAM), programs.filePath(QString::fromLatin1(name)));
}

void HostSandbox::let(const QString &mark) const
{
    Files::write(path("notes/mark."_s + mark));
}

bool HostSandbox::hangs(const QString &key) const
{
    return QFile::exists(path("notes/mark.hang."_s + key));
}

QList<qint64> HostSandbox::pids() const
{
    QList<qint64> result;
    const QByteArrayList lines = Files::content(path("notes/runs"_s)).split('\n');
    for (const QByteArray &line : lines) {
        if (!line.isEmpty())
            result += line.split('\x1f').value(1).toLongLong();
    }
    return result;
}

int HostSandbox::runCount() const
{
    return static_cast<int>(pids().size());
}

bool HostSandbox::isQuiet() const
{
    const QList<qint64> all = pids();
    return std::none_of(all.cbegin(), all.cend(), Processes::isRunning) && Processes::children().isEmpty();
}

QStringList HostSandbox::files() const
{
    return Files::names(videos());
}
