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

/** One run of the program: the pages one after the other, or the tool's version. */
class FetchApp : public QObject
{
    Q_OBJECT

public:
    FetchApp(const Options &options, Console &console, QObject *parent = nullptr);

    /** Begins; ended() follows. */
    void start();

    /** Stops whatever runs; ended() follows. */
    void interrupt();

Q_SIGNALS:
    /** All is done, for better or worse. */
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
    std::unique_ptr<ItemLister> m_lister; // of the last address, where videos of it are asked for
    QList<Nox::PlaylistEntry> m_items;    // those that have been listed and not begun
    int m_addressNumber = 0;              // of the last address, counted from 1
    int m_doneCount = 0;
    QStringList m_failures; // one line for each page that failed
    bool m_isInterrupted = false;
    bool m_hasStopped = false; // what ran last, for that
    int m_exitCode = 0;        // of the first page that failed
};

} // namespace NoxFetch
