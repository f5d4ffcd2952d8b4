#include <nox/jobs/PageJob.h>

#include <nox/front/WebMediaDownloaderFactory.h>
#include <nox/jobs/FailureText.h>
#include <nox/jobs/JobPrivate.h>
#include <nox/jobs/TextSanitizer.h>
#include <nox/jobs/ToolMessage.h>
#include <nox/jobs/UrlCheck.h>

#include <QProcess>
#include <QRegularExpression>

namespace Nox {

namespace {

constexpr int processEndMs = 3000; // after an error: time for the process to end
constexpr int toolError = -1;      // code of WebMediaInfoExtractor::error() for a non-zero exit code

} // namespace

/**
 * The extractor may report errors several times, and may continue after one. So the outcome is decided when the tool
 * has ended.
 */
class PageJob::Private : public JobPrivate
{
public:
    Private(const ToolSetup &setup, const QString &address)
        : JobPrivate(setup)
        , url(address)
    {
    }
    ~Private() override { Private::clear(); }

    const QString url;
    WebMediaInfo page;
    StreamChoice streams;
    int videoCount = 1; // result of PageJob::videoCount()
    bool isInParts = false;

protected:
    void begin() override;
    void onStop() override { m_extractor->cancel(); }
    void onSilence() override;
    bool clear() override;
    void explain() override;

private:
    void onFinished(const WebMediaInfo &record);
    void onError(int code);
    void countVideos();

    std::unique_ptr<WebMediaInfoExtractor> m_extractor;
    bool m_awaitsError = false; // after finished(): an error() before the next event means failure
    bool m_hasAnswer = false;
    int m_code = toolError;
};

void PageJob::Private::begin()
{
    if (refuse(Job::AddressError, UrlCheck::errorString(url)) || refuse(Job::ToolMissing, tools.errorString()))
        return;
    m_extractor.reset(WebMediaDownloaderFactory::instance()->createExtractor(tools.toolFile(), tools.pycacheFolder()));
    QObject::connect(m_extractor.get(), &WebMediaInfoExtractor::finished, q,
                     [this](const WebMediaInfo &record) { onFinished(record); });
    QObject::connect(m_extractor.get(), &WebMediaInfoExtractor::error, q, [this](qint32 code) { onError(code); });
    m_extractor->getMediaInfoBySignal(url);
}

// If no error() follows before control returns to the event loop, the extraction succeeded. After such a pair of
// signals the tool may continue and succeed.
void PageJob::Private::onFinished(const WebMediaInfo &record)
{
    page = record;
    m_awaitsError = true;
    if (isWorking())
        expectNews(0);
}

void PageJob::Private::onError(int code)
{
    const bool isPair = m_awaitsError;
    m_awaitsError = false;
    if (isStopping()) {
        if (code != toolError || !isPair) // the process has ended
            endStopped();
    } else if (!isPair) { // the tool has ended with a non-zero exit code
        end(Job::OtherError);
    } else if (code == toolError) {
        forgetNews();
    } else {
        m_code = code;
        expectNews(code == QProcess::FailedToStart ? 0 : processEndMs);
    }
}

void PageJob::Private::onSilence()
{
    m_hasAnswer = m_awaitsError;
    if (m_hasAnswer)
        streams = StreamChoice(page);
    end(streams.all().isEmpty() ? Job::OtherError : Job::NoError);
}

bool PageJob::Private::clear()
{
    if (m_extractor != nullptr) {
        m_extractor->disconnect(q);
        toolOutput = m_extractor->errorDetail();
        m_extractor.reset();
        countVideos();
    }
    return true;
}

void PageJob::Private::countVideos()
{
    static const QRegularExpression notice(QStringLiteral("^WARNING: \\[nox:(videos|parts)\\] (\\d{1,9}|many)$"),
                                           QRegularExpression::MultilineOption);
    if (const QRegularExpressionMatch match = notice.match(toolOutput); match.hasMatch()) {
        isInParts = match.captured(1) == QLatin1String("parts");
        const int count = match.captured(2).toInt();
        videoCount = count > 0 ? count : -1;
    }
}

void PageJob::Private::explain()
{
    if (!m_hasAnswer) {
        error = m_code == QProcess::FailedToStart ? Job::ToolMissing : Job::OtherError;
        errorString = FailureText::extraction(m_code);
    } else {
        const bool isUnreadable = page.getMediaProfileList().isEmpty() && page.getTitle().isEmpty();
        error = isUnreadable ? Job::OtherError : Job::NothingToDownload;
        errorString = FailureText::noStream(page);
    }
}

PageJob::PageJob(const QString &url, const ToolSetup &tools, QObject *parent)
    : Job(std::make_unique<Private>(tools, url), parent)
{
}

PageJob::~PageJob() = default;

PageJob::Private *PageJob::d() const
{
    return static_cast<Private *>(d_ptr.get());
}

QString PageJob::url() const
{
    return d()->url;
}

WebMediaInfo PageJob::page() const
{
    return state() == Ended && error() == NoError ? d()->page : WebMediaInfo(d()->url);
}

StreamChoice PageJob::streams() const
{
    return state() == Ended && error() == NoError ? d()->streams : StreamChoice();
}

QString PageJob::title() const
{
    return TextSanitizer::line(page().getTitle());
}

QStringList PageJob::warnings() const
{
    return state() == Ended ? ToolMessage::warnings(d()->toolOutput) : QStringList();
}

int PageJob::videoCount() const
{
    return state() == Ended && error() == NoError ? d()->videoCount : 1;
}

bool PageJob::isInParts() const
{
    return state() == Ended && error() == NoError && d()->isInParts;
}

} // namespace Nox
