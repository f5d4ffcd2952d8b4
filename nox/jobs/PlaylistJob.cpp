#include <nox/jobs/PlaylistJob.h>

#include <nox/jobs/JobPrivate.h>

namespace Nox {

class PlaylistJob::Private : public JobPrivate
{
public:
    Private(const ToolSetup &setup, const QString &address)
        : JobPrivate(setup)
        , url(address)
    {
    }

    const QString url;
    int first = 1;
    int count = maximumCount;
    QList<PlaylistEntry> entries;
    bool hasMore = false;
    bool isInParts = false;
    int total = -1;

protected:
    void begin() override { end(Job::OtherError); }
    void onStop() override {}
    void onSilence() override {}
    bool clear() override { return true; }
    void explain() override {}
};

PlaylistJob::PlaylistJob(const QString &url, const ToolSetup &tools, QObject *parent)
    : Job(std::make_unique<Private>(tools, url), parent)
{
}

PlaylistJob::~PlaylistJob() = default;

PlaylistJob::Private *PlaylistJob::d() const
{
    return static_cast<Private *>(d_ptr.get());
}

void PlaylistJob::setRange(int first, int count)
{
    d()->first = qMax(1, first);
    d()->count = qBound(1, count, maximumCount);
}

QString PlaylistJob::url() const
{
    return d()->url;
}

QList<PlaylistEntry> PlaylistJob::entries() const
{
    return d()->entries;
}

bool PlaylistJob::hasMore() const
{
    return state() == Ended && d()->hasMore;
}

int PlaylistJob::total() const
{
    return d()->total;
}

bool PlaylistJob::isInParts() const
{
    return d()->isInParts;
}

} // namespace Nox
