#include <nox/parse/JsonPageReader.h>

#include <nox/parse/JsonMembers.h>
#include <nox/parse/RealNumbers.h>

#include <exception>

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
        // The reader throws on deep nesting.
        error = exception.what();
        return false;
    }
}

bool readInAnyLocale(const QByteArray &document, Json::Value &root, std::string &error)
{
    if (RealNumbers::isPointUnderstood())
        return readDocument(document, root, error);
    if (readDocument(RealNumbers::withoutPoints(document), root, error))
        return true;
    // The reader's words name places in the document as it is.
    std::string words;
    if (!readDocument(document, root, words))
        error = words;
    return false;
}

template <typename Record, size_t Size>
void readTexts(const Json::Value &object, const PageMembers::Text<Record> (&texts)[Size], Record &record)
{
    for (const PageMembers::Text<Record> &text : texts) {
        const Json::Value *value = JsonMembers::find(object, text.name.data(), text.name.size());
        record.*text.field = JsonMembers::toString(value, QLatin1String(""));
    }
}

FormatEntry formatEntry(const Json::Value &object)
{
    FormatEntry entry;
    readTexts(object, PageMembers::ofFormat, entry);
    entry.height = JsonMembers::toInt(JsonMembers::find(object, "height"), -1);
    entry.width = JsonMembers::toInt(JsonMembers::find(object, "width"), -1);
    entry.audioRate = JsonMembers::toDouble(JsonMembers::find(object, "abr"), 0.0);
    return entry;
}

PageDescription pageDescription(const Json::Value &object)
{
    PageDescription page;
    readTexts(object, PageMembers::ofPage, page);
    page.duration = JsonMembers::toInt(JsonMembers::find(object, "duration"), 0);
    const Json::Value *formats = JsonMembers::find(object, "formats");
    if (formats == nullptr || !formats->isArray())
        return page;
    for (const Json::Value &entry : *formats) {
        if (entry.isObject())
            page.formats.push_back(formatEntry(entry));
    }
    return page;
}

} // namespace

bool JsonPageReader::read(const QByteArray &document, PageDescription &page, std::string &error)
{
    Json::Value root;
    if (!readInAnyLocale(document, root, error))
        return false;
    page = pageDescription(root);
    return true;
}

} // namespace Nox
