#pragma once

#include <QProcess>
#include <QTemporaryDir>

/**
 * The demonstration page, served on the loopback address while this object lives; its streams are 137
 * (H.264 video) and 140 (AAC audio). Puts the real external programs into the application folder.
 */
class DemoPage
{
public:
    ~DemoPage();

    /** Makes the clip, stages the programs and starts the server; false when one of them fails. */
    bool serve();

    QString url() const { return m_url; }

private:
    QTemporaryDir m_media;
    QProcess m_server;
    QString m_url;
};
