#pragma once

#include <nox/parse/FormatEntry.h>

#include <QString>

#include <string_view>
#include <vector>

namespace Nox {

/** What the library reads of the tool's description of a page. A member that is missing has its default. */
struct PageDescription {
    QString title = QLatin1String("");
    QString thumbnail = QLatin1String("");
    QString description = QLatin1String("");
    int duration = 0; // in seconds
    std::vector<FormatEntry> formats;
};

/** The text members with their names in JSON. The names of the others stand in the two readers. */
namespace PageMembers {

template <typename Record>
struct Text {
    std::string_view name;
    QString Record::*field;
};

constexpr Text<PageDescription> ofPage[] = {
    {"title", &PageDescription::title},
    {"thumbnail", &PageDescription::thumbnail},
    {"description", &PageDescription::description},
};

constexpr Text<FormatEntry> ofFormat[] = {
    {"format_note", &FormatEntry::note},      {"acodec", &FormatEntry::audioCodec},
    {"vcodec", &FormatEntry::videoCodec},     {"format_id", &FormatEntry::code},
    {"ext", &FormatEntry::extension},         {"url", &FormatEntry::url},
    {"resolution", &FormatEntry::resolution}, {"abr", &FormatEntry::audioRateText},
};

} // namespace PageMembers

} // namespace Nox
