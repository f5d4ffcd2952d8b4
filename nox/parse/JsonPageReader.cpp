#include <nox/parse/JsonPageReader.h>

#include <nox/parse/JsonHelper.h>

#include <algorithm>
#include <exception>
#include <string_view>
#include <utility>

#include <json/reader.h>
#include <json/value.h>

namespace Nox {

namespace {

// Reads the first JSON value of the document.
bool readDocument(const QByteArray &document, Json::Value &root, std::string &error)
{
    try {
        Json::Reader reader;
        const bool ok = reader.parse(document.constData(), document.constData() + document.size(), root, false);
        if (!ok)
            error = reader.getFormattedErrorMessages();
        return ok;
    } catch (const std::exception &exception) {
        // jsoncpp throws on deep nesting.
        error = exception.what();
        return false;
    }
}

// The end of the comment that begins here, or the next character if no comment begins.
const char *commentEnd(const char *begin, const char *end)
{
    const std::string_view rest(begin, static_cast<size_t>(end - begin));
    size_t length = 1;
    if (rest.substr(0, 2) == "/*")
        length = std::min(rest.find("*/", 2), rest.size() - 2) + 2;
    else if (rest.substr(0, 2) == "//")
        length = std::min(rest.find_first_of("\r\n"), rest.size());
    return begin + length;
}

// Newer versions of jsoncpp refuse control characters in strings. All versions read their escapes.
QByteArray withEscapedControls(const QByteArray &document)
{
    QByteArray result;
    const char *const end = document.constData() + document.size();
    bool isInString = false;
    for (const char *at = document.constData(); at != end;) {
        if (isInString && static_cast<unsigned char>(*at) < 0x20) {
            result += "\\u00" + QByteArray(1, *at++).toHex();
            continue;
        }
        const char *next = at + 1;
        if (*at == '"')
            isInString = !isInString;
        else if (isInString && *at == '\\' && next != end)
            ++next; // the character behind a backslash never ends the string
        else if (!isInString && *at == '/')
            next = commentEnd(at, end);
        result.append(at, static_cast<QByteArray::size_type>(next - at));
        at = next;
    }
    return result;
}

// The error is that of the unchanged document, because the message names positions in it.
bool readAnyDocument(const QByteArray &document, Json::Value &root, std::string &error)
{
    if (readDocument(document, root, error))
        return true;
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20; };
    std::string secondError;
    return std::any_of(document.begin(), document.end(), isControl)
        && readDocument(withEscapedControls(document), root, secondError);
}

template <typename Record, size_t Size>
void readTexts(const Json::Value &object, const PageMembers::Text<Record> (&texts)[Size], Record &record)
{
    for (const PageMembers::Text<Record> &text : texts) {
        const QLatin1String name(text.name.data(), static_cast<int>(text.name.size()));
        record.*text.field = JsonHelper::getString(object, name, QLatin1String(""));
    }
}

FormatEntry formatEntry(const Json::Value &object)
{
    FormatEntry entry;
    readTexts(object, PageMembers::ofFormat, entry);
    entry.height = JsonHelper::getInt(object, QStringLiteral("height"), -1);
    entry.width = JsonHelper::getInt(object, QStringLiteral("width"), -1);
    entry.audioRate = JsonHelper::getDouble(object, QStringLiteral("abr"), 0.0);
    return entry;
}

PageDescription pageDescription(const Json::Value &object)
{
    PageDescription page;
    readTexts(object, PageMembers::ofPage, page);
    page.duration = JsonHelper::getInt(object, QStringLiteral("duration"), 0);
    if (!object.isObject() || !object["formats"].isArray())
        return page;
    for (const Json::Value &entry : object["formats"]) {
        if (!entry.isObject())
            continue;
        if (FormatEntry read = formatEntry(entry); !read.extension.isEmpty()) // else it is no stream
            page.formats.push_back(std::move(read));
    }
    return page;
}

} // namespace

bool JsonPageReader::read(const QByteArray &document, PageDescription &page, std::string &error)
{
    Json::Value root;
    if (!readAnyDocument(document, root, error))
        return false;
    page = pageDescription(root);
    return true;
}

} // namespace Nox
