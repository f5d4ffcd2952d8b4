#include <nox/jobs/DownloadJob.h>

#include <nox/jobs/Destination.h>
#include <nox/jobs/DownloadJobPrivate.h>
#include <nox/jobs/FailureText.h>
#include <nox/jobs/PageJob.h>

#include <QFileInfo>

namespace Nox {

namespace {

QString absolutePath(const QString &path)
{
    return path.isEmpty() ? path : QFileInfo(path).absoluteFilePath();
}

} // namespace

DownloadJob::DownloadJob(const QString &url, const MediaProfile &stream, const QString &destination,
                         const ToolSetup &tools, QObject *parent)
    : Job(std::make_unique<Private>(tools, DownloadRecord{url, stream, absolutePath(destination)}), parent)
{
    connect(this, &Job::stateChanged, this, &DownloadJob::waitingTextChanged); // a job that stops does not wait
}

DownloadJob::DownloadJob(const PageJob &page, const QString &folder, QObject *parent)
    : DownloadJob(page.url(), page.streams().withAudio(page.streams().best()),
                  Destination::proposed(page.page(), page.streams().withAudio(page.streams().best()), folder),
                  page.tools(), parent)
{
    setDuration(page.page().getDuration());
    d()->knownError = page.error();
    d()->knownErrorString = page.errorString();
    d()->toolOutput = page.errorDetails();
}

DownloadJob::DownloadJob(const QJsonObject &record, const ToolSetup &tools, QObject *parent)
    : Job(std::make_unique<Private>(tools, DownloadRecord::fromJson(record)), parent)
{
    connect(this, &Job::stateChanged, this, &DownloadJob::waitingTextChanged);
    d()->keepsParts = true;
    if (!d()->record.isComplete()) {
        d()->knownError = OtherError;
        d()->knownErrorString = FailureText::damagedRecord();
    }
    d()->isResumed = true;
}

DownloadJob::~DownloadJob() = default;

DownloadJob::Private *DownloadJob::d() const
{
    return static_cast<Private *>(d_ptr.get());
}

void DownloadJob::setDuration(qint64 seconds)
{
    d()->record.duration = seconds;
}

void DownloadJob::setKeepsParts(bool keeps)
{
    d()->keepsParts = keeps;
}

void DownloadJob::setSoundFormat(SoundFormat format)
{
    d()->record.sound = format;
}

QString DownloadJob::url() const
{
    return d()->record.url;
}

MediaProfile DownloadJob::stream() const
{
    return d()->record.stream;
}

QString DownloadJob::destination() const
{
    return d()->record.destination;
}

bool DownloadJob::keepsParts() const
{
    return d()->keepsParts;
}

bool DownloadJob::hasParts() const
{
    return d()->hasParts;
}

QJsonObject DownloadJob::record() const
{
    return d()->record.toJson();
}

void DownloadJob::discard(const QJsonObject &record)
{
    DownloadFolder::discard(DownloadRecord::fromJson(record));
}

QList<QJsonObject> DownloadJob::interrupted(const QString &folder)
{
    QList<QJsonObject> records;
    const QList<DownloadRecord> found = DownloadFolder::interrupted(folder);
    for (const DownloadRecord &download : found)
        records += download.toJson();
    return records;
}

void DownloadJob::pause()
{
    d()->stop(d()->keepsParts ? Paused : Cancelled);
}

DownloadJob::Phase DownloadJob::phase() const
{
    return d()->phase;
}

TransferFigures DownloadJob::figures() const
{
    return d()->figures;
}

QString DownloadJob::waitingText() const
{
    return state() == Running ? d()->serverWait.text() : QString();
}

QString DownloadJob::filePath() const
{
    return state() == Ended && error() == NoError ? d()->filePath : QString();
}

} // namespace Nox
