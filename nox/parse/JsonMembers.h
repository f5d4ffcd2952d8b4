#pragma once

#include <QString>

#include <cstring>

namespace Json {
class Value;
}

/**
 * Typed views of JSON values, for code that reads many members: the member is looked up once by its
 * plain name, then read with a default. A null pointer stands for a missing member and gives the
 * default everywhere.
 */
namespace Nox::JsonMembers {

/** The member @p name of @p object; null when it is missing or @p object is no object. */
const Json::Value *find(const Json::Value &object, const char *name, size_t nameLength);

/** The same for a name that is a literal. */
template <size_t Size>
const Json::Value *find(const Json::Value &object, const char (&name)[Size])
{
    return find(object, name, Size - 1);
}

/** Text of a JSON string up to its first NUL character. */
QString toString(const Json::Value *value, const QString &defaultValue);

/** A number written as an integer within 32 bits. */
int toInt(const Json::Value *value, int defaultValue);

/** Any number. */
double toDouble(const Json::Value *value, double defaultValue);

} // namespace Nox::JsonMembers
