#pragma once

#include <QString>
#include <QStringList>

namespace NoxFetch {

/** A text file with one address a line; empty lines, and those that begin with "#", do not count. */
struct AddressFile {
    QStringList urls;    ///< Corrected, but not checked.
    QString errorString; ///< Why there are none; empty when there are some.

    /** Reads the file @p name, or standard input where it is "-". */
    static AddressFile read(const QString &name);
};

} // namespace NoxFetch
