#pragma once

#include <nox/model/MediaProfile.h>

#include <QString>

class TestSandbox;

/** What the first column of a table says, see WorkerTable. */
class Setup
{
public:
    Setup(const QString &words, TestSandbox &stage);

    const Nox::MediaProfile &profile() const { return m_profile; }
    const QString &destination() const { return m_destination; }

    /** Page address; what is behind its "&" does not reach the tool. */
    static QString url();

private:
    Nox::MediaProfile m_profile;
    QString m_destination;
};
