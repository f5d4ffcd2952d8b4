#pragma once

#include <QString>

namespace NoxDesk {

/** Makes texts from outside safe to show. */
class ShownText
{
public:
    ShownText() = delete;

    /** The first @p most user-perceived characters of @p text, and an ellipsis if there are more. */
    static QString cut(const QString &text, int most);

    /** @p text as rich text without markup, which may also wrap inside long words. */
    static QString breakable(const QString &text);
};

} // namespace NoxDesk
