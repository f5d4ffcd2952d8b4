#include <nox/jobs/UrlCheck.h>

#include <nox/util/Utilities.h>

#include <QRegularExpression>

#include <algorithm>

namespace Nox {

QString UrlCheck::corrected(const QString &text)
{
    QString url = text.trimmed();
    for (const QLatin1String scheme : {QLatin1String("http://"), QLatin1String("https://")})
        if (url.startsWith(scheme, Qt::CaseInsensitive))
            url.replace(0, scheme.size(), scheme);
    static const QRegularExpression server(QStringLiteral("^([\\w-]+\\.)+[a-zA-Z]{2,}(:\\d+)?(/|$)"),
                                           QRegularExpression::UseUnicodePropertiesOption);
    if (url.startsWith(QLatin1String("www."), Qt::CaseInsensitive) || server.match(url).hasMatch())
        url.prepend(QLatin1String("https://"));
    return url.replace(QLatin1Char('\''), QLatin1String("%27"));
}

QString UrlCheck::errorString(const QString &url)
{
    if (url.isEmpty())
        return tr("There is no address.");
    if (!url.startsWith(QLatin1String("http://")) && !url.startsWith(QLatin1String("https://")))
        return tr("An address must start with http:// or https://.");
    const bool holdsBlank = std::any_of(url.cbegin(), url.cend(), [](QChar character) {
        return character.isSpace() || character.category() == QChar::Other_Control;
    });
    if (holdsBlank)
        return tr("An address must not contain blanks.");
    if (url.contains(QLatin1Char('"')) || url.contains(QLatin1Char('\'')))
        return tr("An address must not contain quotes; write %22 or %27 instead.");
    if (!Utilities::isValidUrl(url))
        return tr("The address is incomplete: a server name must follow http:// or https://.");
    return {};
}

} // namespace Nox
