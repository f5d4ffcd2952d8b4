#include <nox/jobs/AddressList.h>

#include <nox/jobs/UrlCheck.h>

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>
#include <QUrl>

namespace Nox {

namespace {

constexpr int maximumLength = 4096; // longer text only begins like an address
constexpr qint64 maximumBytes = 4LL * 1024 * 1024;

/** Removes punctuation of the surrounding sentence from the end of an address. */
QString trimmed(QString word)
{
    const auto opened = word.count(QLatin1Char('('));
    auto closed = word.count(QLatin1Char(')'));
    auto size = word.size();
    for (; size > 0 && QStringLiteral(".,;:!?)]}>\"'").contains(word.at(size - 1)); --size) {
        if (word.at(size - 1) != QLatin1Char(')'))
            continue;
        if (closed <= opened)
            break;
        --closed;
    }
    word.truncate(size);
    return word;
}

bool isAddress(const QString &url)
{
    return url.size() <= maximumLength && UrlCheck::errorString(url).isEmpty();
}

} // namespace

QStringList AddressList::in(const QString &text)
{
    static const QRegularExpression pattern(
        QStringLiteral("https?://[^\\s<>\"]+|(?<![^\\s<(\"])(?:www\\.|(?:[\\w-]+\\.)+[a-zA-Z]{2,}/)[^\\s<>\"]*"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    QStringList result;
    QSet<QString> known;
    auto matches = pattern.globalMatch(text);
    while (matches.hasNext()) {
        const QString url = UrlCheck::corrected(trimmed(matches.next().captured()));
        if (isAddress(url) && !known.contains(url)) {
            known += url;
            result += url;
        }
    }
    return result;
}

QStringList AddressList::in(const QMimeData *data)
{
    if (data == nullptr || !data->hasUrls())
        return data != nullptr && data->hasText() ? in(data->text().left(maximumBytes)) : QStringList();
    QStringList result;
    const QList<QUrl> urls = data->urls();
    for (const QUrl &url : urls) {
        const QString address = url.toString(QUrl::FullyEncoded);
        if (url.isLocalFile()) {
            result += inFile(url.toLocalFile());
        } else if (isAddress(address)) {
            result += address;
        }
    }
    result.removeDuplicates();
    return result;
}

QStringList AddressList::inFile(const QString &path)
{
    QFile file(path);
    const bool isUsable = QFileInfo(path).isFile() && file.size() <= maximumBytes && file.open(QIODevice::ReadOnly);
    return isUsable ? in(QString::fromUtf8(file.readAll())) : QStringList();
}

} // namespace Nox
