#pragma once

#include <nox/model/MediaProfile.h>

#include <QString>

class TestSandbox;

/** The first column of a table, see WorkerTable. */
class Setup
{
public:
    Setup(const QString &text, TestSandbox &sandbox);

    const Nox::MediaProfile &profile() const { return m_profile; }
    const QString &destination() const { return m_destination; }

    /** Address of the page. The tool gets it without the part behind "&". */
    static QString url();

private:
    Nox::MediaProfile m_profile;
    QString m_destination;
};
