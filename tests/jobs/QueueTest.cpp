#include "tests/jobs/JobTest.h"
#include "tests/jobs/SampleStreams.h"

#include <QEventLoop>
#include <QPointer>
#include <QRegularExpression>

#include <csignal>

#include <sys/resource.h>

using namespace Nox;

/** The queue as a host without a window uses it. The tests of the window cover the rest. */
class QueueTest : public JobTest
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void reactions_data();
    void reactions();
    void figures();
    void chooser_data();
    void chooser();
    void parts_data();
    void parts();
    void store();

private:
    DownloadRequest request(const QString &code) const;
    void add(const QString &code) { m_queue->add(request(code)); }
    void react(int row);
    void play(const QString &step);
    bool isSettled() const;
    QString list() const;

    DownloadQueue *m_queue = nullptr;
    QPointer<DownloadQueue> m_left; // null when the queue was deleted
    QString m_reaction;
    bool m_hasReacted = false;
};

void QueueTest::init()
{
    JobTest::init();
    m_queue = new DownloadQueue;
    m_left = m_queue;
    m_hasReacted = false;
}

void QueueTest::cleanup()
{
    delete m_left.data();
    JobTest::cleanup();
}

DownloadRequest QueueTest::request(const QString &code) const
{
    return {m_url, SampleStreams::stream(code + " MP4"_s), m_sandbox->video(code + ".mp4"_s)};
}

QString QueueTest::list() const
{
    QStringList rows;
    for (int row = 0; !m_left.isNull() && row < m_queue->rowCount(); ++row) {
        const QModelIndex index = m_queue->index(row);
        rows += index.data().toString().left(1) + QLatin1Char('=')
            + nameOf(index.data(DownloadQueue::StateRole).value<DownloadQueue::State>());
    }
    return rows.join(QLatin1Char(' '));
}

void QueueTest::reactions_data()
{
    // Three downloads run one after the other: a succeeds, b fails, c succeeds. A host reacts once, inside a signal.
    const TextTable row{"moment", "reaction", "list", "ended"};
    row("nothing", "ended", "", "c=Finished b=Failed a=Finished", "abc");
    row("removes it", "ended", "remove", "c=Finished b=Failed", "abc");
    row("removes it before ended()", "countsChanged", "remove", "c=Finished b=Failed", "bc");
    row("removes all", "allEnded", "removeEnded", "", "abc");
    row("adds one", "allEnded", "add", "d=Finished c=Finished b=Failed a=Finished", "abcd");
    row("adds one at once", "ended", "add", "d=Finished c=Finished b=Failed a=Finished", "abcd");
    row("cancels", "ended", "cancelAll", "b=Cancelled c=Cancelled a=Finished", "acb");
    row("pauses", "ended", "pauseAll", "b=Paused c=Paused a=Finished", "acb");
    row("starts more", "ended", "setLimit", "b=Failed c=Finished a=Finished", "acb");
    row("event loop", "ended", "loop", "c=Finished b=Failed a=Finished", "abc");
    row("deletes", "ended", "deleteLater", "", "a");
}

void QueueTest::react(int row)
{
    if (std::exchange(m_hasReacted, true))
        return;
    if (m_reaction == "remove"_s) {
        m_queue->remove(row);
    } else if (m_reaction == "add"_s) {
        add("d"_s);
    } else if (m_reaction == "setLimit"_s) {
        m_queue->setLimit(3);
    } else if (m_reaction == "loop"_s) {
        QEventLoop loop;
        m_sandbox->let("b"_s);
        connect(m_queue, &DownloadQueue::ended, &loop, &QEventLoop::quit);
        loop.exec();
    } else if (!m_reaction.isEmpty()) {
        QVERIFY(QMetaObject::invokeMethod(m_queue, m_reaction.toLatin1().constData()));
    }
}

void QueueTest::reactions()
{
    const auto [moment, reaction, expected, expectedEnded] = fetchTexts("moment", "reaction", "list", "ended");
    m_reaction = reaction;
    HostSandbox::play("b: announce mp4|wait b|fail ERROR: x"_s);
    QString ended;
    connect(m_queue, &DownloadQueue::ended, this,
            [&](int row) { ended += m_queue->index(row).data().toString().left(1); });
    if (moment == "ended"_s) {
        connect(m_queue, &DownloadQueue::ended, this, [&](int row) { react(row); });
    } else if (moment == "allEnded"_s) {
        connect(m_queue, &DownloadQueue::allEnded, this, [&] { react(0); });
    } else {
        connect(m_queue, &DownloadQueue::countsChanged, this, [&] {
            if (m_queue->endedCount() == 1)
                react(m_queue->rowCount() - 1);
        });
    }
    const QSignalSpy counts(m_queue, &DownloadQueue::countsChanged);
    m_queue->add({request("a"_s), request("b"_s), request("c"_s)});
    QCOMPARE(counts.size(), 1);
    if (moment != "allEnded"_s)
        QTRY_VERIFY_WITH_TIMEOUT(m_hasReacted, HostSandbox::Timeout);
    if (reaction == "setLimit"_s)
        QTRY_VERIFY_WITH_TIMEOUT(ended == "ac"_s, HostSandbox::Timeout);
    m_sandbox->let("b"_s);
    QTRY_COMPARE_WITH_TIMEOUT(list(), expected, HostSandbox::Timeout);
    QCOMPARE(ended, expectedEnded);
    if (m_left.isNull())
        return;
    while (m_queue->rowCount() > 0)
        m_queue->remove(0);
    for (const QString &file : m_sandbox->files()) // parts go with their row, finished files stay
        QVERIFY2(!file.startsWith(QLatin1Char('.')), qPrintable(file));
}

/** A view can tell new figures from other changes by the roles. */
void QueueTest::figures()
{
    HostSandbox::play("a: announce mp4|progress 50.0 100|wait a"_s);
    int percent = -1;
    connect(m_queue, &DownloadQueue::dataChanged, this,
            [&](const QModelIndex &row, const QModelIndex &, const auto &roles) {
                if (roles.contains(DownloadQueue::StatusRole))
                    percent = row.data(DownloadQueue::PercentRole).toInt();
                else
                    QVERIFY(roles.isEmpty());
            });
    add("a"_s);
    QTRY_COMPARE_WITH_TIMEOUT(percent, 50, HostSandbox::Timeout);
    m_sandbox->let("a"_s);
    QTRY_COMPARE_WITH_TIMEOUT(list(), "a=Finished"_s, HostSandbox::Timeout);
}

void QueueTest::chooser_data()
{
    const TextTable row{"reaction", "list"};
    row("stream", "", "a=Finished");
    row("none", "none", "h=Failed");
    row("cancels", "cancelAll", "h=Cancelled");
    row("pauses", "pauseAll", "h=Paused");
}

/** The stream of a page is chosen when it has been read, or the host does something else. */
void QueueTest::chooser()
{
    const auto [reaction, expected] = fetchTexts("reaction", "list");
    m_reaction = reaction;
    m_queue->setChooser([this](const PageJob &page) {
        if (m_reaction == "none"_s)
            return DownloadRequest();
        if (!m_reaction.isEmpty())
            QMetaObject::invokeMethod(m_queue, m_reaction.toLatin1().constData());
        return DownloadRequest{page.url(), SampleStreams::stream("a MP4"_s), m_sandbox->video("a.mp4"_s)};
    });
    m_queue->add({m_url, {}, {}});
    QTRY_COMPARE_WITH_TIMEOUT(list(), expected, HostSandbox::Timeout);
    QCOMPARE(m_queue->index(0).data(DownloadQueue::ErrorRole).toString().isEmpty(), expected != "h=Failed"_s);
    QCOMPARE(m_sandbox->files(), expected == "a=Finished"_s ? QStringList("a.mp4"_s) : QStringList());
}

void QueueTest::parts_data()
{
    // Commas: when nothing changes any more. A letter adds a download, a digit is a row. A star: hasParts(). The
    // numbers of hidden folders, of the batch: percent, ended, count.
    const TextTable row{"steps", "list", "left", "batch"};
    row("failed, all ended removed", "fail a,removeEnded", "a=Failed*", "1", "100 1 1");
    row("also at the next start", "fail a,hang restart b,removeEnded", "b=Running a=Failed*", "2", "10 0 1");
    row("removed, the parts of another", "fail a,hang a,pause0,remove1", "a=Paused*", "1", "10 0 1");
    row("waiting, cancelled, the parts of another", "fail a,hang b a,cancel1", "b=Running a=Cancelled* a=Failed*", "2",
        "55 1 2");
    row("renamed", "hang a,pause0,file retry0,pause0", "a=Paused*", "1", "10 0 1");
    row("renamed, then killed", "hang a,pause0,file retry0,restart", "a=Paused*", "1", "0 0 0");
    row("renamed, without a tool", "hang a,pause0,file tool retry0", "a=Failed*", "1", "100 1 1");
    row("cancelled, then killed", "hang a,cancel0 restart", "a=Cancelled", "0", "0 0 0");
    row("cancelled while pausing", "hang a,pause0 cancel0", "a=Cancelled", "0", "100 1 1");
    row("one of two paused", "hang both a b,pause0", "b=Running a=Paused*", "2", "10 0 2");
}

void QueueTest::play(const QString &step)
{
    const int row = step.right(1).toInt();
    if (step == "fail"_s || step == "hang"_s) {
        const QString end = step == "fail"_s ? "exit 1\n"_s : "announce mp4|progress 10.0 100|hang\n"_s;
        HostSandbox::play("a: touch parts/a.part|"_s + end + "b: touch parts/a.part|"_s + end);
    } else if (step == "file"_s) {
        Files::write(m_sandbox->video("a.mp4"_s));
    } else if (step == "tool"_s) {
        m_queue->setTools(ToolSetup("/none"_s));
    } else if (step == "both"_s) {
        m_queue->setLimit(2);
    } else if (step == "restart"_s) {
        const QJsonArray stored = m_queue->toJson();
        delete m_queue;
        m_left = m_queue = new DownloadQueue;
        m_queue->restore(stored);
        m_queue->addInterrupted(m_sandbox->videos());
    } else if (step.size() == 1) {
        add(step);
    } else if (step == "removeEnded"_s) {
        m_queue->removeEnded();
    } else {
        QVERIFY(QMetaObject::invokeMethod(m_queue, step.chopped(1).toLatin1().constData(), Q_ARG(int, row)));
    }
}

/** Whether all downloads that run have come to their hang. */
bool QueueTest::isSettled() const
{
    for (int row = 0; row < m_queue->runningCount(); ++row) {
        const QModelIndex index = m_queue->index(row);
        if (index.data(DownloadQueue::StateRole).value<DownloadQueue::State>() != DownloadQueue::Running
            || index.data(DownloadQueue::PercentRole) != 10)
            return false;
    }
    return true;
}

/** Parts stay as long as a download of the list can be resumed from them, and go with the last one. */
void QueueTest::parts()
{
    const auto [steps, expected, left, batch] = fetchTexts("steps", "list", "left", "batch");
    for (const QString &group : steps.split(QLatin1Char(','))) {
        for (const QString &step : group.split(QLatin1Char(' ')))
            play(step);
        QTRY_VERIFY_WITH_TIMEOUT(isSettled(), HostSandbox::Timeout);
    }
    QStringList rows = list().split(QLatin1Char(' '));
    for (int row = 0; row < m_queue->rowCount(); ++row)
        rows[row] += m_queue->hasParts(row) ? "*"_s : QString();
    QCOMPARE(rows.join(QLatin1Char(' ')), expected);
    QCOMPARE(m_sandbox->files().filter(".nox-"_s).size(), left.toInt());
    const int numbers[] = {m_queue->batchPercent(), m_queue->batchEndedCount(), m_queue->batchCount()};
    QCOMPARE("%1 %2 %3"_s.arg(numbers[0]).arg(numbers[1]).arg(numbers[2]), batch);
    m_queue->cancelAll();
    QTRY_COMPARE_WITH_TIMEOUT(m_queue->activeCount(), 0, HostSandbox::Timeout);
    while (m_queue->rowCount() > 0)
        m_queue->remove(0);
    QCOMPARE(m_sandbox->files().filter(".nox-"_s), QStringList());
}

/** A store takes over the list of an ended instance, unless the disk is full, and tells whether another one runs. */
void QueueTest::store()
{
    qputenv("XDG_STATE_HOME", QFile::encodeName(m_sandbox->path("state"_s)));
    const auto files = [this] {
        return Files::names(m_sandbox->path("state/noxwebmedia"_s)).filter(QRegularExpression("json$"_s));
    };
    auto first = std::make_unique<DownloadStore>("x"_s);
    auto second = std::make_unique<DownloadStore>("x"_s);
    QVERIFY(!first->isAlone() && !second->isAlone() && DownloadStore("y"_s).isAlone());
    QVERIFY(second->save({QString(9000, QLatin1Char('x'))}) && !first->isAlone());
    second.reset();
    rlimit limit = {};
    QVERIFY(::getrlimit(RLIMIT_FSIZE, &limit) == 0);
    const rlimit full = {4000, limit.rlim_max}; // more than a lock needs
    QVERIFY(std::signal(SIGXFSZ, SIG_IGN) != SIG_ERR && ::setrlimit(RLIMIT_FSIZE, &full) == 0);
    const QJsonArray list = first->load();
    const bool isSaved = first->save(list);
    QVERIFY(::setrlimit(RLIMIT_FSIZE, &limit) == 0);
    QVERIFY(list.size() == 1 && !isSaved && first->isAlone());
    QCOMPARE(files(), QStringList("x-downloads-2.json"_s));
    QVERIFY(first->save(list));
    QCOMPARE(files(), QStringList("x-downloads-1.json"_s));
}

QTEST_GUILESS_MAIN(QueueTest)
#include "QueueTest.moc"
