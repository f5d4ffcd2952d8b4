#include "tests/util/Files.h"
#include "tests/util/Rows.h"

#include <nox/util/ByteNumber.h>
#include <nox/util/Utilities.h>

#include <QFontMetrics>
#include <QGuiApplication>
#include <QTemporaryDir>

using namespace Nox;

/** An operation on one text, with its result as text. */
using Operation = QString (*)(const QString &);
Q_DECLARE_METATYPE(Operation)

namespace {

QString times(int count, const char *text)
{
    return QString::fromUtf8(text).repeated(count);
}

QString number(qint64 value)
{
    return QString::number(value);
}

QString yesOrNo(bool value)
{
    return value ? "yes"_s : "no"_s;
}

QString sizeOf(const QString &text)
{
    const QSize size = Utilities::stringToSizeX(text);
    return number(size.width()) + " by "_s + number(size.height());
}

/** Cases "text -> result", in which a section sign means half a surrogate pair. */
void add(const char *name, Operation operation, const QStringList &cases)
{
    for (QString line : cases) {
        line.replace(QChar(0xA7), QChar(0xD83D));
        const QStringList sides = line.split(" -> "_s);
        row(QLatin1String(name) + QLatin1Char(' ') + line) << operation << sides.at(0) << sides.at(1);
    }
}

/** Texts that all have one result. */
void addAll(const char *name, Operation operation, const QString &result, const QStringList &texts)
{
    for (const QString &text : texts)
        add(name, operation, {text + " -> "_s + result});
}

void addCounts()
{
    const Operation byteNumber = [](const QString &text) { return number(ByteNumber(text).value()); };
    add("ByteNumber", byteNumber,
        {"10kb -> 10240"_s, "700K -> 716800"_s, "12MB -> 12582912"_s, "3G -> 3221225472"_s, "2t -> 2199023255552"_s,
         "12 -> 12"_s, "12b -> 12"_s, "1B2bK -> 12288"_s, "1k2K -> 12288"_s, "-5 -> -5"_s, "-3K -> -3072"_s,
         "8589934591G -> 9223372035781033984"_s, "9223372036854775807K -> -1024"_s});
    addAll("ByteNumber", byteNumber, "-1"_s,
           {"1m2K"_s, "1K2M"_s, "1.5G"_s, "0x10"_s, "128kbit"_s, "12P"_s, ""_s, "KB"_s, "9223372036854775808K"_s});

    // In the end a negative value has become 0.
    const Operation texts = [](const QString &text) {
        ByteNumber held(text.toLongLong());
        const QString before = number(held.value());
        return QStringList{before, held.toString(), held.toStringB(), number(held.value())}.join(QLatin1Char(' '));
    };
    add("ByteNumber", texts,
        {"0 -> 0 0 0B 0"_s, "1023 -> 1023 1023 1023B 1023"_s, "1024 -> 1024 1K 1KB 1024"_s,
         "1536 -> 1536 1K 1KB 1536"_s, "1048575 -> 1048575 1023K 1023KB 1048575"_s,
         "1048576 -> 1048576 1M 1MB 1048576"_s, "1073741823 -> 1073741823 1023M 1023MB 1073741823"_s,
         "1073741824 -> 1073741824 1G 1GB 1073741824"_s, "1099511627776 -> 1099511627776 1T 1TB 1099511627776"_s,
         "-5 -> -5 0 0B 0"_s, "-5000000000000 -> -5000000000000 0 0B 0"_s});

    // A product beyond 64 bits wraps around.
    const Operation kmgt = [](const QString &text) { return number(Utilities::kmgtStringToNumber(text)); };
    add("kmgt", kmgt,
        {"3m -> 3000000"_s, "42 -> 42"_s, "7G -> 7000000000"_s, "2t -> 2000000000000"_s, "-2k -> -2000"_s,
         "1k2K -> 12000"_s, "9223372036854775807K -> -1000"_s});
    addAll("kmgt", kmgt, "-1"_s, {"3MB"_s, "10B"_s, "5m3K"_s, "1.5K"_s, "K"_s, ""_s});

    // In single precision: 12.34M would be 12939427 in double. A digit of another script counts as a
    // digit, but not as a number.
    const Operation bytes = [](const QString &text) { return number(Utilities::getBytes(text)); };
    add("getBytes", bytes,
        {"10.5MiB -> 11010048"_s, "512B -> 512"_s, "1.2KiB/s -> 1228"_s, "2.5GiB -> 2684354560"_s,
         "12.34MiB -> 12939428"_s, "16777217B -> 16777216"_s,
         "[download]  45.3% of 2.50GiB at 1.20MiB/s -> 2684354560"_s, "1.5.5M -> 5767168"_s, "-.5K -> 5120"_s,
         "1 2b 3K 4M -> 3072"_s, "0.4B -> 0"_s, "3T -> 3298534883328"_s, "2P -> 2251799813685248"_s,
         "7E -> 8070450532247928832"_s, "0Y -> 0"_s, "٣K 2M -> 0"_s, "§1K -> 1024"_s, "\0 1K -> 1024"_s});
    addAll("getBytes", bytes, "-1"_s, {"10.5mib"_s, "12.34"_s, "12.34 MiB"_s, "MiB"_s, ""_s, "5.K"_s});
    addAll("getBytes", bytes, "9223372036854775807"_s,
           {"8E"_s, "1Z"_s, "9999Y"_s, times(39, "9") + "Y"_s, times(400, "9") + "B"_s});

    const Operation fileSize = [](const QString &text) {
        const QString result = Utilities::fileSizeToString(text.toLongLong());
        return result.isNull() ? "(null)"_s : result;
    };
    add("file size", fileSize, {"-1 -> --"_s, "0 -> (null)"_s, "999 -> 999"_s, "1000000000000 -> 1T"_s});
    add("size", sizeOf,
        {"1280x720 -> 1280 by 720"_s, "1280x -> 1280 by 0"_s, "x -> 0 by 0"_s, "axb -> 0 by 0"_s, "-5x7 -> -5 by 7"_s,
         "0x10 -> 0 by 10"_s, "12.5x2147483648 -> 0 by 0"_s});
    addAll("size", sizeOf, "-1 by -1"_s, {"1280X720"_s, "1x2x3"_s, "1280x720x"_s, "1280"_s, ""_s});
}

void addValidity()
{
    const Operation path = [](const QString &text) { return yesOrNo(Utilities::isValidPath(text)); };
    const Operation name = [](const QString &text) { return yesOrNo(Utilities::isValidFileName(text)); };
    for (const auto &[kind, operation] : {std::make_pair("path", path), std::make_pair("name", name)}) {
        addAll(kind, operation, "yes"_s,
               {"movie (1).mp4"_s, " "_s, ".hidden"_s, times(247, "a"), times(123, "😀") + "a"_s});
        addAll(kind, operation, "no"_s,
               {""_s, "a."_s, ".."_s, "/a/b//"_s, "//"_s, R"(a\\)"_s, R"(a/\)"_s, "a\0b"_s, "a*"_s, "a?"_s, R"(a")"_s,
                "<"_s, ">"_s, "|"_s, times(248, "a"), times(124, "😀")});
        addAll(kind, operation, yesOrNo(operation == path),
               {"/Users/x/Movies"_s, R"(C:\x)"_s, "a:b"_s, "a/b"_s, "a/"_s, "/"_s, R"(\)"_s, "//a"_s, "a./"_s});
    }
    // A line end at the very end is white space as well.
    const Operation url = [](const QString &text) { return yesOrNo(Utilities::isValidUrl(text)); };
    addAll("url", url, "yes"_s,
           {"http://a"_s, "https://example.org/watch?v=é&x=\"'"_s, "http:///"_s, "http://a§"_s, "http://a\0b"_s});
    addAll("url", url, "no"_s,
           {""_s, "http://"_s, "https://"_s, "http:/a"_s, "httpss://a"_s, "ftp://a"_s, "HTTP://a"_s, "Http://a"_s,
            " http://a"_s, "x\nhttp://a"_s, "http://a b"_s, "http://a\tb"_s, "http://a\n"_s, "http://a\u00a0b"_s,
            "http://a\u3000"_s, "http://a\u2028"_s});
}

void addTexts()
{
    add("separator", [](const QString &text) { return Utilities::removePathLastSeperator(text); },
        {"/a/b/// -> /a/b"_s, R"(a\b/c\ -> a\b/c)"_s, R"(a/\/\ -> a)"_s, "/a/b -> /a/b"_s, "// -> "_s, " -> "_s});
    add("disk", [](const QString &text) { return Utilities::getDiskFromDir(text); },
        {"/Volumes/Disk/Movies/a -> /Volumes/Disk"_s, "/Volumes/Disk -> /Volumes/Disk"_s,
         "/Volumes/Disk/ -> /Volumes/Disk"_s, "/Volumes/ -> /Volumes/"_s, "/Volumes//x -> /Volumes/"_s,
         "x/Volumes/D/y/Volumes/E -> x/Volumes/D"_s, "/volumes/Disk/a -> /"_s, "/Volumes -> /"_s,
         "/Users/x/Movies -> /"_s, " -> /"_s});
    add("url", [](const QString &text) { return Utilities::escapeUrl(text); },
        {"page/watch?v=abc&list=xyz&index=3 -> page/watch?v=abc"_s, "page?v=abc -> page?v=abc"_s,
         "?v=abc&list=x -> ?v=abc&list=x"_s, "?v=abc?v=d&e -> ?v=abc?v=d&e"_s, "a&b?v=c&d -> a"_s, "&x?v=1 -> "_s,
         "p?V=a&b -> p?V=a&b"_s, "p?x=1&v=2&c -> p?x=1&v=2&c"_s});
}

void addCharacters()
{
    // The result is not decoded again. Only the low 16 bits of a number count.
    const Operation reference = [](const QString &text) { return Utilities::convertHttpSpecificChar(text); };
    add("&#", reference,
        {"Tom &#38; Jerry -> Tom & Jerry"_s, "&#&#65;&&#00066;&#1&#67; -> &#A&B&#1C"_s, "&#38;#65; -> &#65;"_s,
         "&#65601;&#4294967361;&#18446744073709551681; -> AAA"_s, "&#"_s + times(300, "0") + "65; -> A"_s,
         "a&#0;b -> a\0b"_s, "a\0&#65; -> a\0A"_s, "&#55357;&#56832; -> 😀"_s, "&#55357;&#38; -> §&"_s, "§&#38; -> §&"_s,
         times(40000, "&#38;") + " -> "_s + times(40000, "&")});
    for (const QString &text :
         {"&#x26;&#;&#12&# 38;&38;&#-1;"_s, times(250000, "&#38"), "&#"_s + times(1000000, "1")}) {
        add("&#", reference, {text + " -> "_s + text});
    }
    const Operation escape = [](const QString &text) { return Utilities::convertHttpSpecificChar2(text); };
    add("\\u", escape,
        {"caf\\u00e9 \\u00E9 -> café é"_s, R"(\\u0041\u\u00421 -> \A\uB1)"_s, R"(\u005cu0041 -> \u0041)"_s,
         "a\\u0000b -> a\0b"_s, "\\ud83d\\ude00 -> 😀"_s, "\\ud83d\\u0026 -> §&"_s, "§\\u0026 -> §&"_s});
    for (const QString &text : {R"(\U00e9\u00g9\u00e)"_s, "\\u００４１\\u٠٠٤١"_s, times(500000, "\\u")})
        add("\\u", escape, {text + " -> "_s + text});
}

} // namespace

class UtilTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cases_data()
    {
        QTest::addColumn<Operation>("operation");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("result");
        addCounts();
        addValidity();
        addTexts();
        addCharacters();
    }

    void cases()
    {
        QFETCH(Operation, operation);
        const auto [text, result] = fetchTexts("text", "result");
        QCOMPARE(operation(text), result);
    }

    void decimalTexts_data()
    {
        rows({"value", "unit", "result"},
             {"1500 ->  -> 1K"_s, "999 ->  -> 999"_s, "999999 ->  -> 999K"_s, "1000000 ->  -> 1M"_s,
              "999999999999 ->  -> 999G"_s, "1000000000000 ->  -> 1T"_s, "9223372036854775807 ->  -> 9223372T"_s,
              "2500000 -> k -> 2500K"_s, "5000000000000000 -> K -> 5000000000000K"_s, "2500000 -> G -> 2500000"_s,
              "2500000000000 -> t -> 2T"_s, "1500 -> m -> 1500"_s, "5000000000 -> X -> 5000000000"_s,
              "5000000000 -> GB -> 5000000000"_s, "1500 -> xK -> 1500"_s, "0 ->  -> 0"_s, "-7 ->  -> 0"_s,
              "-7000000 -> M -> 0"_s, "-9223372036854775808 -> X -> 0"_s});
    }

    void decimalTexts()
    {
        const auto [value, unit, result] = fetchTexts("value", "unit", "result");
        QCOMPARE(Utilities::numberToKmgtString(value.toLongLong(), unit), result);
    }

    void filteredNames_data()
    {
        // The forbidden characters are replaced one after the other, also in what has been put in.
        rows({"text", "replacement", "result"},
             {"a:b/c?.mp4 -> _ -> a_b_c_.mp4"_s, "/\\:*?\"<>|\0.é -> _ -> __________.é"_s, "a::b ->  -> ab"_s,
              "a:b -> / -> a/b"_s, "a/b -> : -> a:b"_s, R"(a/b -> \ -> a\b)"_s, "a/b -> <> -> a<<><>b"_s,
              "a:b -> |? -> a|?|??b"_s, "plain -> _ -> plain"_s, " -> _ -> "_s});
    }

    void filteredNames()
    {
        const auto [text, replacement, result] = fetchTexts("text", "replacement", "result");
        QCOMPARE(Utilities::filterInvalidCharsOfFileName(text, replacement), result);
    }

    void joinedList()
    {
        QStringList list{"a"_s, ""_s, "b c"_s};
        QCOMPARE(Utilities::stringList2String(list), "a  b c "_s);
        QCOMPARE(list, (QStringList{"a"_s, ""_s, "b c"_s}));
        list.clear();
        QCOMPARE(Utilities::stringList2String(list), ""_s);
        QCOMPARE(Utilities::getDiskSpace("/"_s), qint64(0));
    }

    void numberedNames_data()
    {
        // On disk: movie.mp4, readme., 100%1.mp4, and the folders folder.d and %2
        rows({"wanted", "taken", "result"},
             {"new.mp4 ->  -> new.mp4"_s, "movie.mp4 ->  -> movie(1).mp4"_s,
              "movie.mp4 -> movie(1).mp4 -> movie(2).mp4"_s,
              "movie.mp4 -> movie(2).mp4 movie(1).mp4 movie(4).mp4 -> movie(3).mp4"_s,
              "movie.mp4 -> Movie(1).mp4 movie(1).mp4.part -> movie(1).mp4"_s, "new.mp4 -> new.mp4 -> new(1).mp4"_s,
              "a.b.mp4 -> a.b.mp4 -> a.b(1).mp4"_s, "folder.d ->  -> folder(1).d"_s, "new ->  -> new."_s,
              "readme ->  -> readme(1)."_s, ".hidden -> .hidden -> (1).hidden"_s, "100%1.mp4 ->  -> 100%1(1).mp4"_s,
              "%2/%3%1.%2 -> %2/%3%1.%2 -> %2/%3%1(1).%2"_s});
    }

    void numberedNames()
    {
        const auto [wanted, taken, result] = fetchTexts("wanted", "taken", "result");
        const QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkdir("folder.d"_s) && QDir(dir.path()).mkdir("%2"_s));
        for (const QString &name : {"movie.mp4"_s, "readme."_s, "100%1.mp4"_s})
            Files::write(dir.filePath(name));
        QStringList takenNames = taken.split(QLatin1Char(' '));
        for (QString &name : takenNames)
            name = dir.filePath(name);
        QCOMPARE(Utilities::addNumberToExistedFileName(dir.filePath(wanted), takenNames), dir.filePath(result));
        const QString relative = QDir::current().relativeFilePath(dir.filePath(wanted));
        QCOMPARE(Utilities::addNumberToExistedFileName(relative, takenNames), dir.filePath(result));
    }

    void elidedTexts()
    {
        QFont font;
        font.setPixelSize(20);
        // An ampersand is no mark of a shortcut key.
        const QString text = "A && long & title of a page, much wider than it may be"_s;
        QCOMPARE(Utilities::elidedText(text, font, Qt::ElideLeft, 100000), text);
        QVERIFY(QFontMetrics(font).horizontalAdvance(Utilities::elidedText(text, font, Qt::ElideMiddle, 200)) <= 200);
        QVERIFY(Utilities::elidedText(text, font, Qt::ElideRight, 200).endsWith(QChar(0x2026)));
        QVERIFY(Utilities::elidedText(text, font, Qt::ElideLeft, 200).startsWith(QChar(0x2026)));
    }
};

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    UtilTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "UtilTest.moc"
