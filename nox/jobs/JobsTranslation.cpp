#include <nox/jobs/JobsTranslation.h>

#include <QCoreApplication>
#include <QTranslator>

// Outside of every namespace, as the macro asks for.
static void initResources() // NOLINT(misc-use-anonymous-namespace)
{
    Q_INIT_RESOURCE(noxwebmediajobs);
}

namespace Nox {

bool installJobsTranslation(const QLocale &locale)
{
    initResources();
    auto *const application = QCoreApplication::instance();
    const QString name = QStringLiteral("noxwebmediajobs");
    delete application->findChild<QTranslator *>(name, Qt::FindDirectChildrenOnly);
    // The texts in the source are English, which no file holds.
    if (locale.uiLanguages().value(0).startsWith(QLatin1String("en")))
        return true;
    auto *translator = new QTranslator(application);
    translator->setObjectName(name);
    const bool isInstalled = translator->load(locale, name, QStringLiteral("_"), QStringLiteral(":/noxwebmedia/i18n"))
        && QCoreApplication::installTranslator(translator);
    if (!isInstalled)
        delete translator;
    return isInstalled;
}

} // namespace Nox
