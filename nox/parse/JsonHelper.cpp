#include <nox/parse/JsonHelper.h>

#include <nox/parse/JsonMembers.h>

#include <QByteArray>
#include <QFile>

#include <new>

namespace Nox {

namespace {

constexpr char byteOrderMark[] = "\xEF\xBB\xBF";
constexpr int markLength = sizeof byteOrderMark - 1;
constexpr qint64 shortestScript = 4; // bytes; a shorter file reads as nothing
constexpr qint64 pieceSize = 65536;  // bytes; large enough that few reads are needed

const Json::Value *member(const Json::Value &object, const QString &key)
{
    const QByteArray name = key.toUtf8();
    return JsonMembers::find(object, name.constData(), static_cast<size_t>(name.size()));
}

} // namespace

QString JsonHelper::getString(const Json::Value &object, QString key, QString defaultValue)
{
    return JsonMembers::toString(member(object, key), defaultValue);
}

int JsonHelper::getInt(const Json::Value &object, QString key, int defaultValue)
{
    return JsonMembers::toInt(member(object, key), defaultValue);
}

double JsonHelper::getDouble(const Json::Value &object, QString key, double defaultValue)
{
    return JsonMembers::toDouble(member(object, key), defaultValue);
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
        // In pieces, since a zero byte ends the text however large the file is.
        QByteArray content;
        for (bool isWhole = false; !isWhole;) {
            const QByteArray piece = file.read(pieceSize);
            content += piece;
            isWhole = piece.isEmpty() || piece.contains('\0');
        }
        // Up to the first zero byte, which every byte array holds at its end at the latest; the decoding
        // itself skips one byte-order mark.
        return QString::fromUtf8(content.constData());
    } catch (const std::bad_alloc &) {
        return QString();
    }
}

} // namespace Nox
