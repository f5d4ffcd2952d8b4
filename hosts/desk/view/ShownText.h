#pragma once

#include <QString>

/** Makes texts from outside safe to show. */
namespace NoxDesk::ShownText {

/** The first @p most user-perceived characters of @p text, and an ellipsis if there are more. */
QString cut(const QString &text, int most);

/** @p text as rich text without markup, which may also wrap inside long words. */
QString breakable(const QString &text);

} // namespace NoxDesk::ShownText
