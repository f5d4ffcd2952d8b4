#pragma once

#include <QString>

#include <ctime>

namespace Nox {

/**
 * Tells the files that a download may rename or remove from those that it may not, since the tool's
 * output can be made to name any file of the user's. Own are all files inside the destination's
 * folder, and those elsewhere that were not there when the download began.
 */
class OwnFiles
{
public:
    OwnFiles() = default;

    /** For a download that begins now and writes into @p folder. */
    explicit OwnFiles(const QString &folder);

    /** Whether @p file is not there, or the download's own. A symbolic link counts as itself, not as its target. */
    bool contain(const QString &file) const;

private:
    bool isInside(const QString &file) const;

    QString m_folder;
    std::timespec m_begin{};
};

} // namespace Nox
