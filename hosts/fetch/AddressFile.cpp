#include "hosts/fetch/AddressFile.h"

#include <nox/jobs/UrlCheck.h>

#include <QFile>

#include <cstdio>

namespace NoxFetch {

AddressFile AddressFile::read(const QString &name)
{
    constexpr qint64 mostBytes = 16LL * 1024 * 1024;
    AddressFile result;
    QFile file(name);
    const bool isOpen =
        name == QLatin1String("-") ? file.open(stdin, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly);
    const QByteArray content = isOpen ? file.read(mostBytes + 1) : QByteArray();
    if (file.error() != QFileDevice::NoError)
        result.errorString =
            QStringLiteral("The addresses in \"%1\" cannot be read: %2.").arg(name, file.errorString());
    else if (content.size() > mostBytes)
        result.errorString = QStringLiteral("\"%1\" is too large for a file of addresses.").arg(name);
    if (!result.errorString.isEmpty())
        return result;
    const QStringList lines = QString::fromUtf8(content).remove(QChar(QChar::ByteOrderMark)).split(QLatin1Char('\n'));
    for (const QString &line : lines)
        if (const QString url = Nox::UrlCheck::corrected(line); !url.isEmpty() && !url.startsWith(QLatin1Char('#')))
            result.urls += url;
    if (result.urls.isEmpty())
        result.errorString = QStringLiteral("\"%1\" holds no address.").arg(name);
    return result;
}

} // namespace NoxFetch
