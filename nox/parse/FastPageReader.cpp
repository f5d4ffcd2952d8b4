#include <nox/parse/FastPageReader.h>

#include <limits>
#include <utility>

#include <simdjson.h>

namespace Nox {

namespace {

namespace dom = simdjson::dom;

// Half of what jsoncpp accepts. Pages have some five levels.
constexpr size_t deepestNesting = 500;

template <typename Value>
bool take(dom::element element, Value &value)
{
    return element.get(value) == simdjson::SUCCESS;
}

QString text(dom::element element)
{
    std::string_view utf8;
    return take(element, utf8) ? QString::fromUtf8(utf8.data(), static_cast<QString::size_type>(utf8.size()))
                               : QString(QLatin1String(""));
}

int whole(dom::element element, int defaultValue)
{
    using Limits = std::numeric_limits<int>;
    std::int64_t number = 0;
    const bool isInt = take(element, number) && number >= Limits::min() && number <= Limits::max();
    return isInt ? static_cast<int>(number) : defaultValue;
}

double real(dom::element element)
{
    double number = 0;
    return take(element, number) ? number : 0;
}

template <typename Record, size_t Size>
void readText(const dom::key_value_pair &member, const PageMembers::Text<Record> (&texts)[Size], Record &record)
{
    for (const PageMembers::Text<Record> &candidate : texts) {
        if (candidate.name == member.key) {
            record.*candidate.field = text(member.value);
            return;
        }
    }
}

// Here and below, the last of several members of one name counts, as with jsoncpp.
FormatEntry formatEntry(const dom::object &object)
{
    FormatEntry entry;
    for (const dom::key_value_pair member : object) {
        readText(member, PageMembers::ofFormat, entry);
        if (member.key == "height")
            entry.height = whole(member.value, -1);
        else if (member.key == "width")
            entry.width = whole(member.value, -1);
        else if (member.key == "abr")
            entry.audioRate = real(member.value);
    }
    return entry;
}

std::vector<FormatEntry> formatEntries(dom::element element)
{
    std::vector<FormatEntry> entries;
    dom::array array;
    if (!take(element, array))
        return entries;
    for (const dom::element entry : array) {
        dom::object object;
        if (!take(entry, object))
            continue;
        if (FormatEntry read = formatEntry(object); !read.extension.isEmpty()) // else it is no stream
            entries.push_back(std::move(read));
    }
    return entries;
}

PageDescription page(const dom::object &object)
{
    PageDescription page;
    for (const dom::key_value_pair member : object) {
        readText(member, PageMembers::ofPage, page);
        if (member.key == "duration")
            page.duration = whole(member.value, 0);
        else if (member.key == "formats")
            page.formats = formatEntries(member.value);
    }
    return page;
}

bool parse(QByteArray &document, dom::document &parsed)
{
    const auto size = static_cast<size_t>(document.size());
    // simdjson reads whole blocks, and so beyond the end.
    document.append(static_cast<QByteArray::size_type>(simdjson::SIMDJSON_PADDING), '\0');
    // toUtf8() reserves three bytes per character. With so much spare memory, glibc's malloc() returned the memory to
    // the system after each page, and the next page took twenty times as long.
    document.squeeze();
    dom::parser parser;
    const bool ok = parser.allocate(size, deepestNesting) == simdjson::SUCCESS
        && parser.parse_into_document(parsed, document.constData(), size, false).error() == simdjson::SUCCESS;
    document.resize(static_cast<QByteArray::size_type>(size));
    return ok;
}

} // namespace

std::optional<PageDescription> FastPageReader::read(QByteArray &document)
{
    const std::string_view text(document.constData(), static_cast<size_t>(document.size()));
    // jsoncpp differs on a byte-order mark in front, and on escapes of a NUL or of half a surrogate pair.
    if (text.empty() || text.front() != '{' || text.find("\\u") != std::string_view::npos)
        return std::nullopt;
    dom::document parsed;
    dom::object object;
    if (!parse(document, parsed) || !take(parsed.root(), object))
        return std::nullopt;
    return page(object);
}

} // namespace Nox
