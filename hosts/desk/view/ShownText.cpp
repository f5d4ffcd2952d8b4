#include "hosts/desk/view/ShownText.h"

#include <QTextBoundaryFinder>

namespace NoxDesk {

namespace {

constexpr int maximumCharacters = 2000;
constexpr int unbrokenCharacters = 40; // a longer word may wrap

} // namespace

QString ShownText::cut(const QString &text, int most)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    for (int i = 0; i < most; ++i) {
        if (finder.toNextBoundary() < 0)
            return text;
    }
    return finder.position() < text.size() ? text.left(finder.position()) + QStringLiteral("…") : text;
}

QString ShownText::breakable(const QString &text)
{
    if (text.isEmpty())
        return {};
    QString result;
    const QString shown = cut(text, maximumCharacters);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, shown);
    int unbroken = 0;
    for (auto start = finder.position(), end = finder.toNextBoundary(); end >= 0; end = finder.toNextBoundary()) {
        const QString character = shown.mid(start, end - start);
        unbroken = character.at(0).isSpace() ? 0 : unbroken + 1;
        result += character == QLatin1String("\n") ? QStringLiteral("<br>") : character.toHtmlEscaped();
        if (unbroken == unbrokenCharacters) {
            result += QChar(0x200b); // zero-width space: allows a line break
            unbroken = 0;
        }
        start = end;
    }
    return QStringLiteral("<qt>%1</qt>").arg(result);
}

} // namespace NoxDesk
