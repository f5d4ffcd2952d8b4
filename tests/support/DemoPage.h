#pragma once

#include <QProcess>
#include <QTemporaryDir>

/**
 * The demonstration page, served on the loopback address while this object exists. Its streams are 137 (H.264 video)
 * and 140 (AAC audio). Puts the real external programs into the application folder.
 */
class DemoPage
{
public:
    ~DemoPage();

    /** Provides the programs and starts the server, which makes the clip; false on failure. */
    bool serve();

    QString url() const { return m_url; }
    QString mediaFolder() const { return m_media.path(); } ///< with video.mp4 and audio.m4a

    /** The codecs of the streams in the media file @p file, each with a line end; empty on failure. */
    static QByteArray codecs(const QString &file);

private:
    QTemporaryDir m_media;
    QProcess m_server;
    QString m_url;
};
