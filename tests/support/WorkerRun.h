#pragma once

#include "tests/support/Setup.h"
#include "tests/support/SignalLog.h"
#include "tests/support/TestSandbox.h"

#include <memory>
#include <type_traits>

/** A worker in a sandbox of its own, and its notifications; nothing runs before start(). */
template <typename Worker>
struct WorkerRun {
    /**
     * @param words     the setup of a table, see WorkerTable
     * @param scenario  what the stand-ins play; ROOT in it is the folder around the destination's
     */
    explicit WorkerRun(const QString &words = {}, QString scenario = {})
        : setup(words, stage)
        , log(worker.get())
    {
        stage.play(scenario.replace(QStringLiteral("ROOT"), stage.path(QString())));
    }

    /** Begins what the setup describes; an extraction is a notifying one. */
    void start()
    {
        if constexpr (isDownload)
            worker->download(Setup::url(), setup.profile(), setup.destination());
        else
            worker->getMediaInfoBySignal(Setup::url());
    }

    static constexpr bool isDownload = std::is_same_v<Worker, Nox::WebMediaDownloader>;

    TestSandbox stage;
    const Setup setup;
    std::unique_ptr<Worker> worker = [this] {
        if constexpr (isDownload)
            return stage.newDownloader();
        else
            return stage.newExtractor();
    }();
    const SignalLog log;
};

using DownloadRun = WorkerRun<Nox::WebMediaDownloader>;
using ExtractRun = WorkerRun<Nox::WebMediaInfoExtractor>;
