#pragma once

#include <QLatin1String>
#include <QString>
#include <QStringView>

namespace Nox {

/**
 * Goes through JSON from value to value and takes out what is wanted, without a tree of the rest.
 *
 * The text is what the tool printed, in which character references and "\u" escapes have yet to be
 * replaced. Only what is plain is taken: each operation starts at the current position and leaves it behind
 * what it took, or returns false, after which the position means nothing. It returns false for all that
 * the JSON reader, given the text with its escapes replaced, might take in another way or not at all.
 */
class PlainJsonScanner
{
public:
    explicit PlainJsonScanner(QStringView text)
        : m_at(text.begin())
        , m_end(text.end())
    {
    }

    /** A value that is neither object nor array. */
    struct Scalar {
        enum class Kind { Other, Text, Whole, Real };

        Kind kind = Kind::Other; ///< Other: a word, or not a scalar at all
        QString text;
        double number = 0; ///< exact
    };

    /** Takes an object. @p readMember gets each name and takes the value; a name with escapes is a null text. */
    template <typename ReadMember>
    bool readObject(ReadMember readMember)
    {
        skipBlanks();
        if (!take(u'{'))
            return false;
        skipBlanks();
        if (take(u'}'))
            return true;
        do {
            skipBlanks();
            QStringView name;
            if (!readName(name))
                return false;
            skipBlanks();
            if (!readMember(name))
                return false;
            skipBlanks();
        } while (take(u','));
        return take(u'}');
    }

    /** Takes an array. @p readElement takes each value. */
    template <typename ReadElement>
    bool readArray(ReadElement readElement)
    {
        if (!take(u'['))
            return false;
        skipBlanks();
        if (take(u']'))
            return true;
        do {
            skipBlanks();
            if (!readElement())
                return false;
            skipBlanks();
        } while (take(u','));
        return take(u']');
    }

    /** Takes any value. Of an object or array nothing is kept. */
    bool readScalar(Scalar &result);

    /** Takes any value and keeps nothing. */
    bool skipValue(int depth = 0);

    /** Whether the next character is @p character. */
    bool isNext(char16_t character) const
    {
        return m_at != m_end && m_at->unicode() == character;
    }

private:
    bool take(char16_t character);
    bool takeWord(QLatin1String word);
    double takeDigits(double number, int &count);
    void skipBlanks();
    bool readName(QStringView &name);
    bool readString(QString &result);
    bool readNumber(Scalar &result);
    bool skipString();
    bool skipEscape();
    bool skipAmpersand();
    bool skipNumber();
    bool skipExponent();
    bool hasExponent() const;

    const QChar *m_at;
    const QChar *m_end;
    bool m_isPlain = true; // the last string holds neither escapes nor references
};

} // namespace Nox
