#include "fuzz/Check.h"

#include <nox/log/Logger.h>

#include <QLoggingCategory>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

// For every target: without the library's log and Qt's messages.
extern "C" int LLVMFuzzerInitialize(int * /*argc*/, char *** /*argv*/)
{
    Nox::Logger::init("/dev/null", Nox::LOG_FATAL, 0);
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
    return 0;
}

void Check::that(bool holds, const char *what)
{
    if (holds)
        return;
    static_cast<void>(std::fprintf(stderr, "does not hold: %s\n", what));
    std::abort();
}

QString Check::text(const std::uint8_t *data, size_t size)
{
    return QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<QString::size_type>(size));
}

bool Check::isComparable(const QString &text)
{
    constexpr auto longest = 2000; // backtracking reaches its limits with longer texts
    constexpr char16_t firstBeyond = 0x800;
    return text.size() <= longest
        && std::all_of(text.cbegin(), text.cend(), [](QChar character) { return character.unicode() < firstBeyond; });
}
