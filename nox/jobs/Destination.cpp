#include <nox/jobs/Destination.h>

#include <nox/jobs/TextSanitizer.h>

#include <nox/util/Utilities.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace Nox {

namespace {

constexpr int maximumNameLength = 247; // of Utilities::isValidFileName(), in characters
constexpr int maximumNameBytes = 255;  // of the common file systems
constexpr int roomForSuffixAndNumber = 20;

/** @p name, shortened so that a number and a suffix can follow. No character is cut in two. */
QString shortened(QString name)
{
    while (name.size() > maximumNameLength - roomForSuffixAndNumber
           || QFile::encodeName(name).size() > maximumNameBytes - roomForSuffixAndNumber) {
        const bool isPair = name.size() > 1 && name.at(name.size() - 1).isLowSurrogate();
        name.chop(isPair ? 2 : 1);
    }
    return name;
}

/** @p path has got a number. If its name ended in a number before, that one is replaced by the next free one. */
QString numberedOnce(const QString &path, const QStringList &taken)
{
    static const QRegularExpression pattern(QStringLiteral("^(.*\\()(\\d{1,3})\\)\\(\\d+\\)(\\.[^./]*)?$"),
                                            QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = pattern.match(path);
    if (!match.hasMatch())
        return path;
    QString result = path;
    int number = match.captured(2).toInt();
    do {
        result = match.captured(1) + QString::number(++number) + QLatin1Char(')') + match.captured(3);
    } while (QFileInfo::exists(result) || taken.contains(result));
    return result;
}

bool isIn(const QString &characters, QChar character)
{
    return characters.contains(character);
}

} // namespace

QString Destination::proposed(const WebMediaInfo &page, const MediaProfile &stream, const QString &folder,
                              const QStringList &taken, SoundFormat sound)
{
    const QString name = baseName(page, stream) + QLatin1Char('.') + suffix(stream, sound);
    return free(QDir(folder).absoluteFilePath(name), taken);
}

QString Destination::free(const QString &path, const QStringList &taken)
{
    if (!QFileInfo(path).suffix().isEmpty()) {
        const QString numbered = Utilities::addNumberToExistedFileName(path, taken);
        return numbered == path ? path : numberedOnce(numbered, taken);
    }
    // The library would append a dot to a name without a suffix.
    QString candidate = path;
    for (int number = 1; QFileInfo::exists(candidate) || taken.contains(candidate); ++number)
        candidate = path + QStringLiteral("(%1)").arg(number);
    return candidate;
}

QString Destination::absolutePath(const QString &text, const QString &folder)
{
    QString path = QDir::fromNativeSeparators(text.trimmed());
    if (path.isEmpty())
        return {};
    if (path.startsWith(QLatin1String("~/")))
        path.replace(0, 1, QDir::homePath());
    return QDir::cleanPath(QDir(folder).absoluteFilePath(path));
}

QString Destination::suffix(const MediaProfile &stream, SoundFormat sound)
{
    if (sound == SoundFormat::Mp3 && stream.getMediaType() == MEDIA_TYPE_AUDIO)
        return QStringLiteral("mp3");
    if (stream.isDash() && !stream.getPreferredDashAudioYdCode().isEmpty())
        return QStringLiteral("mp4");
    QString result;
    const QString format = stream.getFormat().toLower();
    for (const QChar character : format) {
        const char16_t unit = character.unicode();
        if ((unit >= u'a' && unit <= u'z') || (unit >= u'0' && unit <= u'9'))
            result += character;
    }
    return result.isEmpty() ? QStringLiteral("media") : result.left(10);
}

QString Destination::errorString(const QString &path)
{
    if (path.isEmpty())
        return tr("The file needs a name.");
    const QFileInfo file(path);
    const QString name = file.fileName();
    if (QString message = nameErrorString(name); !message.isEmpty())
        return message;
    if (file.isDir())
        return tr("\"%1\" is a folder.").arg(path);
    if (file.exists() || file.isSymLink())
        return tr("\"%1\" exists already; an existing file is never replaced.").arg(path);
    return folderErrorString(file.absolutePath());
}

QString Destination::nameErrorString(const QString &name)
{
    if (name.isEmpty())
        return tr("The file needs a name.");
    if (name.size() > maximumNameLength)
        return tr("The name is too long: at most %1 characters are allowed.").arg(maximumNameLength);
    if (QFile::encodeName(name).size() > maximumNameBytes)
        return tr("The name is too long: it takes more than %1 bytes.").arg(maximumNameBytes);
    if (name.endsWith(QLatin1Char('.')))
        return tr("The name must not end in a dot.");
    if (!Utilities::isValidFileName(name))
        return tr("The name must not contain any of / \\ : * ? \" < > |");
    return {};
}

QString Destination::folderErrorString(const QString &folder)
{
    const QFileInfo info(folder);
    if (!info.exists())
        return tr("The folder \"%1\" does not exist.").arg(folder);
    if (!info.isDir())
        return tr("\"%1\" is not a folder.").arg(folder);
    if (!info.isWritable() || !info.isExecutable())
        return tr("You may not write into the folder \"%1\".").arg(folder);
    return unusableFolder(folder);
}

qint64 Destination::availableBytes(const QString &folder)
{
    std::error_code error;
    const std::filesystem::space_info disk = std::filesystem::space(QFile::encodeName(folder).toStdString(), error);
    // Some network file systems report only zeros.
    return error || disk.capacity == 0 ? -1 : static_cast<qint64>(disk.available);
}

/** The tool reads the output path as a template and prints file names on lines; such paths would lead elsewhere. */
QString Destination::unusableFolder(const QString &folder)
{
    if (folder.contains(QLatin1String("%(")) || folder.contains(QLatin1String("%%")))
        return tr("The folder \"%1\" cannot be used: the download tool reads %( and %% in its name differently.")
            .arg(folder);
    static const QRegularExpression variable(QStringLiteral("\\$(\\w|\\{)"));
    if (folder.contains(variable))
        return tr("The folder \"%1\" cannot be used: the download tool takes a $ in its name for a variable.")
            .arg(folder);
    const bool hasLineEnd = std::any_of(folder.cbegin(), folder.cend(), [](QChar character) {
        return character.category() == QChar::Other_Control || character == QChar::LineSeparator
            || character == QChar::ParagraphSeparator;
    });
    if (hasLineEnd)
        return tr("The folder \"%1\" cannot be used: its name contains a line break or another control character.")
            .arg(TextSanitizer::line(folder));
    return {};
}

QString Destination::baseName(const WebMediaInfo &page, const MediaProfile &stream)
{
    // A leading dot hides the file; other programs take a leading dash for an option.
    QString name =
        TextSanitizer::line(Utilities::filterInvalidCharsOfFileName(page.getFileName(), QStringLiteral(" ")));
    auto start = 0;
    while (start < name.size() && isIn(QStringLiteral(".- "), name.at(start)))
        ++start;
    name = shortened(name.mid(start));
    while (!name.isEmpty() && isIn(QStringLiteral(". "), name.at(name.size() - 1)))
        name.chop(1);
    if (!name.isEmpty())
        return name;
    return stream.getMediaType() == MEDIA_TYPE_AUDIO ? tr("audio") : tr("video");
}

} // namespace Nox
