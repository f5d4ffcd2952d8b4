#include "hosts/desk/model/DownloadPlan.h"

#include <nox/jobs/Destination.h>
#include <nox/jobs/ToolSetup.h>

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QRegularExpression>

namespace NoxDesk {

using Nox::Conversion;
using Nox::Destination;
using Nox::MediaProfile;
using Nox::StreamChoice;

namespace {

/** The suffix of @p path, if it looks like a file type and not like a part of a title. */
QString suffixOf(const QString &path)
{
    static const QRegularExpression pattern(QStringLiteral("\\.([a-zA-Z][a-zA-Z0-9]{0,4}|[0-9][a-zA-Z][a-zA-Z0-9]?)$"));
    return pattern.match(path).captured(1);
}

} // namespace

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
        m_chosenFile = Destination::absolutePath(*m_chosenFile, m_folder); // a relative path referred to the old folder
    m_folder = folder;
    Q_EMIT changed();
}

void DownloadPlan::setSound(Nox::SoundFormat sound)
{
    const QString oldSuffix = suffix();
    m_sound = sound;
    follow(oldSuffix);
}

void DownloadPlan::setTaken(const QStringList &paths)
{
    m_taken = paths;
    Q_EMIT changed();
}

void DownloadPlan::setSize(const QString &code, qint64 bytes)
{
    m_sizes.insert(code, bytes);
    if (code == m_stream.getName() || code == audio())
        Q_EMIT changed();
}

void DownloadPlan::setStream(const MediaProfile &stream)
{
    const QString oldSuffix = Destination::suffix(m_stream, m_sound);
    m_stream = m_streams.withAudio(stream);
    follow(oldSuffix);
}

void DownloadPlan::setAudio(const QString &code)
{
    const QString oldSuffix = Destination::suffix(m_stream, m_sound);
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

void DownloadPlan::completeDestination()
{
    if (m_chosenFile && !m_isNumbered && suffixOf(*m_chosenFile).isEmpty() && !suffixOf(chosenPath()).isEmpty()) {
        m_chosenFile = m_chosenFile->trimmed() + QLatin1Char('.') + suffix();
        Q_EMIT changed();
    }
}

void DownloadPlan::renumber()
{
    m_isNumbered = true;
    Q_EMIT changed();
}

/** After another choice: changes the suffix of the user's file to match. */
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
        return QDir::toNativeSeparators(Destination::free(chosenPath(), m_taken));
    if (!m_stream.isValid())
        return {};
    return QDir::toNativeSeparators(Destination::proposed(m_page, m_stream, m_folder, m_taken, m_sound));
}

/** The path that the user typed, with the stream's suffix if it has none. */
QString DownloadPlan::chosenPath() const
{
    const QString path = Destination::absolutePath(*m_chosenFile, m_folder);
    const bool isFile = !path.isEmpty() && !m_chosenFile->trimmed().endsWith(QLatin1Char('/'));
    return isFile && suffixOf(path).isEmpty() ? path + QLatin1Char('.') + suffix() : path;
}

bool DownloadPlan::takesAudio() const
{
    return StreamChoice::needsAudio(m_stream) && !m_streams.audio().isEmpty();
}

QList<MediaProfile> DownloadPlan::audioChoices() const
{
    return takesAudio() ? m_streams.audio() : QList<MediaProfile>();
}

QString DownloadPlan::audio() const
{
    return m_stream.getPreferredDashAudioYdCode();
}

QString DownloadPlan::suffix() const
{
    return Destination::suffix(m_stream, m_sound);
}

QString DownloadPlan::path() const
{
    return m_chosenFile && !m_isNumbered ? chosenPath() : Destination::absolutePath(destination(), m_folder);
}

QString DownloadPlan::soundError() const
{
    const bool needsFfmpeg = !audio().isEmpty() || suffix() != Destination::suffix(m_stream);
    return needsFfmpeg ? Nox::ToolSetup::joiningErrorString() : QString();
}

QString DownloadPlan::destinationError() const
{
    const QString file = path();
    if (m_taken.contains(file))
        return tr("Another download is making this file.");
    return Destination::errorString(file);
}

QString DownloadPlan::destinationWarning() const
{
    const QString file = path();
    const auto sizeText = [](qint64 bytes) { return QLocale().formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat); };
    const qint64 needed = request().stream.getSize();
    const qint64 room = Destination::availableBytes(QFileInfo(file).absolutePath());
    if (room >= 0 && room < needed)
        return tr("The file takes %1, but the disk has room for %2 only.").arg(sizeText(needed), sizeText(room));
    const QString ending = suffixOf(file);
    if (!ending.isEmpty() && ending.compare(suffix(), Qt::CaseInsensitive) != 0)
        return tr("The name ends in \".%1\", but the file will be of the format %2.").arg(ending, suffix().toUpper());
    return {};
}

QString DownloadPlan::warning() const
{
    const bool isJoined = !audio().isEmpty();
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
    return m_stream.isValid() && soundError().isEmpty() && destinationError().isEmpty();
}

Nox::DownloadRequest DownloadPlan::request() const
{
    MediaProfile stream = m_stream;
    qint64 bytes = m_sizes.value(stream.getName());
    if (!audio().isEmpty()) {
        // The size of both, or the progress would stay at 100 % while the sound is downloaded.
        const qint64 soundBytes = m_sizes.value(audio());
        bytes = bytes > 0 && soundBytes > 0 ? bytes + soundBytes : 0;
    }
    stream.setSize(bytes);
    return {m_url, stream, path(), m_page.getDuration(), m_sound};
}

} // namespace NoxDesk
