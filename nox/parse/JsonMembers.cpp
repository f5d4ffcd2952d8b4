#include <nox/parse/JsonMembers.h>

#include <json/value.h>

namespace Nox {

const Json::Value *JsonMembers::find(const Json::Value &object, const char *name, size_t nameLength)
{
    return object.isObject() ? object.find(name, name + nameLength) : nullptr;
}

QString JsonMembers::toString(const Json::Value *value, const QString &defaultValue)
{
    const char *begin = nullptr;
    const char *end = nullptr;
    if (value == nullptr || !value->isString() || !value->getString(&begin, &end))
        return defaultValue;
    const auto length = static_cast<size_t>(end - begin);
    return QString::fromUtf8(begin, static_cast<QString::size_type>(strnlen(begin, length)));
}

int JsonMembers::toInt(const Json::Value *value, int defaultValue)
{
    // By the stored type: the value's own integer test also accepts a whole number written as 1080.0.
    const bool isWhole = value != nullptr && (value->type() == Json::intValue || value->type() == Json::uintValue);
    return isWhole && value->isInt() ? value->asInt() : defaultValue;
}

double JsonMembers::toDouble(const Json::Value *value, double defaultValue)
{
    return value != nullptr && value->isNumeric() ? value->asDouble() : defaultValue;
}

} // namespace Nox
