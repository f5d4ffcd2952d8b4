#include <nox/parse/YdOutputParser.h>

#include <nox/log/LogCall.h>
#include <nox/model/WebMediaInfo.h>
#include <nox/parse/JsonMembers.h>
#include <nox/parse/PageScanner.h>
#include <nox/parse/YdFormat.h>
#include <nox/parse/YdStatusLines.h>
#include <nox/util/ByteCount.h>
#include <nox/util/Saturation.h>
#include <nox/util/Utilities.h>

#include <QDebug>
#include <QFile>
#include <QThread>

#include <json/reader.h>
#include <json/value.h>

#include <exception>
#include <string>
#include <utility>

namespace Nox {

namespace {

// The tool's text as the JSON reader gets it: character references and "\u" escapes replaced, in UTF-8.
QByteArray preparedDocument(QString output)
{
    output = Utilities::convertHttpSpecificChar(std::move(output));
    output = Utilities::convertHttpSpecificChar2(std::move(output));
    return output.toUtf8();
}

// Reads the first JSON value of the document. Returns whether there is one; `error` says why not.
bool readDocument(const QByteArray &document, Json::Value &root, std::string &error)
{
    try {
        Json::Reader reader;
        const bool ok = reader.parse(document.constData(), document.constData() + document.size(), root, false);
        if (!ok)
            error = reader.getFormattedErrorMessages();
        return ok;
    } catch (const std::exception &exception) {
        // The reader throws on deep nesting.
        error = exception.what();
        return false;
    }
}

template <size_t Size>
QString text(const Json::Value &object, const char (&name)[Size])
{
    return JsonMembers::toString(JsonMembers::find(object, name), QLatin1String(""));
}

FormatEntry formatEntry(const Json::Value &object)
{
    const auto integer = [&object](const auto &name) {
        return JsonMembers::toInt(JsonMembers::find(object, name), -1);
    };
    FormatEntry entry;
    entry.note = text(object, "format_note");
    entry.audioCodec = text(object, "acodec");
    entry.videoCodec = text(object, "vcodec");
    entry.code = text(object, "format_id");
    entry.extension = text(object, "ext");
    entry.url = text(object, "url");
    entry.resolution = text(object, "resolution");
    entry.height = integer("height");
    entry.width = integer("width");
    const Json::Value *rate = JsonMembers::find(object, "abr");
    entry.audioRate = JsonMembers::toDouble(rate, 0.0);
    entry.audioRateText = JsonMembers::toString(rate, QLatin1String(""));
    return entry;
}

PageDescription pageText(const Json::Value &object)
{
    PageDescription page;
    page.title = text(object, "title");
    page.thumbnail = text(object, "thumbnail");
    page.description = text(object, "description");
    page.duration = JsonMembers::toInt(JsonMembers::find(object, "duration"), 0);
    const Json::Value *formats = JsonMembers::find(object, "formats");
    if (formats == nullptr || !formats->isArray())
        return page;
    for (const Json::Value &entry : *formats)
        page.formats.push_back(formatEntry(entry));
    return page;
}

void fill(WebMediaInfo &info, PageDescription page)
{
    qDebug().noquote() << QStringLiteral("title: %1").arg(page.title);
    info.setTitle(page.title);
    info.setFileName(Utilities::filterInvalidCharsOfFileName(page.title, QStringLiteral(" ")));

    qDebug().noquote() << QStringLiteral("duration: %1").arg(page.duration);
    info.setDuration(page.duration);

    // The largest picture does not exist for every page; the medium one does.
    page.thumbnail.replace(QLatin1String("maxresdefault"), QLatin1String("mqdefault"));
    qDebug().noquote() << QStringLiteral("thumbnail: %1").arg(page.thumbnail);
    info.setThumbnailUrl(page.thumbnail);

    for (const FormatEntry &entry : page.formats) {
        if (auto profile = YdFormat::toProfile(entry, page.description))
            info.addMediaProfileToHead(std::move(*profile));
    }
}

// By the JSON reader, which takes whatever there is and knows the words for what it does not take.
bool readWithReader(QString output, PageDescription &page, std::string &error)
{
    Json::Value root;
    if (!readDocument(preparedDocument(std::move(output)), root, error))
        return false;
    page = pageText(root);
    return true;
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
    std::optional<PageDescription> page = PageScanner::read(output);
    std::string error;
    if (!page && !readWithReader(std::move(output), page.emplace(), error)) {
        NOX_LOG_ERROR("JSON reader.parse error: %s", error.c_str());
        return;
    }
    fill(info, std::move(*page));
}

int YdOutputParser::parseDownloadeInfo(QString text, qint64 &total, qint64 &finish, qint64 &speed)
{
    // A read that names a file never counts as progress.
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
