#pragma once

#include "tests/support/LogFile.h"

#include <nox/front/WebMediaDownloaderFactory.h>

#include <QCoreApplication>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

/**
 * The surroundings of one test: folders, fake programs in the application folder, a log, and notes of the fakes about
 * their starts. Sets TMPDIR and the working directory while it exists, and ends the processes of its fakes.
 */
class TestSandbox
{
public:
    enum Program { Interpreter, Ffmpeg };
    enum Condition { StandIn, Real, Missing, NotExecutable };

    struct Run {
        QString key; ///< format code, "dump", "ffmpeg", or "child" for a process that a fake started
        qint64 pid;
        QStringList arguments;
    };

    TestSandbox();
    ~TestSandbox();

    QString path(const QString &name) const { return m_root.filePath(name); }
    /** The destination folder, also the working folder. Its name holds a blank. */
    QString folder() const { return path(QStringLiteral("my videos")); }
    /** The fake as a tool file for a real interpreter. */
    QString tool() const { return path(QStringLiteral("yt.zip")); }

    template <typename Worker>
    std::unique_ptr<Worker> make() const
    {
        auto *const factory = Nox::WebMediaDownloaderFactory::instance();
        if constexpr (std::is_same_v<Worker, Nox::WebMediaDownloader>)
            return std::unique_ptr<Worker>(factory->createDownloader(tool(), path(QStringLiteral("cache"))));
        else
            return std::unique_ptr<Worker>(factory->createExtractor(tool(), path(QStringLiteral("cache"))));
    }

    /** Sets the scenario of the fakes; keys that are not named play a successful run. */
    void play(const QString &scenario) { qputenv("NOX_SCENARIO", scenario.toUtf8()); }
    static void provide(Program program, Condition condition,
                        const QString &appFolder = QCoreApplication::applicationDirPath());

    /** Copies a small host program, with the fakes, into a folder. It runs one JOB: see TestHost.cpp. */
    static QString provideHost(const QString &appFolder);

    void mark(const QString &name);
    bool isMarked(const QString &name) const { return QFile::exists(path(QStringLiteral("notes/mark.") + name)); }
    bool hangs(const QString &key) const { return isMarked(QStringLiteral("hang.") + key); }

    QList<Run> runs() const;
    QStringList keys() const;                        ///< keys of all runs, in order
    QStringList arguments(const QString &key) const; ///< of the first run with that key
    bool isQuiet() const;                            ///< no process of a fake runs, and this process has no child

    /** Names and contents of the files in folder(): "name=content, name=content". */
    QString files() const;
    void putFile(const QString &name);

    /** A file of the user outside folder(), and whether all of these are unchanged. */
    void putFileElsewhere(const QString &name);
    bool isElsewhereUntouched() const;

    /** Records of the log; folders as DIR, APP and ROOT, the unique names of the items as {1} and {2}. */
    QStringList records(Nox::_NoxLogLevel lowest, bool withSource = false) const;
    QString errors() const { return records(Nox::LOG_ERROR).join(QLatin1Char('|')); } ///< from LOG_ERROR up
    QString plain(QString text) const;

    static constexpr int Timeout = 30000;       ///< longest wait in milliseconds, which only a failing test reaches
    static constexpr int GraceAfterKill = 2000; ///< milliseconds after which a stopped program must have ended

private:
    QByteArray m_tmpdir = qgetenv("TMPDIR");
    QString m_workingFolder;
    QTemporaryDir m_root;
    LogFile m_log;
    QStringList m_elsewhere;
};
