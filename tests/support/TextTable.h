#pragma once

#include <QtTest>

#include <array>
#include <initializer_list>

/** Test data whose columns are all texts. */
class TextTable
{
public:
    TextTable(std::initializer_list<const char *> columns)
        : m_columnCount(columns.size())
    {
        for (const char *column : columns)
            QTest::addColumn<QString>(column);
    }

    /** Adds a row of UTF-8 texts; those left out at the end are empty. */
    template <typename... Texts>
    void operator()(const char *name, const Texts &...texts) const
    {
        QTestData &data = QTest::newRow(name);
        (data << ... << QString::fromUtf8(texts));
        for (auto i = sizeof...(texts); i < m_columnCount; ++i)
            data << QString();
    }

private:
    std::size_t m_columnCount;
};

/** The texts of the current row in the columns of these names. */
template <typename... Names>
std::array<QString, sizeof...(Names)> fetchTexts(Names... names)
{
    return {*static_cast<QString *>(QTest::qData(names, qMetaTypeId<QString>()))...};
}
