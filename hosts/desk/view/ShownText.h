#pragma once

#include <QString>

namespace NoxDesk {

/** Texts from outside, made fit to be shown. */
class ShownText
{
public:
    ShownText() = delete;

    /** The first @p most characters of @p text, as a reader counts them, and an ellipsis when there are more. */
    static QString cut(const QString &text, int most);

    /** @p text as rich text that means just this text, and may be broken into lines inside words, too. */
    static QString breakable(const QString &text);
};

} // namespace NoxDesk
