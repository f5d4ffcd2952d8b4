#include "hosts/desk/model/DownloadPlan.h"

#include <nox/jobs/Destination.h>
#include <nox/jobs/ToolSetup.h>

#include <QDir>
#include <QFileInfo>

namespace NoxDesk {

using Nox::Conversion;
using Nox::Destination;
using Nox::MediaProfile;
using Nox::StreamChoice;

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
    m_chosenFile.reset();
    Q_EMIT changed();
}

void DownloadPlan::setFolder(const QString &folder)
{
    if (m_chosenFile && !m_chosenFile->isEmpty())
        m_chosenFile = absolutePath(*m_chosenFile, m_folder); // a relative one was meant in the folder before
    m_folder = folder;
    Q_EMIT changed();
}

void DownloadPlan::setTaken(const QStringList &paths)
{
    m_taken = paths;
    Q_EMIT changed();
}

void DownloadPlan::setSize(const QString &code, qint64 bytes)
{
    m_sizes.insert(code, bytes);
}

void DownloadPlan::setStream(const MediaProfile &stream)
{
    const QString oldSuffix = Destination::suffix(m_stream);
    m_stream = m_streams.withAudio(stream);
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
    if (text != destination()) {
        m_chosenFile = text;
        m_isNumbered = false;
        Q_EMIT changed();
    }
}

void DownloadPlan::chooseFile(const QString &path)
{
    const QString ending = QLatin1Char('.') + suffix();
    const bool hasEnding = path.endsWith(ending, Qt::CaseInsensitive);
    setDestination(QDir::toNativeSeparators(hasEnding ? path : path + ending));
}

void DownloadPlan::renumber()
{
    m_isNumbered = true;
    Q_EMIT changed();
}

/** After another choice: gives the user's own file the suffix that goes with it. */
void DownloadPlan::follow(const QString &oldSuffix)
{
    const QString ending = QLatin1Char('.') + oldSuffix;
    if (m_chosenFile && m_chosenFile->endsWith(ending)) {
        m_chosenFile->chop(ending.size());
        *m_chosenFile += QLatin1Char('.') + suffix();
    }
    Q_EMIT changed();
}

QString DownloadPlan::destination() const
{
    if (m_chosenFile && !m_isNumbered)
        return *m_chosenFile;
    if (m_chosenFile)
        return QDir::toNativeSeparators(Destination::free(absolutePath(*m_chosenFile, m_folder), m_taken));
    if (!m_stream.isValid())
        return {};
    return QDir::toNativeSeparators(Destination::proposed(m_page, m_stream, m_folder, m_taken));
}

bool DownloadPlan::takesCompanion() const
{
    return StreamChoice::needsAudio(m_stream) && !m_streams.audio().isEmpty();
}

QList<MediaProfile> DownloadPlan::companions() const
{
    return takesCompanion() ? m_streams.audio() : QList<MediaProfile>();
}

QString DownloadPlan::companion() const
{
    return m_stream.getPreferredDashAudioYdCode();
}

QString DownloadPlan::suffix() const
{
    return Destination::suffix(m_stream);
}

QString DownloadPlan::path() const
{
    return absolutePath(destination(), m_folder);
}

QString DownloadPlan::absolutePath(const QString &text, const QString &folder)
{
    QString path = QDir::fromNativeSeparators(text.trimmed());
    if (path.isEmpty())
        return {};
    if (path.startsWith(QLatin1String("~/")))
        path.replace(0, 1, QDir::homePath());
    return QDir::cleanPath(QDir(folder).absoluteFilePath(path));
}

QString DownloadPlan::soundProblem() const
{
    return companion().isEmpty() ? QString() : Nox::ToolSetup::joiningErrorString();
}

QString DownloadPlan::destinationProblem() const
{
    const QString file = path();
    if (m_taken.contains(file))
        return tr("Another download is making this file.");
    return Destination::errorString(file);
}

QString DownloadPlan::warning() const
{
    const bool isJoined = !companion().isEmpty();
    return isJoined ? Conversion::warning(m_streams.conversion(m_stream), m_stream, m_page.getDuration()) : QString();
}

QString DownloadPlan::missingFolder() const
{
    const QString file = path();
    if (file.isEmpty() || QFileInfo(file).dir().exists())
        return {};
    QString above = QFileInfo(file).absolutePath();
    while (!QFileInfo::exists(above) && above != QFileInfo(above).absolutePath())
        above = QFileInfo(above).absolutePath();
    return Destination::folderErrorString(above).isEmpty() ? QFileInfo(file).absolutePath() : QString();
}

void DownloadPlan::makeFolder()
{
    if (const QString folder = missingFolder(); !folder.isEmpty()) {
        QDir().mkpath(folder);
        Q_EMIT changed();
    }
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
    return {m_url, stream, path(), m_page.getDuration()};
}

} // namespace NoxDesk
