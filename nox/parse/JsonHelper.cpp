#include <nox/parse/JsonHelper.h>

#include <QByteArray>
#include <QFile>

#include <cstring>
#include <new>

namespace Nox {

namespace {

constexpr char byteOrderMark[] = "\xEF\xBB\xBF";
constexpr int markLength = sizeof byteOrderMark - 1;
constexpr qint64 shortestScript = 4; // bytes; a shorter file counts as empty
constexpr qint64 pieceSize = 65536;  // bytes; large enough that few reads are needed

// The member of that name; null when it is missing or the value is no object.
const Json::Value *find(const Json::Value &object, const QString &key)
{
    const QByteArray name = key.toUtf8();
    return object.isObject() ? object.find(name.constData(), name.constData() + name.size()) : nullptr;
}

} // namespace

QString JsonHelper::getString(const Json::Value &object, QString key, QString defaultValue)
{
    const Json::Value *value = find(object, key);
    const char *begin = nullptr;
    const char *end = nullptr;
    if (value == nullptr || !value->isString() || !value->getString(&begin, &end))
        return defaultValue;
    const auto length = static_cast<size_t>(end - begin);
    return QString::fromUtf8(begin, static_cast<QString::size_type>(strnlen(begin, length)));
}

int JsonHelper::getInt(const Json::Value &object, QString key, int defaultValue)
{
    const Json::Value *value = find(object, key);
    // By the stored type: isInt() also accepts a whole number that is written as 1080.0.
    const bool isWhole = value != nullptr && (value->type() == Json::intValue || value->type() == Json::uintValue);
    return isWhole && value->isInt() ? value->asInt() : defaultValue;
}

double JsonHelper::getDouble(const Json::Value &object, QString key, double defaultValue)
{
    const Json::Value *value = find(object, key);
    return value != nullptr && value->isNumeric() ? value->asDouble() : defaultValue;
}

bool JsonHelper::writeUtf8Script(const QString &filePath, const QString &text)
{
    QFile file(filePath);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    file.write(byteOrderMark, markLength);
    file.write(text.toUtf8());
    return true;
}

QString JsonHelper::readUtf8Script(QString filePath)
{
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly) || file.size() < shortestScript)
        return QString();

    try {
        // In pieces, because a zero byte ends the text and the rest of the file need not be read.
        QByteArray content;
        for (bool isWhole = false; !isWhole;) {
            const QByteArray piece = file.read(pieceSize);
            content += piece;
            isWhole = piece.isEmpty() || piece.contains('\0');
        }
        // Without a length, the decoding stops at the first zero byte. It skips one byte-order mark.
        return QString::fromUtf8(content.constData());
    } catch (const std::bad_alloc &) {
        return QString();
    }
}

} // namespace Nox
