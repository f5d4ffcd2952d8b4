#pragma once

#include <QLocale>

namespace NoxDesk {

/** Makes the application speak the language of @p locale, where there is a translation. */
void installTranslation(const QLocale &locale);

} // namespace NoxDesk
