#pragma once

#include "hosts/common/LibraryLog.h"
#include "hosts/fetch/ItemLister.h"
#include "hosts/fetch/Options.h"
#include "hosts/fetch/PageRun.h"

#include <nox/jobs/ToolSetup.h>
#include <nox/jobs/ToolVersionJob.h>

#include <QObject>
#include <QStringList>

#include <memory>

namespace NoxFetch {

class Console;

/** One run of the program: handles the pages one after the other, or prints the tool's version. */
class FetchApp : public QObject
{
    Q_OBJECT

public:
    FetchApp(const Options &options, Console &console, QObject *parent = nullptr);

    /** Starts; ended() follows. */
    void start();

    /** Stops the current work; ended() follows. */
    void interrupt();

Q_SIGNALS:
    /** The work is over, with or without success. */
    void ended(int exitCode);

private:
    void startNext();
    void startAddress();
    void startItem();
    void startPage(const PageRun::Task &task);
    void onPageEnded(int exitCode);
    void onListed();
    bool showItems();
    void count(const QString &url, int exitCode, const QString &message = {});
    void refuse(const QString &url, int exitCode, const QString &message, const QString &details = {});
    void finish();
    void askVersion();
    void onVersion();
    void fail(int exitCode, const QString &message, const QString &details = {});

    Options m_options;
    Console &m_console;
    NoxHost::LibraryLog m_log;
    Nox::ToolSetup m_tools;
    Nox::ToolVersionJob m_version;
    std::unique_ptr<PageRun> m_page;
    PageRun::Task m_task;                 // of m_page
    std::unique_ptr<ItemLister> m_lister; // for the last address, if several of its videos are requested
    QList<Nox::PlaylistEntry> m_items;    // listed, but not started
    int m_addressNumber = 0;              // number of the last address, from 1
    int m_doneCount = 0;
    QStringList m_failures; // one line per failed page
    bool m_isInterrupted = false;
    bool m_hasStopped = false; // whether the last job was interrupted
    int m_exitCode = 0;        // of the first failed page
};

} // namespace NoxFetch
