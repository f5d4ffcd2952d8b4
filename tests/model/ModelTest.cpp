#include "tests/model/Profiles.h"

#include <nox/model/FileMediaInfo.h>
#include <nox/model/WebMediaInfo.h>

#include <limits>
#include <type_traits>
#include <typeinfo>

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

/** The fields that a profile adds to those. */
QStringList ownFields(const MediaProfile &profile)
{
    return items(QStringLiteral("%1 %2 %3 %4 %5 %6 %7")
                     .arg(shown(profile.getName()), shown(profile.getUrl()), QString::number(profile.getSize()),
                          shown(profile.getDescription()), QString::number(profile.isSameAsSource()),
                          QString::number(profile.isAutoResolution()), QString::number(profile.isAutoBitRate())));
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

/** Changes that make a profile unequal. */
void (*const differences[])(MediaProfile &) = {
    [](MediaProfile &p) { p.setName("23"_s); },
    [](MediaProfile &p) { p.setMediaType(MEDIA_TYPE_UNKNOWN); },
    [](MediaProfile &p) { p.setFormat("mp4"_s); },
    [](MediaProfile &p) { p.setVResolution(QSize(1281, 720)); },
    [](MediaProfile &p) { p.setVResolution(QSize(1280, 721)); },
    [](MediaProfile &p) { p.setAspect(QSize(4, 9)); },
    [](MediaProfile &p) { p.setAspect(QSize(16, 3)); },
    [](MediaProfile &p) { p.setVCodec("vp9"_s); },
    [](MediaProfile &p) { p.setVBitRate(0); },
    [](MediaProfile &p) { p.setVFrameRate(29.970000000000003); }, // the last bit counts
    [](MediaProfile &p) { p.setVFrameRate(qQNaN()); },
    [](MediaProfile &p) { p.setACodec("opus"_s); },
    [](MediaProfile &p) { p.setASampleRate(48000); },
    [](MediaProfile &p) { p.setAutoBitRate(true); },
    [](MediaProfile &p) { p.setAutoResolution(false); },
    [](MediaProfile &p) { p.setSameAsSource(true); },
};

/** Changes all fields that are not compared. */
void changeTheRest(MediaProfile &profile)
{
    profile.setABitRate(1);
    profile.setUrl("u"_s);
    profile.setSize(5000000000);
    profile.setDescription("x"_s);
    profile.setDash(true);
    profile.set3D(true);
    profile.setOriResStr("720p"_s);
    profile.setPreferredDashAudioYdCode("140"_s);
}

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
        QCOMPARE(MediaInfo::fileSuffix(QString()), QString());
        QCOMPARE(MediaInfo::FILE_FORMAT_SUFFIX_MAP.size(), 1);

        // Only an empty map is filled. Filling it again keeps its entries.
        MediaInfo::FILE_FORMAT_SUFFIX_MAP = {{"WEBM"_s, "webm"_s}};
        QCOMPARE(MediaInfo::fileSuffix("mp4"_s), QString());
        MediaInfo::loadFormatSuffixMap();
        QCOMPARE(MediaInfo::fileSuffix("WEBM"_s) + MediaInfo::fileSuffix("mp4"_s), "webmmp4"_s);
    }

    void mediaInfoFields()
    {
        QCOMPARE(fields(MediaInfo()), unsetFields);
        QVERIFY(!MediaInfo().isValid());
        QVERIFY(fullInfo().isValid());
        QCOMPARE(fields(fullInfo()), fullFields);

        MediaInfo set;
        set.setMediaType(MEDIA_TYPE_AUDIO);
        set.setFormat("WEBM"_s);
        set.setVResolution(QSize(640, 360));
        set.setAspect(QSize(16, 9));
        set.setVCodec("vp9"_s);
        set.setVBitRate(11);
        set.setVFrameRate(29.97);
        set.setACodec("opus"_s);
        set.setABitRate(12);
        set.setASampleRate(13);
        QCOMPARE(fields(set), fullFields.mid(0, 10) + unsetFields.mid(10));
        set.setDash(true);
        set.set3D(true);
        set.setOriResStr(">1080p"_s);
        set.setPreferredDashAudioYdCode("140"_s);
        QCOMPARE(fields(set), fullFields);

        const MediaInfo copy(set);
        set = MediaInfo();
        QCOMPARE(fields(set), unsetFields);
        set = copy;
        QCOMPARE(fields(set), fullFields);
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
        QCOMPARE(fields(fresh), fullFields.mid(0, 10) + unsetFields.mid(10));
        QCOMPARE(fresh.getName(), "n"_s);
        fresh.copyFrom(&fresh);
        QCOMPARE(fields(fresh), fullFields.mid(0, 10) + unsetFields.mid(10));

        const MediaInfo &base = fresh;
        QVERIFY(typeid(base) == typeid(MediaProfile));
    }

    void labels_data()
    {
        rows({"size", "p", "mix"},
             {"1920x1080 -> 1080P -> 1080P"_s, "1935x1080 -> 1080P -> 1080P"_s, "1936x1080 -> 1080P -> 1936x1080"_s,
              "1916x1080 -> 1080P -> 1916x1080"_s, "1280x720 -> 720P -> 720P"_s, "960x540 -> 540P -> 540P"_s,
              "854x480 -> 480P -> 480P"_s, "848x480 -> 480P -> 480P"_s, "640x480 -> 480P -> 640x480"_s,
              "640x360 -> 360P -> 360P"_s, "426x240 -> 240P -> 240P"_s, "256x144 -> 144P -> 144P"_s,
              "176x144 -> 144P -> 176x144"_s, "3840x2160 -> 2160P -> 3840x2160"_s, "16x9 -> 9P -> 16x9"_s,
              "0x0 -> 0P -> 0x0"_s, "-1x-1 -> -1P -> -1x-1"_s, "-1280x-720 -> -720P -> -1280x-720"_s,
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

    void profileFields()
    {
        QCOMPARE(fields(MediaProfile()), unsetFields);
        QCOMPARE(ownFields(MediaProfile()), items(" (null) 0  0 0 0"_s));
        QVERIFY(!MediaProfile().isValid());
        const MediaProfile full = fullProfile();
        QCOMPARE(fields(full), items("0 MP4 1280x720 16x9 avc1 2500000 29.97 mp4a 128000 44100 0 0  "_s));
        QCOMPARE(ownFields(full), items("22 (null) 0 d 0 1 0"_s));

        MediaProfile source = fullProfile();
        changeTheRest(source);
        source.setSameAsSource(true);
        source.setAutoBitRate(true);
        MediaProfile target;
        const MediaProfile &assigned = (target = source);
        QCOMPARE(&assigned, &target);
        QCOMPARE(fields(target), items("0 MP4 1280x720 16x9 avc1 2500000 29.97 mp4a 1 44100 1 1 720p 140"_s));
        QCOMPARE(ownFields(target), items("22 u 5000000000 x 1 1 1"_s));
    }

    void equality()
    {
        MediaProfile other = fullProfile();
        QVERIFY(other == fullProfile());
        changeTheRest(other);
        QVERIFY(other == fullProfile());
        for (const auto difference : differences) {
            MediaProfile changed = fullProfile();
            difference(changed);
            QVERIFY2(!(changed == fullProfile()) && !(fullProfile() == changed), qPrintable(changed.toString()));
            QVERIFY2((changed == changed) == !qIsNaN(changed.getVFrameRate()), qPrintable(changed.toString()));
        }
    }

    void profileText()
    {
        const QString tail =
            ", type = 0, format = MP4, resolution = 1280x720, aspect = 16x9, vCodec = avc1, "
            "vBitRate = 2500000, frameRate = 29.97, aCodec = mp4a, aBitRate = 128000, aSampleRate = 44100"_s;
        // The places of the values when one text contains the marker of the next.
        const QString shifted =
            " = 0, type = MP4, format = 1280, resolution = 720x16, aspect = 9xavc1, "
            "vCodec = 2500000, vBitRate = 29.97, frameRate = mp4a, aCodec = 128000, aBitRate = 44100, "
            "aSampleRate = %14"_s;
        MediaProfile full = fullProfile();
        QCOMPARE(full.toString(), "Name = 22, description = d"_s + tail);
        full.setName("%2 <%14> %99"_s);
        QCOMPARE(full.toString(), "Name = d <44100> %99, description = d"_s + tail);
        full.setName("%1"_s);
        QCOMPARE(full.toString(), "Name = d, description"_s + shifted);
        full.setName("22"_s);
        full.setDescription("%2"_s);
        QCOMPARE(full.toString(), "Name = 22, description"_s + shifted);
        full.setDescription(QString());
        full.setACodec("%13"_s);
        QCOMPARE(full.toString(), "Name = 22, description = "_s + QString(tail).replace("mp4a"_s, "128000"_s));
        for (const auto &[rate, text] : {std::make_pair(25.0, "25"_s), {23.976023976, "23.976"_s}, {1e7, "1e+07"_s}}) {
            full.setVFrameRate(rate);
            QVERIFY2(full.toString().contains("frameRate = "_s + text + ","_s), qPrintable(full.toString()));
        }
    }

    void fileRecord()
    {
        const QString tail = ", resolution = -1x-1, aspect = 0x0, vCodec = , vBitRate = 0, frameRate = 0, aCodec = , "
                             "aBitRate = 0, aSampleRate = 0"_s;
        FileMediaInfo file;
        QVERIFY(file.analyzeMediaFile());
        QCOMPARE(fields(file), unsetFields);
        QVERIFY(file.getMediaFile().isNull() && file.getThumbnailFile().isNull());
        QCOMPARE(file.getFileSize() + file.getDuration(), qint64(0));
        QVERIFY(!file.isValid() && !file.isValidVideo());
        QCOMPARE(file.toString(), "MediaFile = , duration = 0, type = 3, format = "_s + tail);
        QCOMPARE(MediaProfile().toString(), "Name = , description = , type = 3, format = "_s + tail);

        file.setFormat("MP4"_s);
        QVERIFY(file.isValid() && !file.isValidVideo());
        file.setACodec("mp4a"_s);
        QVERIFY(file.isValidVideo());
        file.setACodec(QString());
        file.setVCodec("avc1"_s);
        QVERIFY(file.isValidVideo());

        file.setMediaFile("/d/%4.%2"_s);
        file.setThumbnailFile("/t"_s);
        file.setFileSize(6000000000);
        file.setDuration(5000000000);
        const FileMediaInfo copy = file;
        QCOMPARE(copy.getThumbnailFile(), "/t"_s);
        QCOMPARE(copy.getFileSize(), qint64(6000000000));
        QCOMPARE(copy.toString(),
                 "MediaFile = /d/MP4.5000000000, duration = 5000000000, type = 3, format = MP4"_s
                     + QString(tail).replace("vCodec = "_s, "vCodec = avc1"_s));
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
        QVERIFY(!WebMediaInfo().isValid() && !page.isValid());
        QVERIFY(page.addMediaProfile(profile("a:v:1x1:"_s)));
        QVERIFY(!page.isValid());
        page.setTitle("t"_s);
        QVERIFY(page.isValid());
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
