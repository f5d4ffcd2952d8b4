#include <nox/parse/YdOutputParser.h>

#include <nox/log/LogText.h>
#include <nox/model/WebMediaInfo.h>
#include <nox/parse/FastPageReader.h>
#include <nox/parse/JsonPageReader.h>
#include <nox/parse/YdFormat.h>
#include <nox/parse/YdStatusLines.h>
#include <nox/util/ByteCount.h>
#include <nox/util/Saturation.h>
#include <nox/util/Utilities.h>

#include <QDebug>
#include <QFile>
#include <QThread>

#include <exception>
#include <optional>
#include <string>
#include <utility>

namespace Nox {

namespace {

bool readPage(QString output, PageDescription &page, std::string &error)
{
    // In steps, so that memory holds only one copy of a large page.
    output = Utilities::convertHttpSpecificChar(std::move(output));
    output = Utilities::convertHttpSpecificChar2(std::move(output));
    QByteArray document = std::exchange(output, QString()).toUtf8();
    std::optional<PageDescription> read = FastPageReader::read(document);
    if (!read)
        return JsonPageReader::read(document, page, error);
    page = std::move(*read);
    return true;
}

void fill(WebMediaInfo &info, PageDescription page)
{
    qDebug().noquote() << QStringLiteral("title: %1").arg(page.title);
    info.setTitle(page.title);
    info.setFileName(Utilities::filterInvalidCharsOfFileName(page.title, QStringLiteral(" ")));

    qDebug().noquote() << QStringLiteral("duration: %1").arg(page.duration);
    info.setDuration(page.duration);

    // The largest picture does not exist for every page; the medium one does. QString::replace() takes quadratic time.
    if (const QString largest = QStringLiteral("maxresdefault"); page.thumbnail.contains(largest))
        page.thumbnail = page.thumbnail.split(largest).join(QLatin1String("mqdefault"));
    qDebug().noquote() << QStringLiteral("thumbnail: %1").arg(page.thumbnail);
    info.setThumbnailUrl(page.thumbnail);

    for (const FormatEntry &entry : page.formats) {
        if (auto profile = YdFormat::toProfile(entry, page.description))
            info.addMediaProfileToHead(std::move(*profile));
    }
}

} // namespace

YdOutputParser::YdOutputParser()
    : m_defaultFormat(QStringLiteral("FLV"))
{
    const auto add = [this](QLatin1String container, std::initializer_list<int> codes) {
        for (const int code : codes)
            m_formats.insert(QString::number(code), container);
    };
    add(QLatin1String("3GP"), {13});
    add(QLatin1String("MP4"), {17, 18, 22, 37, 38});
    add(QLatin1String("WEBM"), {43, 44, 45, 46});
}

YdOutputParser *YdOutputParser::instance()
{
    static YdOutputParser *parser = nullptr;
    if (parser == nullptr)
        parser = new YdOutputParser;
    return parser;
}

void YdOutputParser::parseWebMediaInfo(QString output, WebMediaInfo &info, QString tempDir)
{
    Q_UNUSED(tempDir)
    std::string error;
    try {
        PageDescription page;
        if (readPage(std::move(output), page, error)) {
            WebMediaInfo filled = info;
            fill(filled, std::move(page));
            info = std::move(filled);
            return;
        }
    } catch (const std::exception &exception) {
        error = exception.what(); // a page that memory cannot hold
    }
    NOX_LOG_ERROR("JSON reader.parse error: %s", error.c_str());
}

int YdOutputParser::parseDownloadeInfo(QString text, qint64 &total, qint64 &finish, qint64 &speed)
{
    // Output that names a file never counts as progress.
    if (YdStatusLines::findAlreadyDownloaded(text) || YdStatusLines::findDestination(text))
        return 0;
    const auto line = YdStatusLines::findProgress(text);
    if (!line)
        return 0;

    const float percentage = ByteCount::toFloat(line->percentage);
    total = ByteCount::find(line->size);
    speed = ByteCount::find(line->speed);
    finish = Saturation::fromDouble<qint64>(static_cast<double>(percentage) * static_cast<double>(total) / 100.0);
    return 0;
}

QString YdOutputParser::getYdFormat(QString ydCode)
{
    return m_formats.value(ydCode, m_defaultFormat);
}

int YdOutputParser::getYdFormatLen(QString ydCode)
{
    return static_cast<int>(getYdFormat(std::move(ydCode)).size());
}

bool YdOutputParser::waitFile(QString filePath)
{
    constexpr int attempts = 30;
    constexpr unsigned long pause = 100; // milliseconds
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (QFile::exists(filePath))
            return true;
        QThread::msleep(pause);
    }
    return false;
}

} // namespace Nox
