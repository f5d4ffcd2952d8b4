#include "tests/model/Profiles.h"

#include <nox/model/FileMediaInfo.h>
#include <nox/model/WebMediaInfo.h>

#include <type_traits>

using namespace Nox;

static_assert(std::is_polymorphic_v<MediaInfo> && !std::has_virtual_destructor_v<MediaInfo>);
static_assert(!std::is_polymorphic_v<WebMediaInfo>);
static_assert(MEDIA_TYPE_VIDEO == 0 && MEDIA_TYPE_AUDIO == 1 && MEDIA_TYPE_UNKNOWN == 3);

namespace {

QString shown(const QString &text)
{
    return text.isNull() ? "(null)"_s : text;
}

QString shown(QSize size)
{
    return QString::number(size.width()) + QLatin1Char('x') + QString::number(size.height());
}

/** All fields of a record: first the ten that copyFrom() copies, then the other four. */
QStringList fields(const MediaInfo &info)
{
    QStringList result = {QString::number(info.getMediaType()), shown(info.getFormat())};
    result << shown(info.getVResolution()) << shown(info.getVAspect()) << shown(info.getVCodec());
    result << QString::number(info.getVBitRate()) << QString::number(info.getVFrameRate()) << shown(info.getACodec());
    result << QString::number(info.getABitRate()) << QString::number(info.getASampleRate());
    result << QString::number(info.isDash()) << QString::number(info.is3D());
    return result << shown(info.getOriResStr()) << shown(info.getPreferredDashAudioYdCode());
}

/** The same, and what a profile adds. */
QStringList fields(const MediaProfile &profile)
{
    QStringList result = fields(static_cast<const MediaInfo &>(profile));
    result << shown(profile.getName()) << shown(profile.getUrl()) << QString::number(profile.getSize());
    result << shown(profile.getDescription()) << QString::number(profile.isSameAsSource());
    return result << QString::number(profile.isAutoResolution()) << QString::number(profile.isAutoBitRate());
}

const QStringList unsetFields = items("3 (null) -1x-1 0x0 (null) 0 0 (null) 0 0 0 0 (null) "_s);
const QStringList fullFields = items("1 WEBM 640x360 16x9 vp9 11 29.97 opus 12 13 1 1 >1080p 140"_s);

MediaInfo fullInfo()
{
    return MediaInfo(MEDIA_TYPE_AUDIO, "WEBM"_s, QSize(640, 360), QSize(16, 9), "vp9"_s, 11, 29.97, "opus"_s, 12, 13,
                     true, true, ">1080p"_s, "140"_s);
}

MediaProfile fullProfile()
{
    return MediaProfile("22"_s, "d"_s, MEDIA_TYPE_VIDEO, "MP4"_s, QSize(1280, 720), QSize(16, 9), "avc1"_s, 2500000,
                        29.97, "mp4a"_s, 128000, 44100, true, false);
}

/** A change of one field, by its place in fields(); and whether the profile is another one then. */
struct Change {
    int field;
    const char *text;
    bool isOther;
    void (*apply)(MediaProfile &profile);
};

const Change changes[] = {
    {0, "3", true, [](MediaProfile &p) { p.setMediaType(MEDIA_TYPE_UNKNOWN); }},
    {1, "mp4", true, [](MediaProfile &p) { p.setFormat("mp4"_s); }},
    {2, "1281x720", true, [](MediaProfile &p) { p.setVResolution(QSize(1281, 720)); }},
    {2, "1280x721", true, [](MediaProfile &p) { p.setVResolution(QSize(1280, 721)); }},
    {3, "4x9", true, [](MediaProfile &p) { p.setAspect(QSize(4, 9)); }},
    {3, "16x3", true, [](MediaProfile &p) { p.setAspect(QSize(16, 3)); }},
    {4, "vp9", true, [](MediaProfile &p) { p.setVCodec("vp9"_s); }},
    {5, "0", true, [](MediaProfile &p) { p.setVBitRate(0); }},
    {6, "29.97", true, [](MediaProfile &p) { p.setVFrameRate(29.970000000000003); }}, // the last bit counts
    {6, "nan", true, [](MediaProfile &p) { p.setVFrameRate(qQNaN()); }},
    {7, "opus", true, [](MediaProfile &p) { p.setACodec("opus"_s); }},
    {8, "1", false, [](MediaProfile &p) { p.setABitRate(1); }},
    {9, "48000", true, [](MediaProfile &p) { p.setASampleRate(48000); }},
    {10, "1", false, [](MediaProfile &p) { p.setDash(true); }},
    {11, "1", false, [](MediaProfile &p) { p.set3D(true); }},
    {12, "720p", false, [](MediaProfile &p) { p.setOriResStr("720p"_s); }},
    {13, "140", false, [](MediaProfile &p) { p.setPreferredDashAudioYdCode("140"_s); }},
    {14, "23", true, [](MediaProfile &p) { p.setName("23"_s); }},
    {15, "u", false, [](MediaProfile &p) { p.setUrl("u"_s); }},
    {16, "5000000000", false, [](MediaProfile &p) { p.setSize(5000000000); }},
    {17, "x", false, [](MediaProfile &p) { p.setDescription("x"_s); }},
    {18, "1", true, [](MediaProfile &p) { p.setSameAsSource(true); }},
    {19, "0", true, [](MediaProfile &p) { p.setAutoResolution(false); }},
    {20, "1", true, [](MediaProfile &p) { p.setAutoBitRate(true); }},
};

} // namespace

class ModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fileSuffixes()
    {
        QVERIFY(MediaInfo::FILE_FORMAT_SUFFIX_MAP.isEmpty());
        QCOMPARE(MediaInfo::fileSuffix("MP4"_s), QString());
        QCOMPARE(MediaInfo::FILE_FORMAT_SUFFIX_MAP, (QMap<QString, QString>{{"mp4"_s, "mp4"_s}}));
        QCOMPARE(MediaInfo::fileSuffix("mp4"_s), "mp4"_s);

        // Only an empty map is filled. Filling it again keeps its entries.
        MediaInfo::FILE_FORMAT_SUFFIX_MAP = {{"WEBM"_s, "webm"_s}};
        QCOMPARE(MediaInfo::fileSuffix("mp4"_s), QString());
        MediaInfo::loadFormatSuffixMap();
        QCOMPARE(MediaInfo::fileSuffix("WEBM"_s) + MediaInfo::fileSuffix("mp4"_s), "webmmp4"_s);
    }

    void constructors()
    {
        QCOMPARE(fields(MediaInfo()), unsetFields);
        QCOMPARE(fields(fullInfo()), fullFields);
        QVERIFY(!MediaInfo().isValid() && fullInfo().isValid());
        QCOMPARE(fields(MediaProfile()), unsetFields + items(" (null) 0  0 0 0"_s));
        QCOMPARE(fields(fullProfile()),
                 items("0 MP4 1280x720 16x9 avc1 2500000 29.97 mp4a 128000 44100 0 0   22 (null) 0 d 0 1 0"_s));
    }

    void fieldsOfProfiles()
    {
        for (const Change &change : changes) {
            MediaProfile changed = fullProfile();
            change.apply(changed);
            QStringList expected = fields(fullProfile());
            expected[change.field] = QString::fromLatin1(change.text);
            QCOMPARE(fields(changed), expected);
            QVERIFY2((changed == fullProfile()) != change.isOther, change.text);
            QVERIFY2((fullProfile() == changed) != change.isOther, change.text);
            MediaProfile assigned;
            QCOMPARE(&(assigned = changed), &assigned);
            QCOMPARE(fields(assigned), expected);
            QVERIFY2((changed == assigned) != qIsNaN(changed.getVFrameRate()), change.text);
        }
    }

    void copyFromTakesTenFields()
    {
        MediaInfo full = fullInfo();
        MediaInfo unset;
        MediaInfo target = fullInfo();
        target.copyFrom(&unset);
        QCOMPARE(fields(target), unsetFields.mid(0, 10) + fullFields.mid(10));

        MediaProfile fresh;
        fresh.setName("n"_s);
        fresh.copyFrom(&full);
        QCOMPARE(fields(fresh), fullFields.mid(0, 10) + unsetFields.mid(10) + items("n (null) 0  0 0 0"_s));
    }

    void labels_data()
    {
        rows({"size", "p", "mix"},
             {"1920x1080 -> 1080P -> 1080P"_s, "1935x1080 -> 1080P -> 1080P"_s, "1936x1080 -> 1080P -> 1936x1080"_s,
              "1916x1080 -> 1080P -> 1916x1080"_s, "1280x720 -> 720P -> 720P"_s, "960x540 -> 540P -> 540P"_s,
              "854x480 -> 480P -> 480P"_s, "848x480 -> 480P -> 480P"_s, "640x480 -> 480P -> 640x480"_s,
              "640x360 -> 360P -> 360P"_s, "426x240 -> 240P -> 240P"_s, "256x144 -> 144P -> 144P"_s,
              "176x144 -> 144P -> 176x144"_s, "3840x2160 -> 2160P -> 3840x2160"_s, "-1x-1 -> -1P -> -1x-1"_s,
              "2147483647x-2147483648 -> -2147483648P -> 2147483647x-2147483648"_s});
    }

    void labels()
    {
        const auto [size, p, mix] = fetchTexts("size", "p", "mix");
        const QSize value = profile("::"_s + size).getVResolution();
        QCOMPARE(MediaInfo::resolutionStringX(value), size);
        QCOMPARE(MediaInfo::resolutionStringP(value), p);
        QCOMPARE(MediaInfo::resolutionStringMix(value), mix);
    }

    void extendedLabel_data()
    {
        rows({"text", "label"},
             {"n:v3:1920x1080:MP4:>1080p -> >1080P (3D)"_s, "n:v:1280x720:MP4: -> 720P"_s,
              "n:v3:1280x720:MP4: -> 720P (3D)"_s, "n:v:640x480:MP4: -> 640x480"_s,
              "n:v:1280x720:MP4:1000x700 -> 1000X700"_s, "n:ad:-1x-1:M4A:128K -> 128K"_s, "n:a:-1x-1:M4A: -> -1x-1"_s});
    }

    void extendedLabel()
    {
        const auto [text, label] = fetchTexts("text", "label");
        QCOMPARE(profile(text).resolutionStringEx(), label);
    }

    void profileText()
    {
        const QString tail =
            ", type = 0, format = MP4, resolution = 1280x720, aspect = 16x9, vCodec = avc1, "
            "vBitRate = 2500000, frameRate = 29.97, aCodec = mp4a, aBitRate = 128000, aSampleRate = 44100"_s;
        MediaProfile full = fullProfile();
        QCOMPARE(full.toString(), "Name = 22, description = d"_s + tail);
        // A marker in a text gets the value of that number, and so the next ones get the values behind it.
        full.setName("%2 <%14> %99"_s);
        QCOMPARE(full.toString(), "Name = d <44100> %99, description = d"_s + tail);
        full.setName("%1"_s);
        QCOMPARE(full.toString(),
                 "Name = d, description = 0, type = MP4, format = 1280, resolution = 720x16, aspect = 9xavc1, "
                 "vCodec = 2500000, vBitRate = 29.97, frameRate = mp4a, aCodec = 128000, aBitRate = 44100, "
                 "aSampleRate = %14"_s);
        for (const auto &[rate, text] : {std::make_pair(25.0, "25"_s), {23.976023976, "23.976"_s}, {1e7, "1e+07"_s}}) {
            full.setVFrameRate(rate);
            QVERIFY2(full.toString().contains(" = "_s + text + ","_s), qPrintable(full.toString()));
        }
    }

    void fileRecord()
    {
        const QString unset = ", resolution = -1x-1, aspect = 0x0, vCodec = , vBitRate = 0, frameRate = 0, aCodec = , "
                              "aBitRate = 0, aSampleRate = 0"_s;
        QCOMPARE(MediaProfile().toString(), "Name = , description = , type = 3, format = "_s + unset);
        FileMediaInfo file;
        QVERIFY(file.analyzeMediaFile());
        QCOMPARE(fields(file), unsetFields);
        QVERIFY(file.getMediaFile().isNull() && file.getThumbnailFile().isNull() && file.getFileSize() == 0);
        QCOMPARE(file.toString(), "MediaFile = , duration = 0, type = 3, format = "_s + unset);
        QVERIFY(!file.isValid() && !file.isValidVideo());

        file.setFormat("MP4"_s);
        QVERIFY(file.isValid() && !file.isValidVideo());
        file.setVCodec("avc1"_s);
        QVERIFY(file.isValidVideo());
        file.setVCodec(QString());
        file.setACodec("mp4a"_s);
        QVERIFY(file.isValidVideo());
        file.setMediaFile("/d/%4.%2"_s);
        file.setThumbnailFile("/t"_s);
        file.setFileSize(6000000000);
        file.setDuration(5000000000);
        const FileMediaInfo copy = file;
        QCOMPARE(copy.getThumbnailFile() + QString::number(copy.getFileSize()), "/t6000000000"_s);
        QCOMPARE(copy.toString(),
                 "MediaFile = /d/MP4.5000000000, duration = 5000000000, type = 3, format = MP4"_s
                     + QString(unset).replace("aCodec = "_s, "aCodec = mp4a"_s));
    }

    void webRecordFields()
    {
        const auto texts = [](const WebMediaInfo &page) {
            QStringList result{shown(page.getUrl()), shown(page.getTitle()), shown(page.getFileName())};
            result << shown(page.getThumbnailUrl()) << shown(page.getThumbnailFile()) << shown(page.errorDetail());
            result << QString::number(page.getDuration()) << QString::number(page.getMediaType());
            return result << names(page.getMediaProfileList());
        };
        QCOMPARE(texts(WebMediaInfo()), items("(null) (null) (null) (null) (null) (null) 0 3 "_s));
        WebMediaInfo page("http://a"_s);
        QCOMPARE(texts(page), items("http://a (null) (null) (null) (null) (null) 0 3 "_s));
        page.setTitle("t"_s);
        QVERIFY(!page.isValid());
        QVERIFY(page.addMediaProfile(profile("a:v:1x1:"_s)) && page.isValid());
        page.setTitle(QString());
        QVERIFY(!page.isValid());
        page.setTitle("t"_s);
        page.setUrl(""_s);
        QVERIFY(!page.isValid());
        page.setUrl("u"_s);
        page.setFileName("f"_s);
        page.setThumbnailUrl("tu"_s);
        page.setThumbnailFile("tf"_s);
        page.setErrorDetail("e"_s);
        page.setDuration(5000000000);
        const WebMediaInfo copy = page;
        page = WebMediaInfo();
        QCOMPARE(texts(copy), items("u t f tu tf e 5000000000 3 a"_s));
    }
};

QTEST_GUILESS_MAIN(ModelTest)
#include "ModelTest.moc"
