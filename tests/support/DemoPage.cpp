#include "tests/support/DemoPage.h"

#include <QCoreApplication>
#include <QStringList>

DemoPage::~DemoPage()
{
    m_server.kill();
    m_server.waitForFinished();
}

bool DemoPage::serve()
{
    constexpr int timeout = 60000; // milliseconds
    const QString scripts = QStringLiteral(NOX_SCRIPTS "/");
    if (QProcess::execute(scripts + QStringLiteral("stage-programs.sh"), {QCoreApplication::applicationDirPath()}) != 0)
        return false;
    m_server.start(scripts + QStringLiteral("demo-server.py"),
                   {QStringLiteral("--media"), m_media.path(), QStringLiteral("--rate"), QStringLiteral("1200000")});
    while (!m_server.canReadLine()) {
        if (!m_server.waitForReadyRead(timeout))
            return false;
    }
    m_url = QString::fromUtf8(m_server.readLine()).trimmed();
    return true;
}

QByteArray DemoPage::codecs(const QString &file)
{
    QProcess probe;
    probe.start(QStringLiteral("ffprobe"),
                {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-show_entries"),
                 QStringLiteral("stream=codec_name"), QStringLiteral("-of"), QStringLiteral("csv=p=0"), file});
    return probe.waitForFinished() ? probe.readAllStandardOutput() : QByteArray();
}
