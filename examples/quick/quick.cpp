// quick [URL]: the window of the other example in QML, which is bound to the properties of the jobs.

#include <nox/NoxWebMedia.h>
#include <nox/NoxWebMediaJobs.h>

#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QStandardPaths>

/** Makes jobs for the window. QML takes no part in deleting them: they have a parent. */
class Downloads : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    Q_INVOKABLE QObject *readPage(const QString &address)
    {
        delete m_page;
        m_page = new Nox::PageJob(Nox::UrlCheck::corrected(address), Nox::ToolSetup(), this);
        return m_page;
    }

    Q_INVOKABLE QObject *downloadBest()
    {
        return new Nox::DownloadJob(*m_page, QStandardPaths::writableLocation(QStandardPaths::MoviesLocation), m_page);
    }

private:
    Nox::PageJob *m_page = nullptr;
};

int main(int argc, char *argv[])
{
    const QGuiApplication app(argc, argv);
    Nox::Logger::init("/dev/null", Nox::LOG_ERROR, 0);
    Nox::ToolSetup::prepareEnvironment();
    Nox::installJobsTranslation();
    Downloads downloads;
    QQmlApplicationEngine engine;
    engine.setInitialProperties({
        {QStringLiteral("downloads"), QVariant::fromValue(&downloads)},
        {QStringLiteral("firstAddress"), QCoreApplication::arguments().value(1)},
    });
    engine.load(QUrl(QStringLiteral("qrc:/quick.qml")));
    return engine.rootObjects().isEmpty() ? 1 : QGuiApplication::exec();
}

#include "quick.moc"
