#pragma once

#include "tests/support/TextTable.h"

#include <QStringList>
#include <QVariant>

#include <cstddef>

/** UTF-8 text of the tests as a QString; a zero byte in it stays a character. */
inline QString operator""_s(const char *text, std::size_t size)
{
    return QString::fromUtf8(text, static_cast<int>(size));
}

/** The name of a value of an enumeration that Qt knows, such as a Job::Error. */
template <typename Enum>
QString nameOf(Enum value)
{
    return QVariant::fromValue(value).toString();
}

/** A data row whose name is its text. */
inline QTestData &row(const QString &name)
{
    QByteArray tag = name.left(80).toLatin1();
    for (char &character : tag) {
        if (character < ' ' || character > '~')
            character = '~';
    }
    return QTest::addRow("%s (%d)", tag.constData(), static_cast<int>(name.size()));
}

/** Data rows of texts: the names of the columns, and rows of the form "text -> text". */
inline void rows(std::initializer_list<const char *> columns, const QStringList &table)
{
    for (const char *column : columns)
        QTest::addColumn<QString>(column);
    for (const QString &line : table) {
        QTestData &data = row(line);
        const QStringList fields = line.split(" -> "_s);
        Q_ASSERT(static_cast<std::size_t>(fields.size()) == columns.size());
        for (const QString &field : fields)
            data << field;
    }
}
