#pragma once

#include <nox/jobs/DownloadRecord.h>

#include <QString>

namespace Nox {

/**
 * The folder "parts" in the private folder of a download that can be gone on with. The front of the tool keeps there
 * what it has fetched, under names of its own, and the job a record of what the download is to do. A value.
 */
class PartsFolder
{
public:
    static constexpr int expiryDays = 30;

    /** The one in the private folder @p folder, whether it is there or not. */
    explicit PartsFolder(const QString &folder);

    static QString folderName() { return QStringLiteral("parts"); }

    /** Whether it is there: a folder of the user's own, and no link to one. */
    bool exists() const;

    /** Makes it where it is missing, and writes @p record into it. @return why that failed; empty when it did not */
    QString write(const DownloadRecord &record) const;

    /** The record in it; an incomplete one where there is none that can be read. */
    DownloadRecord record() const;

    /** Bytes that have been fetched into it. */
    qint64 bytes() const;

    /** Whether nobody has worked in it for #expiryDays. */
    bool isExpired() const;

private:
    QString m_path;
};

} // namespace Nox
