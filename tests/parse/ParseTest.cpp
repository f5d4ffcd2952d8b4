#include "tests/util/Files.h"
#include "tests/util/Rows.h"

#include <nox/log/Logger.h>
#include <nox/model/WebMediaInfo.h>
#include <nox/parse/JsonHelper.h>
#include <nox/parse/YdOutputParser.h>
#include <nox/util/Utilities.h>

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <json/reader.h>

#include <fstream>
#include <thread>

using namespace Nox;

namespace {

/** JSON from a text with apostrophes for quotes and short forms of two member names. */
QString json(QString text)
{
    return text.replace("'note'"_s, "'format_note'"_s)
        .replace("'res'"_s, "'resolution'"_s)
        .replace(QLatin1Char('\''), QLatin1Char('"'));
}

/** "title|file name|duration|thumbnail" */
QString pageText(const WebMediaInfo &page)
{
    return page.getTitle() + "|"_s + page.getFileName() + "|"_s + QString::number(page.getDuration()) + "|"_s
        + page.getThumbnailUrl();
}

/** "FORMAT WxH kind label bit-rate" of each profile, where kind ends in d for DASH, 3 for 3D. */
QString profileTexts(const WebMediaInfo &page)
{
    QStringList result;
    for (const MediaProfile &profile : page.getMediaProfileList()) {
        const QString kind = QStringList{"video"_s, "audio"_s, "2"_s, "unknown"_s}.at(profile.getMediaType())
            + (profile.isDash() ? "d"_s : ""_s) + (profile.is3D() ? "3"_s : ""_s);
        result.append(profile.getFormat() + " "_s + MediaInfo::resolutionStringX(profile.getVResolution()) + " "_s
                      + kind + " "_s + profile.getOriResStr() + " "_s + QString::number(profile.getABitRate()));
    }
    return result.join("; "_s);
}

QString names(const WebMediaInfo &page)
{
    QString result;
    for (const MediaProfile &profile : page.getMediaProfileList())
        result += profile.getName() + ","_s;
    return result;
}

} // namespace

class ParseTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    QString path(const QString &name) const { return m_dir.filePath(name); }

    /** Parses into @p page and returns the log. */
    QString parseInto(WebMediaInfo &page, const QString &text)
    {
        const QString log = path("parse.log"_s);
        QFile::remove(log);
        Logger::init(log.toStdString(), LOG_DEBUG, LOG_OUT_FILE);
        YdOutputParser::instance()->parseWebMediaInfo(text, page, m_dir.path());
        return QString::fromUtf8(Files::content(log));
    }

    /** Whether a text could be read, and its page. */
    QString outcome(const QString &text)
    {
        WebMediaInfo page("url"_s);
        const bool isRead = parseInto(page, text).isEmpty();
        return (isRead ? "read "_s : "not read "_s) + pageText(page) + "|"_s + profileTexts(page) + "|"_s + names(page);
    }

    static WebMediaInfo earlierPage()
    {
        WebMediaInfo page("url"_s);
        page.setTitle("T"_s);
        page.setFileName("F"_s);
        page.setDuration(9);
        page.setThumbnailUrl("U"_s);
        page.setThumbnailFile("local"_s);
        page.setErrorDetail("detail"_s);
        MediaProfile profile;
        profile.setName("old"_s);
        page.addMediaProfile(profile);
        return page;
    }

private Q_SLOTS:
    void members_data()
    {
        // A hyphen is the caller's default.
        rows({"document", "text", "number", "real"},
             {"{'k':42} -> - -> 42 -> 42"_s, "{'k':1080.0} -> - -> - -> 1080"_s, "{'k':1e3} -> - -> - -> 1000"_s,
              "{'k':129.478} -> - -> - -> 129.478"_s, "{'k':-2147483648} -> - -> -2147483648 -> -2147483648"_s,
              "{'k':2147483648} -> - -> - -> 2147483648"_s, "{'k':'1080'} -> 1080 -> - -> -"_s,
              "{'k':''} ->  -> - -> -"_s, "{'k':'é\\u20ac😀'} -> é€😀 -> - -> -"_s, "{'k':'a\\u0000b'} -> a -> - -> -"_s,
              "{'k':true} -> - -> - -> -"_s, "{'k':null} -> - -> - -> -"_s, "{'k':[1]} -> - -> - -> -"_s,
              "{'k':{'k':1}} -> - -> - -> -"_s, "{} -> - -> - -> -"_s, "[{'k':1}] -> - -> - -> -"_s,
              "'k' -> - -> - -> -"_s, "7 -> - -> - -> -"_s, "null -> - -> - -> -"_s});
    }

    void members()
    {
        const auto [document, text, number, real] = fetchTexts("document", "text", "number", "real");
        Json::Value object;
        QVERIFY(Json::Reader().parse(json(document).toUtf8().toStdString(), object, false));
        QCOMPARE(JsonHelper::getString(object, "k"_s, "-"_s), text);
        QCOMPARE(JsonHelper::getInt(object, "k"_s, -99), number == "-"_s ? -99 : number.toInt());
        QVERIFY(JsonHelper::getDouble(object, "k"_s, -0.5) == (real == "-"_s ? -0.5 : real.toDouble()));
    }

    void scriptFiles_data()
    {
        // A file of fewer than four bytes, or with nothing behind the byte-order mark "^", holds no text.
        rows({"bytes", "text"},
             {" -> (null)"_s, "abc -> (null)"_s, "^ -> (null)"_s, "^x -> x"_s, "aé\r\nb -> aé\r\nb"_s, "^x\0y -> x"_s,
              "abcd\0y -> abcd"_s});
    }

    void scriptFiles()
    {
        const auto [bytes, text] = fetchTexts("bytes", "text");
        Files::write(path("script"_s), bytes.toUtf8().replace('^', "\xEF\xBB\xBF"));
        const QString actual = JsonHelper::readUtf8Script(path("script"_s));
        QCOMPARE(actual.isNull() ? "(null)"_s : actual, text);
    }

    void writtenScripts()
    {
        const QString file = path("written"_s);
        const QString mark(QChar(0xFEFF)); // a text may begin with a mark of its own
        for (const QString &text : {"a long text, replaced"_s, "x"_s, "é€😀\r\n\t"_s, mark + "x"_s, mark}) {
            QVERIFY(JsonHelper::writeUtf8Script(file, text));
            QCOMPARE(Files::content(file), "\xEF\xBB\xBF" + text.toUtf8());
            QCOMPARE(JsonHelper::readUtf8Script(file), text);
        }
        QVERIFY(JsonHelper::writeUtf8Script(file, QString()));
        QCOMPARE(Files::content(file), QByteArray("\xEF\xBB\xBF"));
        QVERIFY(JsonHelper::readUtf8Script(file).isNull());
        QVERIFY(!JsonHelper::writeUtf8Script(path("missing/a"_s), "x"_s));
        QVERIFY(!QFile::exists(path("missing"_s)) && JsonHelper::readUtf8Script(path("missing/a"_s)).isNull());
    }

    void pages_data()
    {
        // First character references, then escapes are replaced in the whole text, before it is read as JSON.
        rows(
            {"document", "page"},
            {"{'title':'a','duration':212,'thumbnail':'t'} -> a|a|212|t"_s,
             "{'title':'a'}\n{'title':'b'}\n -> a|a|0|"_s, "{'title':'a'} WARNING: more -> a|a|0|"_s,
             "{'title':42,'duration':'212','thumbnail':null} -> ||0|"_s,
             "{'duration':212.0,'thumbnail':'t'} -> ||0|t"_s, "{'duration':3000000000} -> ||0|"_s,
             "{'title':'a/b:c?d*.mp4'} -> a/b:c?d*.mp4|a b c d .mp4|0|"_s,
             "{'thumbnail':'maxresdefault/MaxResDefault/maxresdefault.jpg'} -> ||0|mqdefault/MaxResDefault/mqdefault.jpg"_s,
             "[{'title':'a'}] -> ||0|"_s, "'title' -> ||0|"_s,
             "{'title':'it&#39;s caf\\u00e9 &#128512;'} -> it's café \uF600|it's café \uF600|0|"_s,
             "{'title':'&#92;u0041'} -> A|A|0|"_s, R"({'title':'\u0026#65;'} -> &#65;|&#65;|0|)"_s,
             R"({'title':'a\u0000b','duration':1} -> a|a|1|)"_s,
             R"({'ti\u0001tle':'x','duration':3,/* ' \u0001 */'title':'\\\u0002','x':'\'\u0001'} // ')"
             " -> \\\2| \2|3|"_s,
             R"({'title':'a','x':'\ud83d &#55357;'} -> a|a|0|)"_s, "{'title':'\uFEFFabc'} -> abc|abc|0|"_s,
             R"({'title':'\u005cu00e9'} -> é|é|0|)"_s});
    }

    void pages()
    {
        const auto [document, page] = fetchTexts("document", "page");
        WebMediaInfo info = earlierPage();
        QCOMPARE(parseInto(info, json(document)), QString());
        QCOMPARE(pageText(info), page);
        QCOMPARE(info.getUrl() + info.getThumbnailFile() + info.errorDetail(), "urllocaldetail"_s);
        QCOMPARE(names(info), "old,"_s);
    }

    void unreadablePages_data()
    {
        const QString documents =
            "|ERROR: [generic] no such page|%s%n|{'title':'x'|{'title':'x|{'title':'a&#34;b'}|{'title':'a\\u0022b'}|"
            "{'title':'a\\\\u0041'}|{'title':nope,'duration':1}|{'a':%s}|{'a':1,}|{'a' 1}|[1 2]|"
            "{'a':'\\ud83d' 1}|{'a':'\\\\u000au0041'}|{\1'a':'\1'}|{'\1':1,\n'b':}|\uFEFF{'a':1|{'é':\n'x\n}"_s;
        rows({"document"},
             documents.split(QLatin1Char('|'))
                 + QStringList{"["_s.repeated(100000), "["_s.repeated(100000) + "]"_s.repeated(100000),
                               "{'title':'x','formats':"_s + "{'a':"_s.repeated(100000)});
    }

    void unreadablePages()
    {
        QFETCH(QString, document);
        document = json(document);
        WebMediaInfo info = earlierPage();
        const QString log = parseInto(info, document);
        static const QRegularExpression record("^\n.{21} \\[ERROR\\]  parseWebMediaInfo  YdOutputParser\\.cpp"
                                               "\\(line\\d+\\) :\nJSON reader\\.parse error: \\S"_s);
        QVERIFY2(record.match(log).hasMatch(), qPrintable(log.left(300)));
        QCOMPARE(int(log.count("YdOutputParser.cpp"_s)), 1);
        QCOMPARE(pageText(info) + names(info), "T|F|9|Uold,"_s);
        if (document.size() > 1000) // which the reader gives up
            return;
        Json::Reader reader;
        Json::Value root;
        const QString read = Utilities::convertHttpSpecificChar2(Utilities::convertHttpSpecificChar(document));
        QVERIFY(!reader.parse(read.toUtf8().toStdString(), root, false));
        const QString message = QString::fromStdString(reader.getFormattedErrorMessages());
        QVERIFY2(log.endsWith(") :\nJSON reader.parse error: "_s + message + "\n"_s), qPrintable(log));
    }

    // simdjson must give the same records as jsoncpp.
    void readersAgree_data()
    {
        const QString values =
            R"(12|-7|0|-|01|-0|+1|0x10|NaN|-Infinity|1.|1.0|1.50|-0.0|.5|1e2|1E+2|1e-2|1e400|1e-400|1e|2147483647|)"
            R"(2147483648|-2147483649|123456789012345678|18446744073709551615|18446744073709551616|)"
            R"(-9223372036854775809|0.1234567890123456789|true|false|null|nul|x||[1,[2,{'a':3}]]|[1,]|[1 2]|{'a':1,}|)"
            R"({'a' 1}|{a:1}|1 // words|/* words */ 1|''|'a|'a\'|'\/\b\n'|'\q'|'\u00e9'|'\u00e'|'\u0022'|'\\u0041'|)"
            R"('\\&#65;'|'&#65;'|'&#34;'|'&amp; & &#;'|'&#xZ;'|&#39;a&#39;|'\ud83d\ude00'|'\ud83d'|'\ude00'|)"
            R"('a\u005cu0000b'|'\u005cud83dx'|'\u005cude00'|'\u005cud83d\u005cu0041'|'\u005cud83d\u005cude00'|)"
            R"('a\u0000b'|'\u0001'|'\ufeffa'|'a','title':'second'|)"
            R"('a','title':7|'a','height':720|'a','height':'b'|[{'ext':'a'}],'formats':[{'ext':'b'}]|)"
            R"([{'ext':'a'}],'formats':7|[{'ext':'a','ext':'b','ext':1,'url':'u','url':'v'}]|1}{|1} 2|1}\u0000)"_s;
        const auto nested = [](int depth) { return "["_s.repeated(depth) + "]"_s.repeated(depth); };
        rows({"value"},
             values.split(QLatin1Char('|'))
                 + QStringList{nested(80), nested(990), nested(1010), "'\uFEFFa'"_s, "'a\0b'"_s, "'\1'"_s,
                               "9"_s.repeated(400), "'"_s + QChar(0xD83D) + "'"_s, "'"_s + QChar(0xDE00) + "'"_s});
    }

    void readersAgree()
    {
        QFETCH(QString, value);
        for (const QString &members :
             {"'title':'T','x':%1,'thumbnail':%1,'formats':[{'format_id':'1','ext':'mp4','y':%1},{'format_id':'2',"
              "'ext':'m4a','vcodec':'none','height':%1,'abr':%1,'note':%1}],'duration':%1}"_s,
              "'title':%1,'formats':[{'format_id':'1','ext':'mp4'},%1]}"_s, "'title':'T','formats':%1}"_s,
              "'title':%1"_s}) {
            const QString document = json("{"_s + members.arg(value));
            QCOMPARE(outcome(document), outcome("/**/"_s + document)); // only jsoncpp reads comments
        }
    }

    void debugMessages()
    {
        WebMediaInfo info;
        QTest::ignoreMessage(QtDebugMsg, QRegularExpression("title: .*a b"_s));
        QTest::ignoreMessage(QtDebugMsg, QRegularExpression("duration: .*212"_s));
        QTest::ignoreMessage(QtDebugMsg, QRegularExpression("thumbnail: .*/mqdefault"_s));
        parseInto(info, json("{'title':'a b','duration':212,'thumbnail':'/maxresdefault'}"_s));
    }

    void audioFormats_data()
    {
        // The byte count of a textual bit rate is cut to its low 32 bits.
        rows({"entry", "profile"},
             {"'abr':128 -> 128K 128000"_s, "'abr':129.478 -> 129K 129000"_s, "'abr':0.9 -> 0K 0"_s,
              "'abr':-129.9 -> -129K -129000"_s, "'url':'u' -> 0K 0"_s, "'abr':true -> 0K 0"_s,
              "'abr':'128k' -> 131K 131000"_s, "'abr':'128KB' -> 131K 131000"_s, "'abr':'128' -> 0K 0"_s,
              "'abr':'1999' -> 1K 1000"_s, "'abr':'129.5k' -> 0K 0"_s, "'abr':'-1k' -> -1K -1000"_s,
              "'abr':'2G' -> -2147483K -2147483000"_s, "'abr':'3G' -> -1073741K -1073741000"_s,
              "'abr':'4194305K' -> 1K 1000"_s, "'abr':3000000 -> 3000000K 2147483647"_s,
              "'abr':-1e300 -> -2147483648K -2147483648"_s,
              "'vcodec':'av01.0','height':720,'width':9,'res':'720p' -> 0K 0"_s});
    }

    void audioFormats()
    {
        const auto [entry, profile] = fetchTexts("entry", "profile");
        WebMediaInfo page;
        const QString document = json("{'formats':[{'ext':'m4a','note':'x dAsH aUdIo 3D',"_s + entry + "}]}"_s);
        QCOMPARE(parseInto(page, document), QString());
        QCOMPARE(profileTexts(page), "M4A -1x-1 audiod "_s + profile);
    }

    void formats_data()
    {
        const QStringList table = {
            // Sound only
            "'note':'DASH video','acodec':'opus','vcodec':'none','abr':70 -> -1x-1 audiod 70K 70000"_s,
            "'note':'3D','acodec':'OPUS','vcodec':'NONE' -> -1x-1 audiod 0K 0"_s,
            "'acodec':'mp4a','height':480 -> -1x-1 audiod 0K 0"_s,
            // DASH and 3D video, named sizes
            "'note':'DASH video','res':'1920x1080','height':1080,'width':1920,'acodec':'none'"
            " -> 1920x1080 videod 1920x1080 0"_s,
            "'note':'DASH video','res':'720p','width':1000,'height':700 -> 1280x720 videod 720p 0"_s,
            "'note':'dash VIDEO 3d','res':'720P','acodec':'mp4a','vcodec':'avc1' -> 1280x720 videod 720P 0"_s,
            "'note':'1080p 3D','res':'1080p','width':10,'height':10 -> 1920x1080 video3  0"_s,
            "'note':'3D','acodec':'none','vcodec':'avc1','height':480 -> 848x480 videod3  0"_s,
            "'res':'480p' -> 720x480 video  0"_s, "'res':'360P' -> 640x360 video  0"_s,
            "'res':'240p' -> 320x240 video  0"_s, "'res':'144p' -> 176x144 video  0"_s,
            "'res':'2160p','height':2160 -> 3840x2160 video  0"_s,
            "'res':' 720p','width':1,'height':2 -> 1x2 video  0"_s,
            "'res':'>1080P','height':1440 -> 2560x1440 video >1080P 0"_s,
            "'res':'>1080p','note':'3D' -> -1x-1 video3 >1080p 0"_s,
            "'res':'>1080p','width':2048,'height':858 -> 2048x858 video >1080p 0"_s,
            // Width computed from the height
            "'height':480,'vcodec':'avc1','acodec':'mp4a' -> 848x480 video  0"_s,
            "'height':1000 -> 1776x1000 video  0"_s, "'height':1080,'width':-5 -> 1920x1080 video  0"_s,
            "'height':480,'width':0 -> -1x-1 video  0"_s, "'height':8 -> -1x-1 video  0"_s,
            "'height':-20 -> -1x-1 video  0"_s, "'width':640 -> -1x-1 video  0"_s,
            "'height':1080.0,'width':1920 -> -1x-1 video  0"_s, "'height':'1080','width':1920 -> -1x-1 video  0"_s,
            "'height':null,'width':null,'res':720 -> -1x-1 video  0"_s,
            "'height':2147483647 -> 2147483647x2147483647 video  0"_s,
            // DASH by codec; codecs that drop the entry
            "'acodec':'none','vcodec':'avc1' -> -1x-1 videod  0"_s, "'acodec':'none' -> -1x-1 videod  0"_s,
            "'acodec':'NONE','vcodec':'avc1' -> -1x-1 video  0"_s, "'acodec':'None' -> -1x-1 video  0"_s,
            "'acodec':'','vcodec':'' -> -1x-1 video  0"_s, "'note':'dash webm video' -> -1x-1 video  0"_s,
            "'note':7 -> -1x-1 video  0"_s, "'vcodec':'av01','acodec':'opus' -> -1x-1 video  0"_s,
            "'vcodec':'xav01.0','acodec':'opus' -> -1x-1 video  0"_s, "'vcodec':'av01.0.05M.08','acodec':'none' -> "_s,
            "'vcodec':'AV01.','note':'DASH video' -> "_s,
            "'note':'DASH WebM Audio','height':720,'acodec':'opus','vcodec':'vp9' -> "_s,
            "'note':'x dash webm audio, dash video','acodec':'opus' -> "_s};
        rows({"entry", "profile"}, table);
    }

    void formats()
    {
        const auto [entry, profile] = fetchTexts("entry", "profile");
        WebMediaInfo page;
        QCOMPARE(parseInto(page, json("{'formats':[{'ext':'mp4',"_s + entry + "}]}"_s)), QString());
        QCOMPARE(profileTexts(page), profile.isEmpty() ? profile : "MP4 "_s + profile);
    }

    void fieldsBeyondTheKind()
    {
        WebMediaInfo page;
        parseInto(page,
                  json("{'description':'D','formats':[{'format_id':'22','ext':'mp4','url':'http://u','vcodec':'x',"
                       "'acodec':'mp4a','tbr':5,'vbr':5,'asr':44100,'fps':30,'filesize':77,'height':720}]}"_s));
        QCOMPARE(page.getMediaProfileList().size(), 1);
        const MediaProfile profile = page.getMediaProfileList().at(0);
        QCOMPARE(profile.getUrl(), "http://u"_s);
        QCOMPARE(profile.toString(),
                 "Name = 22, description = D, type = 0, format = MP4, resolution = 1280x720, "
                 "aspect = 0x0, vCodec = , vBitRate = 0, frameRate = 0, aCodec = , aBitRate = 0, aSampleRate = 0"_s);
        QVERIFY(profile.getVCodec().isNull() && profile.getACodec().isNull());
        QVERIFY(profile.getPreferredDashAudioYdCode().isEmpty() && profile.getSize() == 0);
    }

    void formatsStandInReverse()
    {
        WebMediaInfo page = earlierPage();
        const QString document =
            json("{'formats':[{'format_id':'A','ext':'3gp'},7,null,'ext',['ext'],{},"
                 "{'format_id':'-'},{'format_id':'-','ext':''},{'format_id':'-','ext':42},{'format_id':'B','ext':'x'},"
                 "{'note':'dash audio','format_id':'-'},{'format_id':137,'ext':'x'},"
                 "{'ext':'x','format_id':'C','note':'dash audio'}]}"_s);
        parseInto(page, document);
        QCOMPARE(names(page), "C,,B,A,old,"_s);
        for (const QString &formats : {"null"_s, "{'0':{'ext':'x'}}"_s, "'x'"_s, "7"_s, "true"_s, "[]"_s}) {
            QCOMPARE(parseInto(page, json("{'title':'t','formats':"_s + formats + "}"_s)), QString());
            QCOMPARE(page.getTitle() + names(page), "tC,,B,A,old,"_s);
        }
        parseInto(page, document);
        QCOMPARE(names(page), "C,,B,A,C,,B,A,old,"_s);
    }

    void legacyFormats()
    {
        YdOutputParser &parser = *YdOutputParser::instance();
        QCOMPARE(YdOutputParser::instance(), &parser);
        const QMap<QString, QString> expected = {
            {"13"_s, "3GP"_s}, {"17"_s, "MP4"_s},  {"18"_s, "MP4"_s},  {"22"_s, "MP4"_s},  {"37"_s, "MP4"_s},
            {"38"_s, "MP4"_s}, {"43"_s, "WEBM"_s}, {"44"_s, "WEBM"_s}, {"45"_s, "WEBM"_s}, {"46"_s, "WEBM"_s}};
        for (int code = 0; code < 150; ++code) {
            const QString format = expected.value(QString::number(code), "FLV"_s);
            QCOMPARE(parser.getYdFormat(QString::number(code)), format);
            QCOMPARE(parser.getYdFormatLen(QString::number(code)), int(format.size()));
        }
        QCOMPARE(parser.getYdFormat(QString()) + parser.getYdFormat(" 22"_s), "FLVFLV"_s);
    }

    void waitForFile()
    {
        YdOutputParser &parser = *YdOutputParser::instance();
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!parser.waitFile(path("never"_s)));
        QVERIFY2(timer.elapsed() >= 2900, QByteArray::number(timer.elapsed()).constData());

        const QString late = path("late"_s);
        std::thread writer([late] {
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
            std::ofstream(QFile::encodeName(late).toStdString());
        });
        const bool seen = parser.waitFile(late);
        writer.join();
        QVERIFY(seen);
        timer.start();
        QVERIFY(parser.waitFile(late));
        QVERIFY(timer.elapsed() < 1000);
    }
};

QTEST_GUILESS_MAIN(ParseTest)
#include "ParseTest.moc"
