#include "tests/support/Setup.h"

#include "tests/support/TestSandbox.h"

#include <nox/log/Logger.h>

#include <QFile>

using namespace Nox;

namespace {

void provide(TestSandbox::Program program, const QString &condition)
{
    TestSandbox::provide(program,
                         condition == QLatin1String("missing") ? TestSandbox::Missing : TestSandbox::NotExecutable);
}

} // namespace

Setup::Setup(const QString &text, TestSandbox &sandbox)
    : m_destination(sandbox.folder() + QStringLiteral("/clip.mp4"))
{
    m_profile.setName(QStringLiteral("137"));
    m_profile.setFormat(QStringLiteral("MP4"));
    m_profile.setMediaType(MEDIA_TYPE_VIDEO);
    m_profile.setVResolution(QSize(1920, 1080));
    for (const QString &item : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const QString name = item.section(QLatin1Char('='), 0, 0);
        const QString value = item.section(QLatin1Char('='), 1);
        if (name == QLatin1String("two") || name == QLatin1String("dash"))
            m_profile.setDash(true);
        if (name == QLatin1String("two") || name == QLatin1String("audiocode"))
            m_profile.setPreferredDashAudioYdCode(QStringLiteral("140"));
        else if (name == QLatin1String("audio"))
            m_profile.setMediaType(MEDIA_TYPE_AUDIO);
        else if (name == QLatin1String("code"))
            m_profile.setName(value);
        else if (name == QLatin1String("size"))
            m_profile.setSize(value.toLongLong());
        else if (name == QLatin1String("dest"))
            m_destination = value;
        else if (name == QLatin1String("has"))
            sandbox.putFile(value);
        else if (name == QLatin1String("elsewhere"))
            sandbox.putFileElsewhere(value);
        else if (name == QLatin1String("link"))
            QFile::link(sandbox.path(QString()), sandbox.folder() + QLatin1Char('/') + value);
        else if (name == QLatin1String("python"))
            provide(TestSandbox::Interpreter, value);
        else if (name == QLatin1String("ffmpeg"))
            provide(TestSandbox::Ffmpeg, value);
        else if (name == QLatin1String("log"))
            Logger::init(value.toStdString(), LOG_DEBUG, LOG_OUT_FILE);
        else if (name != QLatin1String("dash"))
            qFatal("unknown item of a setup: %s", qPrintable(item));
    }
}

QString Setup::url()
{
    return QStringLiteral("http://127.0.0.1/watch?v=1&list=2");
}
