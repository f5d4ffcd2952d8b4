#include "hosts/desk/Translation.h"

#include <nox/jobs/JobsTranslation.h>

#include <QCoreApplication>
#include <QTranslator>

// Q_INIT_RESOURCE must stand outside of every namespace.
static void initResources() // NOLINT(misc-use-anonymous-namespace)
{
    Q_INIT_RESOURCE(desk);
}

namespace NoxDesk {

namespace {

void install(const QLocale &locale, const QString &name, const QString &folder)
{
    auto *translator = new QTranslator(QCoreApplication::instance());
    if (translator->load(locale, name, QStringLiteral("_"), folder)) {
        QCoreApplication::installTranslator(translator);
    } else {
        delete translator;
    }
}

} // namespace

void installTranslation(const QLocale &locale)
{
    initResources();
    Nox::installJobsTranslation(locale);
    // English needs no file: it is the language of the source.
    if (locale.uiLanguages().value(0).startsWith(QLatin1String("en")))
        return;
    install(locale, QStringLiteral("qtbase"), QStringLiteral(NOX_QT_TRANSLATIONS));
    install(locale, QStringLiteral("nox-desk"), QStringLiteral(":/i18n"));
}

} // namespace NoxDesk
