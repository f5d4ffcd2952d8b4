// The status text of a download, against the regular expressions for which the matchers stand.

#include "fuzz/Check.h"

#include <nox/parse/YdOutputParser.h>
#include <nox/parse/YdStatusLines.h>
#include <nox/util/Utilities.h>

#include <QRegularExpression>

namespace {

using Nox::Utilities;
namespace YdStatusLines = Nox::YdStatusLines;

QRegularExpression pattern(const char *text)
{
    QRegularExpression result(QString::fromLatin1(text),
                              QRegularExpression::DotMatchesEverythingOption
                                  | QRegularExpression::UseUnicodePropertiesOption);
    result.optimize();
    return result;
}

// Whether one capture of the expression's first match is what the matcher found.
bool isSame(const QRegularExpressionMatch &match, int group, bool isFound, QStringView found)
{
    return match.hasMatch() == isFound && (!isFound || match.captured(group) == found);
}

void checkProgress(const QString &text)
{
    static const QRegularExpression progress = pattern(
        R"(\[download\]\s*(\d+(\.\d+)?)%\s*of\s*((\d+(\.\d+)?)[\p{L}\p{N}\p{M}_]*)\s*at\s*([^\s\n\r]*/s)\s*ETA)");
    const auto match = progress.match(text);
    if (!match.isValid())
        return;
    const auto found = YdStatusLines::findProgress(text);
    Check::that(isSame(match, 1, found.has_value(), found ? found->percentage : QStringView()), "the percentage");
    Check::that(isSame(match, 3, found.has_value(), found ? found->size : QStringView()), "the size");
    Check::that(isSame(match, 6, found.has_value(), found ? found->speed : QStringView()), "the speed");
}

void checkNames(const QString &text)
{
    static const QRegularExpression destination = pattern(R"(\[download\] Destination: (([^\r\n]+)\.([^\r\n]*)))");
    static const QRegularExpression present = pattern(R"(\[download\] (.*) has already been downloaded\s)");
    if (const auto match = destination.match(text); match.isValid()) {
        const auto found = YdStatusLines::findDestination(text);
        Check::that(isSame(match, 1, found.has_value(), found.value_or(QStringView())), "the destination");
    }
    if (const auto match = present.match(text); match.isValid()) {
        const auto found = YdStatusLines::findAlreadyDownloaded(text);
        Check::that(isSame(match, 1, found.has_value(), found.value_or(QStringView())), "the file that is there");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, size_t size)
{
    const QString text = Check::text(data, size);
    constexpr qint64 untouched = -2;
    qint64 total = untouched;
    qint64 finish = untouched;
    qint64 speed = untouched;
    Check::that(Nox::YdOutputParser::instance()->parseDownloadeInfo(text, total, finish, speed) == 0,
                "the result is 0");

    const auto progress = YdStatusLines::findProgress(text);
    if (YdStatusLines::findDestination(text) || YdStatusLines::findAlreadyDownloaded(text) || !progress) {
        Check::that(total == untouched && finish == untouched && speed == untouched, "no figures without progress");
    } else {
        Check::that(total == Utilities::getBytes(progress->size.toString()), "the total is that of the size");
        Check::that(speed == Utilities::getBytes(progress->speed.toString()), "the speed is that of the speed");
        Check::that(total < 0 || finish >= 0, "what is done is no negative count");
    }
    if (Check::isComparable(text)) {
        checkProgress(text);
        checkNames(text);
    }
    return 0;
}
