#include "tests/support/TestMain.h"
#include "tests/util/Rows.h"

#include <nox/log/Logger.h>
#include <nox/model/WebMediaInfo.h>
#include <nox/parse/YdOutputParser.h>

#include <QLoggingCategory>
#include <QProcess>
#include <QRandomGenerator>
#include <QStringList>
#include <QTemporaryDir>

#include <algorithm>
#include <iterator>

using namespace Nox;

/** Any text that the front of the tool writes comes out of the library's parser as it was. */
class DescribedTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void texts();

private:
    static QStringList chosenTexts();
    static QString madeUpText(QRandomGenerator &random);
    static QString asHeld(const QString &text);

    QTemporaryDir m_root;
};

void DescribedTextTest::initTestCase()
{
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    Logger::init(m_root.filePath(QStringLiteral("library.log")).toStdString(), LOG_ERROR, LOG_OUT_FILE);
}

QStringList DescribedTextTest::chosenTexts()
{
    return {
        QString(),
        R"(A "title" with \ and / and 'quotes')"_s,
        "&#34; &#39; &#92;u0022 &#x26; &amp; &#; &#1"_s,
        R"(\u0022 \\u0022 \u00e9 \n \)"_s,
        R"(\&#34;\u0026#34; \\\)"_s,
        R"(&\u002334; &#38;#34;)"_s,
        "u0022 and u0075"_s,
        R"({"title":"x"} // no comment /* */)"_s,
        "tab\t line\n\r end\x01\x1f\x7f"_s,
        "caf\xc3\xa9 \xe2\x80\xa8 \xf0\x9f\x98\x80 \xef\xbf\xbe"_s,
        "a\0b"_s,
        QString(QChar(0xfeff)) + QChar(0xfeff) + QStringLiteral("x") + QChar(0xfeff),
        QString(QChar(0xd83d)) + QStringLiteral("x") + QChar(0xde00) + QChar(0xd83d) + QChar(0xde00),
    };
}

// Mostly of the characters that mean something on the way.
QString DescribedTextTest::madeUpText(QRandomGenerator &random)
{
    static const QString alphabet = "\\\\\\&&##;uu0012234567bdefBDEF\"'/{}[],: \n"_s;
    QString text;
    for (int left = random.bounded(24); left > 0; --left) {
        const int kind = random.bounded(10);
        if (kind == 0)
            text += QChar(static_cast<ushort>(random.bounded(0x10000)));
        else if (kind == 1)
            text += QChar(static_cast<ushort>(random.bounded(0xd800, 0xe000)));
        else
            text += alphabet.at(random.bounded(static_cast<int>(alphabet.size())));
    }
    return text;
}

// What the library cannot hold is replaced: a half surrogate pair and a zero. A byte order mark in front goes away.
QString DescribedTextTest::asHeld(const QString &text)
{
    QString held;
    const auto characters = text.toUcs4(); // with a replacement for each half pair
    for (const char32_t character : characters) {
        if (character != 0xfeff || !held.isEmpty())
            held += QString::fromUcs4(&character, 1);
    }
    return held.replace(QChar(QChar::Null), QChar(QChar::ReplacementCharacter));
}

void DescribedTextTest::texts()
{
    QStringList texts = chosenTexts();
    QRandomGenerator random(20230304);
    for (int i = 0; i < 5000; ++i)
        texts += madeUpText(random);

    QByteArray input;
    for (const QString &text : std::as_const(texts)) {
        for (const QChar unit : text)
            input += QByteArray::number(unit.unicode() + 0x10000, 16).right(4);
        input += '\n';
    }
    QProcess writer;
    writer.start("/usr/bin/env"_s,
                 {QStringLiteral("PYTHONPATH=" NOX_TOOL_FRONT), "PYTHONDONTWRITEBYTECODE=1"_s, "/usr/bin/python3"_s,
                  QStringLiteral(NOX_TEXTS_PROGRAM)});
    QVERIFY(writer.waitForStarted());
    writer.write(input);
    writer.closeWriteChannel();
    QVERIFY(writer.waitForFinished(120000));
    QVERIFY2(writer.exitCode() == 0, writer.readAllStandardError().constData());

    for (const QString &text : std::as_const(texts)) {
        const QString line = QString::fromLocal8Bit(writer.readLine());
        WebMediaInfo page;
        YdOutputParser::instance()->parseWebMediaInfo(line, page, QString());
        const QString expected = asHeld(text);
        QVERIFY2(page.getTitle() == expected, qPrintable(line));
        QCOMPARE(page.getDuration(), 7);
        QCOMPARE(page.getMediaProfileList().size(), 1);
        const MediaProfile stream = page.getMediaProfileList().constFirst();
        QVERIFY2(stream.getName() == expected && stream.getDescription() == expected && stream.getUrl() == expected,
                 qPrintable(line));
    }
    QVERIFY(writer.atEnd());
}

NOX_TEST_MAIN(DescribedTextTest)
#include "DescribedTextTest.moc"
