#pragma once

#include <QString>
#include <QStringList>

namespace NoxFetch {

/** A text file with one address per line. Empty lines, and lines that begin with "#", are ignored. */
struct AddressFile {
    QStringList urls;    ///< Completed, but not checked.
    QString errorString; ///< The error message; empty on success.

    /** Reads the file @p name; "-" is standard input. */
    static AddressFile read(const QString &name);
};

} // namespace NoxFetch
