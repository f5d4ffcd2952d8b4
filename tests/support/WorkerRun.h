#pragma once

#include "tests/support/Setup.h"
#include "tests/support/SignalLog.h"
#include "tests/support/TestSandbox.h"

#include <QCoreApplication>
#include <QtTest>

#include <memory>
#include <type_traits>

/** A worker in a sandbox of its own, and its notifications; nothing runs before start(). */
template <typename Worker>
struct WorkerRun {
    /**
     * @param setupText the setup of a table, see WorkerTable
     * @param scenario  the scenario of the fakes; ROOT in it is the folder around the destination's
     */
    explicit WorkerRun(const QString &setupText = {}, QString scenario = {})
        : setup(setupText, sandbox)
        , log(worker.get())
    {
        sandbox.play(scenario.replace(QStringLiteral("ROOT"), sandbox.path(QString())));
    }

    /** Begins what the setup describes; an extraction is a notifying one. */
    void start()
    {
        if constexpr (isDownload)
            worker->download(Setup::url(), setup.profile(), setup.destination());
        else
            worker->getMediaInfoBySignal(Setup::url());
    }

    /** All notifications when @p expected has come, no process is left, and the event queue is empty. */
    QString finalText(const QString &expected) const
    {
        static_cast<void>(
            QTest::qWaitFor([&] { return log.text() == expected && sandbox.isQuiet(); }, TestSandbox::Timeout));
        QCoreApplication::processEvents();
        return log.text();
    }

    static constexpr bool isDownload = std::is_same_v<Worker, Nox::WebMediaDownloader>;

    TestSandbox sandbox;
    const Setup setup;
    std::unique_ptr<Worker> worker = sandbox.make<Worker>();
    const SignalLog log;
};

using DownloadRun = WorkerRun<Nox::WebMediaDownloader>;
using ExtractRun = WorkerRun<Nox::WebMediaInfoExtractor>;
