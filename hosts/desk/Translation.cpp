#include "hosts/desk/Translation.h"

#include <nox/jobs/JobsTranslation.h>

#include <QCoreApplication>
#include <QTranslator>

// Outside of every namespace, as the macro asks for.
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
    // The texts in the source are English, which no file holds.
    if (locale.uiLanguages().value(0).startsWith(QLatin1String("en")))
        return;
    install(locale, QStringLiteral("qtbase"), QStringLiteral(NOX_QT_TRANSLATIONS));
    install(locale, QStringLiteral("nox-desk"), QStringLiteral(":/i18n"));
}

} // namespace NoxDesk
