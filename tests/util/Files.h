#pragma once

#include <QDir>
#include <QFile>

/** Files of the tests. */
namespace Files {

/** The content of @p path; empty if it cannot be read. */
inline QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/** Writes the file @p path anew. A failure ends the test program. */
inline void write(const QString &path, const QByteArray &content = {})
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(path));
}

/** Everything in @p folder by name, hidden entries as well. */
inline QStringList names(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

} // namespace Files
