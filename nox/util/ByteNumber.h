#pragma once

#include <nox/Export.h>

#include <QString>

namespace Nox {

/** A byte count with short text forms in powers of 1024. A value type; -1 means an unreadable text. */
class NOX_EXPORT ByteNumber
{
public:
    /** Holds @p value, in bytes, unchanged. */
    ByteNumber(qint64 value);

    /**
     * Reads a whole count such as 700K, 12MB or 3G (letters in any case). Holds -1 when the text
     * cannot be read, as with a fraction.
     */
    ByteNumber(QString text);

    /** The held count in bytes. */
    qint64 value();

    /**
     * The count in the largest unit (T, G, M, K or none) that gives at least 1, cut to a whole number.
     * A negative count becomes 0, in the text and also in the object.
     */
    QString toString();

    /** toString() with a "B" behind it. */
    QString toStringB();

private:
    qint64 m_value;
};

} // namespace Nox
