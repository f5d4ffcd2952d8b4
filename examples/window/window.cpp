// window [URL]: a window with an address, the progress, and a button that downloads or cancels.

#include <nox/NoxWebMedia.h>
#include <nox/NoxWebMediaJobs.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QStandardPaths>
#include <QVBoxLayout>

#include <memory>

class Window : public QWidget
{
public:
    explicit Window(const QString &address)
        : m_address(new QLineEdit(address))
        , m_button(new QPushButton(QStringLiteral("Download")))
        , m_bar(new QProgressBar)
        , m_message(new QLabel)
    {
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(m_address);
        layout->addWidget(m_button);
        layout->addWidget(m_bar);
        layout->addWidget(m_message);
        m_message->setTextFormat(Qt::PlainText); // titles come from the web
        connect(m_button, &QPushButton::clicked, this, [this] {
            if (m_download != nullptr && m_download->isRunning())
                m_download->cancel();
            else if (m_page != nullptr && m_page->isRunning())
                m_page->cancel();
            else
                read();
        });
        if (!address.isEmpty())
            read();
    }

private:
    void read()
    {
        m_page = std::make_unique<Nox::PageJob>(Nox::UrlCheck::corrected(m_address->text()));
        connect(m_page.get(), &Nox::Job::finished, this, &Window::download);
        m_button->setText(QStringLiteral("Cancel"));
        m_bar->setRange(0, 0);
        m_message->setText(QStringLiteral("Reading the page"));
        m_page->start();
    }

    void download()
    {
        const QString folder = QStandardPaths::writableLocation(QStandardPaths::MoviesLocation);
        m_download = std::make_unique<Nox::DownloadJob>(*m_page, folder);
        connect(m_download.get(), &Nox::DownloadJob::figuresChanged, this, [this](const Nox::TransferFigures &figures) {
            m_bar->setRange(0, figures.total() > 0 ? 100 : 0);
            m_bar->setValue(figures.percent());
        });
        connect(m_download.get(), &Nox::Job::finished, this, [this] {
            const bool isSaved = m_download->error() == Nox::Job::NoError;
            m_button->setText(QStringLiteral("Download"));
            m_bar->setRange(0, 100);
            m_message->setText(isSaved ? m_download->filePath() : m_download->errorString());
        });
        m_message->setText(m_page->title());
        m_download->start();
    }

    QLineEdit *m_address;
    QPushButton *m_button;
    QProgressBar *m_bar;
    QLabel *m_message;
    std::unique_ptr<Nox::PageJob> m_page;
    std::unique_ptr<Nox::DownloadJob> m_download;
};

int main(int argc, char *argv[])
{
    const QApplication app(argc, argv);
    Nox::Logger::init("/dev/null", Nox::LOG_ERROR, 0);
    Nox::ToolSetup::prepareEnvironment();
    Nox::installJobsTranslation();
    Window window(QCoreApplication::arguments().value(1));
    window.show();
    return QApplication::exec();
}
