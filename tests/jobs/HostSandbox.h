#pragma once

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/**
 * A home of its own for one test: settings, caches and videos in a temporary folder, and stand-in
 * programs in the folder of the test program. Ends what its stand-ins left running.
 */
class HostSandbox
{
public:
    HostSandbox();
    ~HostSandbox();

    QString path(const QString &name) const { return m_root.filePath(name); }
    QString videos() const { return path(QStringLiteral("Videos")); } ///< where files are proposed
    QString video(const QString &name) const { return videos() + QLatin1Char('/') + name; } ///< a file there

    /** What the stand-ins play from now on. */
    static void play(const QString &scenario) { qputenv("NOX_SCENARIO", scenario.toUtf8()); }

    /** A page description for play(): a video with sound, DASH videos, audio; titled "Clip". */
    static QString pageScenario();

    /** Plays that page, and then what is given. */
    static void playPage(const QString &more) { play(pageScenario() + QLatin1Char('\n') + more); }

    static void installStandIns();

    void let(const QString &mark) const;  ///< lets stand-ins go on that wait for the mark
    bool hangs(const QString &key) const; ///< whether the stand-in with that key has come to its hang
    int runCount() const;                 ///< of stand-ins so far
    bool isQuiet() const;                 ///< no stand-in runs, and this process has no child
    QStringList files() const;            ///< in videos(), hidden ones and folders, too

    static constexpr int Timeout = 30000; ///< milliseconds; only a failing test waits so long

private:
    QList<qint64> pids() const;

    QByteArray m_temporaryFolder;
    QTemporaryDir m_root;
};
