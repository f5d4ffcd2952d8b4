#pragma once

#include <QString>
#include <QVariant>

/** The name of a value of an enumeration that Qt knows, such as a Job::Error. */
template <typename Enum>
QString nameOf(Enum value)
{
    return QVariant::fromValue(value).toString();
}
