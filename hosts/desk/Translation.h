#pragma once

#include <QLocale>

namespace NoxDesk {

/** Installs the translations for the language of @p locale, if there are any. */
void installTranslation(const QLocale &locale);

} // namespace NoxDesk
