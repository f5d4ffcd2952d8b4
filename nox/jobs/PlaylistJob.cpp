#include <nox/jobs/PlaylistJob.h>

#include <nox/jobs/FailureText.h>
#include <nox/jobs/JobPrivate.h>
#include <nox/jobs/JobProcess.h>
#include <nox/jobs/TextSanitizer.h>
#include <nox/jobs/UrlCheck.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace Nox {

namespace {

constexpr int answerMs =
    120000; // longest time between two entries, since a site may deliver a long list in several answers
constexpr int longestTitle = 500;
constexpr int longestUrl = 8192;
constexpr int largestNumber = 1000000000;

/** @p text if it is a valid address for a PageJob; else an empty text. */
QString usableUrl(const QString &text)
{
    const QString url = text.size() > longestUrl ? QString() : UrlCheck::corrected(text);
    return UrlCheck::errorString(url).isEmpty() ? url : QString();
}

/** @p value if it is a number from 0 on, without its fraction; else @p otherwise. */
int number(const QJsonValue &value, int otherwise)
{
    const double found = value.toDouble(-1);
    return found >= 0 && found <= largestNumber ? static_cast<int>(found) : otherwise;
}

QString pictureOf(const QJsonObject &line)
{
    const QString picture = line.value(QLatin1String("thumbnail")).toString();
    const QJsonArray pictures = line.value(QLatin1String("thumbnails")).toArray(); // the best is the last
    return usableUrl(picture.isEmpty() ? pictures.last().toObject().value(QLatin1String("url")).toString() : picture);
}

/** The address in @p line: from our front, or else from a tool without it. */
QString urlOf(const QJsonObject &line)
{
    const bool isReference = line.value(QLatin1String("_type")).toString().startsWith(QLatin1String("url"));
    const QLatin1String page("webpage_url");
    const QLatin1String target("url"); // if the entry is not a reference, this is the media file
    for (const QLatin1String key : {QLatin1String("nox_url"), isReference ? target : page, isReference ? page : target})
        if (QString url = usableUrl(line.value(key).toString()); !url.isEmpty())
            return url;
    return {};
}

} // namespace

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
    void begin() override;
    void onStop() override { m_process->kill(); }
    void onSilence() override { end(Job::OtherError); }
    bool clear() override;
    void explain() override;

private:
    void onLine(const QByteArray &text);
    void onEnded(bool isDone);

    std::unique_ptr<JobProcess> m_process;
    bool m_hasAnswer = false;
};

void PlaylistJob::Private::begin()
{
    if (refuse(Job::AddressError, UrlCheck::errorString(url)) || refuse(Job::ToolMissing, tools.errorString()))
        return;
    m_process = std::make_unique<JobProcess>();
    QObject::connect(m_process.get(), &JobProcess::lineRead, q, [this](const QByteArray &text) { onLine(text); });
    QObject::connect(m_process.get(), &JobProcess::ended, q, [this](bool isDone) { onEnded(isDone); });
    QObject::connect(m_process.get(), &JobProcess::failedToStart, q, [this] { onEnded(false); });
    expectNews(answerMs);
    QStringList arguments{QStringLiteral("--flat-playlist"), QStringLiteral("--dump-json"),
                          QStringLiteral("--playlist-items"),
                          QStringLiteral("%1:%2").arg(first).arg(qint64(first) + count - 1)};
    if (tools.toolFile().contains(QLatin1String("yt.zip")))
        arguments += QStringLiteral("--no-check-certificate");
    m_process->startTool(tools, arguments << url);
}

/** Reads one line, a JSON object. Other output of the tool is ignored. */
void PlaylistJob::Private::onLine(const QByteArray &text)
{
    const QJsonObject line = QJsonDocument::fromJson(text).object();
    if (!isWorking() || line.isEmpty())
        return;
    const QLatin1String countKey(line.contains(QLatin1String("nox_count")) ? "nox_count" : "playlist_count");
    total = number(line.value(countKey), total);
    hasMore = hasMore || line.value(QLatin1String("nox_more")).toBool();
    isInParts = isInParts || line.value(QLatin1String("nox_parts")).toBool();
    PlaylistEntry entry;
    entry.url = urlOf(line);
    if (entry.url.isEmpty())
        return;
    if (entries.size() >= count) { // the tool ignored the range
        hasMore = true;
        end(Job::NoError);
        return;
    }
    const QLatin1String indexKey(line.contains(QLatin1String("nox_index")) ? "nox_index" : "playlist_index");
    entry.number = number(line.value(indexKey), first + static_cast<int>(entries.size()));
    entry.title = TextSanitizer::line(line.value(QLatin1String("title")).toString().left(longestTitle));
    entry.duration = number(line.value(QLatin1String("duration")), 0);
    entry.thumbnailUrl = pictureOf(line);
    entries += entry;
    expectNews(answerMs);
    Q_EMIT static_cast<PlaylistJob *>(q)->entryFound(entry);
}

void PlaylistJob::Private::onEnded(bool isDone)
{
    m_hasAnswer = isDone;
    if (isStopping())
        endStopped();
    else
        end(isDone && (!entries.isEmpty() || first > 1) ? Job::NoError : Job::OtherError);
}

bool PlaylistJob::Private::clear()
{
    if (m_process != nullptr)
        toolOutput = m_process->errorOutput();
    m_process.reset();
    hasMore = hasMore || (!entries.isEmpty() && entries.constLast().number < total);
    return true;
}

void PlaylistJob::Private::explain()
{
    error = m_hasAnswer ? Job::NothingToDownload : Job::OtherError;
    errorString = m_hasAnswer ? FailureText::cause(error) : FailureText::extraction(-1);
}

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
    d()->first = qBound(1, first, largestNumber);
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
