#include "hosts/desk/model/DownloadPlan.h"

#include "hosts/common/Destination.h"
#include "hosts/common/TextSanitizer.h"
#include "hosts/common/ToolSetup.h"

#include <QDir>

namespace NoxDesk {

using Nox::MediaProfile;
using NoxHost::Destination;
using NoxHost::StreamChoice;

DownloadPlan::DownloadPlan(QObject *parent)
    : QObject(parent)
    , m_folder(QDir::homePath())
{
}

void DownloadPlan::setPage(const QString &url, const Nox::WebMediaInfo &page, const StreamChoice &streams)
{
    m_url = url;
    m_page = page;
    m_streams = streams;
    m_sizes.clear();
    m_stream = {};
    m_destination.clear();
    m_isOwnDestination = false;
    Q_EMIT changed();
}

void DownloadPlan::setFolder(const QString &folder)
{
    m_folder = folder;
    propose();
    Q_EMIT changed();
}

void DownloadPlan::setTaken(const QStringList &paths)
{
    m_taken = paths;
    propose();
    Q_EMIT changed();
}

void DownloadPlan::setSize(const QString &code, qint64 bytes)
{
    m_sizes.insert(code, bytes);
}

void DownloadPlan::setStream(const MediaProfile &stream)
{
    const QString oldSuffix = Destination::suffix(m_stream);
    m_stream = stream;
    m_stream.setPreferredDashAudioYdCode(m_streams.companionFor(stream).getName());
    follow(oldSuffix);
}

void DownloadPlan::setCompanion(const QString &code)
{
    const QString oldSuffix = Destination::suffix(m_stream);
    m_stream.setPreferredDashAudioYdCode(code);
    follow(oldSuffix);
}

void DownloadPlan::setDestination(const QString &text)
{
    if (text != m_destination) {
        m_destination = text;
        m_isOwnDestination = true;
        Q_EMIT changed();
    }
}

void DownloadPlan::renumber()
{
    setDestination(QDir::toNativeSeparators(Destination::free(path(), m_taken)));
}

/** After another choice: proposes anew, or gives the user's own file the suffix that goes with it. */
void DownloadPlan::follow(const QString &oldSuffix)
{
    propose();
    const QString ending = QLatin1Char('.') + oldSuffix;
    if (m_isOwnDestination && m_destination.endsWith(ending)) {
        m_destination.chop(ending.size());
        m_destination += QLatin1Char('.') + Destination::suffix(m_stream);
    }
    Q_EMIT changed();
}

void DownloadPlan::propose()
{
    if (!m_isOwnDestination && m_stream.isValid()) {
        m_destination = QDir::toNativeSeparators(Destination::proposed(m_page, m_stream, m_folder, m_taken));
    }
}

bool DownloadPlan::takesCompanion() const
{
    return StreamChoice::needsCompanion(m_stream) && !m_streams.audio().isEmpty();
}

MediaProfile DownloadPlan::stream() const
{
    return m_stream;
}

QList<MediaProfile> DownloadPlan::companions() const
{
    return takesCompanion() ? m_streams.audio() : QList<MediaProfile>();
}

QString DownloadPlan::companion() const
{
    return m_stream.getPreferredDashAudioYdCode();
}

QString DownloadPlan::destination() const
{
    return m_destination;
}

QString DownloadPlan::path() const
{
    QString text = QDir::fromNativeSeparators(m_destination.trimmed());
    if (text.isEmpty()) {
        return {};
    }
    if (text.startsWith(QLatin1String("~/"))) {
        text.replace(0, 1, QDir::homePath());
    }
    return QDir::cleanPath(QDir(m_folder).absoluteFilePath(text));
}

QString DownloadPlan::soundProblem() const
{
    return companion().isEmpty() ? QString() : NoxHost::ToolSetup::joiningProblem();
}

QString DownloadPlan::destinationProblem() const
{
    const QString file = path();
    if (m_taken.contains(file)) {
        return tr("Another download is making this file.");
    }
    return Destination::problem(file);
}

bool DownloadPlan::isComplete() const
{
    return m_stream.isValid() && soundProblem().isEmpty() && destinationProblem().isEmpty();
}

DownloadRequest DownloadPlan::request() const
{
    MediaProfile stream = m_stream;
    qint64 bytes = m_sizes.value(stream.getName());
    if (!companion().isEmpty()) {
        // The size is that of both, or progress would stand still at its end while the sound comes.
        const qint64 soundBytes = m_sizes.value(companion());
        bytes = bytes > 0 && soundBytes > 0 ? bytes + soundBytes : 0;
    }
    stream.setSize(bytes);
    return {m_url, NoxHost::printableLine(m_page.getTitle()), stream, path()};
}

} // namespace NoxDesk
