#pragma once

#include <QDateTime>
#include <QString>

class QFileInfo;

namespace Nox {

/**
 * Tells the files that a download may rename or remove from those that it may not, since the tool's
 * output can be made to name any file of the user's. Own are all files inside the destination's
 * folder, and those elsewhere that were made after the download began. Where the file system does not keep the
 * time when a file was made, no file elsewhere is own.
 */
class OwnFiles
{
public:
    OwnFiles() = default;

    /** For a download that begins now and writes into @p folder. */
    explicit OwnFiles(const QString &folder);

    /** Whether @p file is not there, or the download's own. A symbolic link elsewhere is not. */
    bool contain(const QString &file) const;

private:
    bool isInside(const QFileInfo &info) const;

    QString m_folder;
    QDateTime m_begin;
};

} // namespace Nox
