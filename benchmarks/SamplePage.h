#pragma once

#include <QByteArray>
#include <QString>

/**
 * A description of a page as the tool prints it: one line of JSON in ASCII, with the members, the long
 * URLs, the captions in many languages and the escapes that real ones have.
 */
class SamplePage
{
public:
    /** Some 1 MB: 200 formats with full-length URLs, captions, thousands of escapes. */
    static SamplePage ordinary();

    /** The same with text behind the page, which jsoncpp has to read. */
    static SamplePage unusual();

    /** A page of @p formats short formats of some 750 bytes each. */
    static SamplePage withFormats(int formats);

    /** The tool's output. */
    const QByteArray &bytes() const;

    /** The tool's output as the parser takes it. */
    QString text() const;

    /** The input of the JSON readers: references and "\u" escapes replaced, in UTF-8. */
    QByteArray preparedBytes() const;

private:
    explicit SamplePage(QByteArray bytes);

    QByteArray m_bytes;
};
