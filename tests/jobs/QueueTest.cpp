#include "tests/jobs/JobTest.h"
#include "tests/jobs/SampleStreams.h"

#include <QEventLoop>
#include <QPointer>

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

private:
    void add(const QString &code);
    void react(int row);
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

void QueueTest::add(const QString &code)
{
    m_queue->add({m_url, SampleStreams::stream(code + " MP4"_s), m_sandbox->video(code + ".mp4"_s)});
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
    for (const char *code : {"a", "b", "c"})
        add(QString::fromLatin1(code));
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

QTEST_GUILESS_MAIN(QueueTest)
#include "QueueTest.moc"
