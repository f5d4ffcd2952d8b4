#pragma once

#include <QMimeData>
#include <QStringList>

namespace NoxDesk {

/** The addresses of pages that a text holds, such as what is pasted or dropped. */
class AddressList
{
public:
    AddressList() = delete;

    /** Each address once, in their order, fit for reading. Words without a scheme count where they look like one. */
    static QStringList in(const QString &text);

    /** The addresses in dropped or copied data: of links, of text files, or of a text. */
    static QStringList in(const QMimeData *data);

    static QStringList inFile(const QString &path); ///< Those in a text file; none where it is too large for one.
};

} // namespace NoxDesk
