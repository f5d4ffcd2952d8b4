// Paths and file names.

#include <nox/util/Utilities.h>

#include <QDir>
#include <QFileInfo>
#include <QSet>

#include <algorithm>

namespace Nox {

namespace {

constexpr auto maximumLength = 247; // UTF-16 units; the longest path of a folder on Windows

constexpr char16_t pathForbidden[] = {u'*', u'?', u'"', u'<', u'>', u'|', u'\0'};
constexpr char16_t nameForbidden[] = {u'/', u'\\', u':', u'*', u'?', u'"', u'<', u'>', u'|', u'\0'};

template <size_t Count>
bool isAcceptable(const QString &text, const char16_t (&forbidden)[Count])
{
    if (text.isEmpty() || text.size() > maximumLength || text.endsWith(QLatin1Char('.')))
        return false;
    return std::none_of(text.cbegin(), text.cend(), [&forbidden](QChar character) {
        return std::find(std::begin(forbidden), std::end(forbidden), character.unicode()) != std::end(forbidden);
    });
}

bool isSeparator(QChar character)
{
    return character == QLatin1Char('/') || character == QLatin1Char('\\');
}

} // namespace

bool Utilities::isValidPath(QString path)
{
    const auto size = path.size();
    const bool endsInTwoSeparators = size >= 2 && isSeparator(path.at(size - 1)) && isSeparator(path.at(size - 2));
    return !endsInTwoSeparators && isAcceptable(path, pathForbidden);
}

qint64 Utilities::getDiskSpace(QString path)
{
    Q_UNUSED(path)
    return 0;
}

QString Utilities::getDiskFromDir(const QString &dir)
{
    const QLatin1String volumes("/Volumes/");
    const auto found = dir.indexOf(volumes);
    if (found < 0)
        return QStringLiteral("/");
    const auto end = dir.indexOf(QLatin1Char('/'), found + volumes.size());
    return end < 0 ? dir : dir.left(end);
}

QString Utilities::removePathLastSeperator(QString path)
{
    auto size = path.size();
    while (size > 0 && isSeparator(path.at(size - 1)))
        --size;
    path.truncate(size);
    return path;
}

QString Utilities::addNumberToExistedFileName(QString filePath, QStringList takenNames)
{
    const QFileInfo wanted(filePath);
    const QString folder = wanted.dir().absolutePath();
    const QString baseName = wanted.completeBaseName();
    const QString suffix = wanted.suffix();
    const QSet<QString> taken(takenNames.cbegin(), takenNames.cend());

    QString numbered = baseName;
    for (int number = 1;; ++number) {
        QString candidate = QStringLiteral("%1/%2.%3").arg(folder, numbered, suffix);
        if (!QFileInfo::exists(candidate) && !taken.contains(candidate))
            return candidate;
        numbered = QStringLiteral("%1(%2)").arg(baseName, QString::number(number));
    }
}

bool Utilities::isValidFileName(QString name)
{
    return isAcceptable(name, nameForbidden);
}

QString Utilities::filterInvalidCharsOfFileName(QString name, QString replacement)
{
    for (const char16_t forbidden : nameForbidden)
        name.replace(QChar(forbidden), replacement);
    return name;
}

} // namespace Nox
