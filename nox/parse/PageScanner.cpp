#include <nox/parse/PageScanner.h>

#include <nox/parse/PlainJsonScanner.h>

#include <iterator>
#include <limits>
#include <utility>

namespace Nox {

namespace {

using Scalar = PlainJsonScanner::Scalar;

// The members of one object that have been read. Of a member that comes twice the JSON reader keeps the
// last, so that a second one is a reason to ask it.
class SeenMembers
{
public:
    bool isFirst(size_t member)
    {
        const unsigned bit = 1U << member;
        const bool isNew = (m_bits & bit) == 0;
        m_bits |= bit;
        return isNew;
    }

private:
    unsigned m_bits = 0;
};

struct TextMember {
    QLatin1String name;
    QString FormatEntry::*field;
};

constexpr TextMember textMembers[] = {
    {QLatin1String("format_note"), &FormatEntry::note},      {QLatin1String("acodec"), &FormatEntry::audioCodec},
    {QLatin1String("vcodec"), &FormatEntry::videoCodec},     {QLatin1String("format_id"), &FormatEntry::code},
    {QLatin1String("ext"), &FormatEntry::extension},         {QLatin1String("url"), &FormatEntry::url},
    {QLatin1String("resolution"), &FormatEntry::resolution},
};

bool readText(PlainJsonScanner &scanner, QString &result)
{
    Scalar value;
    if (!scanner.readScalar(value))
        return false;
    if (value.kind == Scalar::Kind::Text)
        result = std::move(value.text);
    return true;
}

bool readInt(PlainJsonScanner &scanner, int &result)
{
    using Limits = std::numeric_limits<int>;
    Scalar value;
    if (!scanner.readScalar(value))
        return false;
    if (value.kind == Scalar::Kind::Whole && value.number >= Limits::min() && value.number <= Limits::max())
        result = static_cast<int>(value.number);
    return true;
}

bool readRate(PlainJsonScanner &scanner, FormatEntry &entry)
{
    Scalar value;
    if (!scanner.readScalar(value))
        return false;
    if (value.kind == Scalar::Kind::Text)
        entry.audioRateText = std::move(value.text);
    else
        entry.audioRate = value.number;
    return true;
}

bool readFormatMember(PlainJsonScanner &scanner, QStringView name, FormatEntry &entry, SeenMembers &seen)
{
    if (name.isNull())
        return false;
    constexpr size_t textCount = std::size(textMembers);
    for (size_t i = 0; i < textCount; ++i) {
        if (name == textMembers[i].name)
            return seen.isFirst(i) && readText(scanner, entry.*textMembers[i].field);
    }
    if (name == QLatin1String("height"))
        return seen.isFirst(textCount) && readInt(scanner, entry.height);
    if (name == QLatin1String("width"))
        return seen.isFirst(textCount + 1) && readInt(scanner, entry.width);
    if (name == QLatin1String("abr"))
        return seen.isFirst(textCount + 2) && readRate(scanner, entry);
    return scanner.skipValue();
}

bool readFormat(PlainJsonScanner &scanner, std::vector<FormatEntry> &formats)
{
    if (!scanner.isNext(u'{'))
        return scanner.skipValue();
    SeenMembers seen;
    FormatEntry &entry = formats.emplace_back();
    return scanner.readObject([&](QStringView name) { return readFormatMember(scanner, name, entry, seen); });
}

bool readFormats(PlainJsonScanner &scanner, std::vector<FormatEntry> &formats)
{
    if (!scanner.isNext(u'['))
        return scanner.skipValue();
    return scanner.readArray([&] { return readFormat(scanner, formats); });
}

bool readPageMember(PlainJsonScanner &scanner, QStringView name, PageDescription &page, SeenMembers &seen)
{
    if (name.isNull())
        return false;
    if (name == QLatin1String("title"))
        return seen.isFirst(0) && readText(scanner, page.title);
    if (name == QLatin1String("duration"))
        return seen.isFirst(1) && readInt(scanner, page.duration);
    if (name == QLatin1String("thumbnail"))
        return seen.isFirst(2) && readText(scanner, page.thumbnail);
    if (name == QLatin1String("description"))
        return seen.isFirst(3) && readText(scanner, page.description);
    if (name == QLatin1String("formats"))
        return seen.isFirst(4) && readFormats(scanner, page.formats);
    return scanner.skipValue();
}

} // namespace

std::optional<PageDescription> PageScanner::read(QStringView text)
{
    PlainJsonScanner scanner(text);
    PageDescription page;
    SeenMembers seen;
    if (!scanner.readObject([&](QStringView name) { return readPageMember(scanner, name, page, seen); }))
        return std::nullopt;
    return page;
}

} // namespace Nox
