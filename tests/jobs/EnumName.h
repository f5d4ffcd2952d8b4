#pragma once

#include <QMetaEnum>
#include <QString>

/** The name of a value of an enumeration that Qt knows, such as a Job::Error. */
template <typename Enum>
QString nameOf(Enum value)
{
    return QString::fromLatin1(QMetaEnum::fromType<Enum>().valueToKey(static_cast<int>(value)));
}
