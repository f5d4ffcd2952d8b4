#pragma once

#include <QDateTime>
#include <QString>

class QFileInfo;

namespace Nox {

/**
 * Decides which files a download may rename or remove. A page can make the tool's output name any file of the user's.
 * The download owns all files in the destination's folder, and files elsewhere that were made after it began. If
 * the file system does not record the time of creation, it owns no file elsewhere.
 */
class OwnFiles
{
public:
    OwnFiles() = default;

    /** For a download into @p folder that begins now. */
    explicit OwnFiles(const QString &folder);

    /** Whether @p file is missing or belongs to the download. A symbolic link outside the folder never does. */
    bool mayModify(const QString &file) const;

private:
    bool isInside(const QFileInfo &info) const;

    QString m_folder;
    QDateTime m_begin;
};

} // namespace Nox
