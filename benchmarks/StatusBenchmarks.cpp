#include "benchmarks/MicroBenchmarks.h"
#include "benchmarks/Paired.h"

#include <nox/parse/YdOutputParser.h>

#include <QRegularExpression>

namespace {

using Paired::Mismatch;
using Paired::Sides;

constexpr int mebi = 1 << 20; // characters

constexpr char16_t progressLine[] = u"\r[download]  45.3% of 12.34MiB at 1.23MiB/s ETA 00:05";

// Returns the total that the text tells, or -2 for none.
qint64 readTotal(const QString &text)
{
    qint64 total = -2;
    qint64 finish = 0;
    qint64 speed = 0;
    Nox::YdOutputParser::instance()->parseDownloadeInfo(text, total, finish, speed);
    return total;
}

double readTime(const QString &text)
{
    return Paired::processorTimeOf([&text] {
        if (readTotal(text) != -2)
            throw Mismatch("the long text counts as progress");
    });
}

QString repeated(const QString &piece, int length)
{
    QString text;
    text.reserve(length);
    while (text.size() + piece.size() <= length)
        text += piece;
    return text;
}

// Half progress lines, half tags without a line, and a destination line at the end.
QString mixedText(int length)
{
    const QString end = QStringLiteral("\n[download] Destination: /tmp/clip.mp4\n");
    const int half = length / 2 - static_cast<int>(end.size());
    return repeated(QString::fromUtf16(progressLine), half) + repeated(QStringLiteral("[download] "), half) + end;
}

// Only beginnings of lines.
QString fruitlessText(int length)
{
    return repeated(QStringLiteral("[download] Destination: [download] 45.3% of 12.34MiB at 9/s/s has already been"),
                    length);
}

// Digits and word characters that could belong to a size, up to the end.
QString sizeText(int length)
{
    return QStringLiteral("[download] 45.3% of ") + repeated(QStringLiteral("12.34atMiB"), length);
}

Sides doubled(QString (*makeText)(int length))
{
    return {[text = makeText(4 * mebi)] { return readTime(text); },
            [text = makeText(2 * mebi)] { return readTime(text); }};
}

Sides oneLineAgainstMatches()
{
    constexpr int runs = 2000;
    constexpr int matches = 3;
    QRegularExpression pattern(
        QStringLiteral(R"(\[download\]\s*(\d+(\.\d+)?)%\s*of\s*((\d+(\.\d+)?)\w*)\s*at\s*([^\s\n\r]*/s)\s*ETA)"));
    pattern.optimize();
    const QString line = QString::fromUtf16(progressLine);
    const auto read = [line] {
        return Paired::processorTimeOf([&line] {
            for (int i = 0; i < runs; ++i) {
                if (readTotal(line) != 12939427 && readTotal(line) != 12939428)
                    throw Mismatch("the progress line was not read");
            }
        });
    };
    const auto match = [line, pattern] {
        return Paired::processorTimeOf([&] {
            for (int i = 0; i < runs * matches; ++i) {
                if (!pattern.match(line).hasMatch())
                    throw Mismatch("the pattern does not match the progress line");
            }
        });
    };
    return {read, match};
}

} // namespace

void MicroBenchmarks::addStatusTexts()
{
    Paired::add({"status: 4 MB / 2 MB, mixed", 2.2, 60, [] { return doubled(mixedText); }});
    Paired::add({"status: 4 MB / 2 MB, nothing that counts", 2.2, 60, [] { return doubled(fruitlessText); }});
    Paired::add({"status: 4 MB / 2 MB, one endless size", 2.2, 60, [] { return doubled(sizeText); }});
    Paired::add({"status: one line / 3 bare matches", 1.0, 60, oneLineAgainstMatches});
}
