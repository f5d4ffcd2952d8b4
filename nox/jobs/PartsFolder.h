#pragma once

#include <nox/jobs/DownloadRecord.h>

#include <QString>

namespace Nox {

/**
 * The folder "parts" in the private folder of a download that can be resumed. The front of the tool keeps the partial
 * files there, under its own names. The job keeps a record of the download there. A value.
 */
class PartsFolder
{
public:
    static constexpr int expiryDays = 30;

    /** The folder for parts in the private folder @p folder; it need not exist. */
    explicit PartsFolder(const QString &folder);

    static QString folderName() { return QStringLiteral("parts"); }

    /** Whether the folder exists, belongs to the user and is not a symbolic link. */
    bool exists() const;

    /** Creates the folder if it is missing, and writes @p record into it. @return the error message; empty on success
     */
    QString write(const DownloadRecord &record) const;

    /** The stored record; an incomplete one if it is missing or cannot be read. */
    DownloadRecord record() const;

    /** Size of the partial files in bytes. */
    qint64 bytes() const;

    /** Whether nothing in it has changed for #expiryDays. */
    bool isExpired() const;

private:
    QString m_path;
};

} // namespace Nox
