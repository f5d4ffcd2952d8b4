#include <nox/model/FileMediaInfo.h>
#include <nox/model/MediaList.h>
#include <nox/model/MediaProfile.h>
#include <nox/model/WebMediaInfo.h>
#include <tests/util/Rows.h>

#include <limits>
#include <type_traits>
#include <typeinfo>

using namespace Nox;

static_assert(std::is_polymorphic_v<MediaInfo> && !std::has_virtual_destructor_v<MediaInfo>);
static_assert(!std::is_polymorphic_v<WebMediaInfo>);
static_assert(MEDIA_TYPE_VIDEO == 0 && MEDIA_TYPE_AUDIO == 1 && MEDIA_TYPE_UNKNOWN == 3);

namespace {

QStringList words(const QString &text)
{
    return text.split(QLatin1Char(' '));
}

/** A profile from "name:kind:WxH:format:label", where kind holds v, a or u, d for DASH, 3 for 3D. */
MediaProfile profile(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char(':'));
    const QString kind = parts.value(1);
    const QStringList sides = parts.value(2).split(QLatin1Char('x'));
    MediaProfile result;
    result.setName(parts.value(0));
    const bool video = kind.startsWith(QLatin1Char('v'));
    result.setMediaType(video ? MEDIA_TYPE_VIDEO : kind == "u"_s ? MEDIA_TYPE_UNKNOWN : MEDIA_TYPE_AUDIO);
    result.setDash(kind.contains(QLatin1Char('d')));
    result.set3D(kind.contains(QLatin1Char('3')));
    result.setVResolution(QSize(sides.value(0).toInt(), sides.value(1).toInt()));
    result.setFormat(parts.value(3));
    result.setOriResStr(parts.value(4));
    return result;
}

QList<MediaProfile> profiles(const QString &text)
{
    QList<MediaProfile> result;
    for (const QString &entry : text.split(QLatin1Char(' '), Qt::SkipEmptyParts))
        result.append(profile(entry));
    return result;
}

QString names(const QList<MediaProfile> &list)
{
    QStringList result;
    for (const MediaProfile &entry : list)
        result.append(entry.getName());
    return result.join(QLatin1Char(' '));
}

QString shown(const QString &text)
{
    return text.isNull() ? "(null)"_s : text;
}

QString shown(QSize size)
{
    return QString::number(size.width()) + QLatin1Char('x') + QString::number(size.height());
}

/** Every field of a record: first the ten that copyFrom() takes, then the other four. */
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
    return words(QStringLiteral("%1 %2 %3 %4 %5 %6 %7")
                     .arg(shown(profile.getName()), shown(profile.getUrl()), QString::number(profile.getSize()),
                          shown(profile.getDescription()), QString::number(profile.isSameAsSource()),
                          QString::number(profile.isAutoResolution()), QString::number(profile.isAutoBitRate())));
}

const QStringList unsetFields = words("3 (null) -1x-1 0x0 (null) 0 0 (null) 0 0 0 0 (null) "_s);
const QStringList fullFields = words("1 WEBM 640x360 16x9 vp9 11 29.97 opus 12 13 1 1 >1080p 140"_s);

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

/** Profiles from the worst to the best; those of one line are equal in rank. */
const QStringList ranks = {
    "n:v:65536x32768:MP4"_s, // wraps to the least 32-bit number
    "n:v:46341x46341:MP4"_s, // wraps to a negative number
    "n:v:-1x720:MP4"_s,
    "n:v:0x0: n:v:65536x65536: n:v:0x1080::>1080p"_s,
    "n:a:-1x-1: n:v:1x1: n:u:-1x-1::1080p"_s,
    "n:ad3:-1x-1:M4A"_s,
    "n:ad:-1x-1:M4A n:ad:-1x-1:M4A:128K"_s,
    "n:v:65537x65537:MP4"_s, // wraps to 131073
    "n:v:640x360:MP4"_s,
    "n:v3:1280x720:MP4 n:ad3:720x1280:MP4:720p"_s,
    "n:v:1280x720:MP4 n:vd:1280x720:MP4:720p n:u:720x1280:MP4"_s,
    "n:v:1280x720:MP4\0"_s,
    "n:v:1280x720:MP4A"_s,
    "n:v:1280x720:MP4AB"_s,
    "n:v:1280x720:MP4AC"_s,
    "n:v3:1280x720:WEBM"_s,
    "n:v:1280x720:WEBM"_s,
    "n:v:1280x720:mp4"_s,
    "n:v:1280x720:😀"_s, // by code units, not by code points
    "n:v:1280x720:～"_s,
    "n:v:1920x1080:MP4 n:v:1920x1080:MP4:>1080p"_s,
    "n:v:-1x-1:MP4:>1080p n:v:-1x9999:MP4:>1080P n:v:2073601x1:MP4"_s,
    "n:v:-1x-1:WEBM:>1080p"_s,
    "n:v:1921x1080:MP4"_s,
    "n:v:2560x1440:MP4"_s,
    "n:v:65535x32768:MP4"_s,
};

/** Each way in which a profile is no longer equal to another. */
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

/** Changes every field that takes no part in equality. */
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

        // A map that holds anything is taken as filled; filling it again keeps what is there.
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
        const QString sizes =
            "1920x1080P 1935x1080P 1936x1080 1916x1080 1900x1080 1280x720P 960x540P 854x480P 848x480P "
            "640x480 640x360P 426x240P 256x144P 176x144 3840x2160 2560x1440 1024x576 16x9 0x0 -1x-1 -1280x-720 "
            "2147483647x-2147483648"_s;
        rows({"size"}, words(sizes));
    }

    void labels()
    {
        QFETCH(QString, size);
        const bool mixIsP = size.endsWith(QLatin1Char('P'));
        const QString x = mixIsP ? size.chopped(1) : size;
        const QSize value = profile("::"_s + x).getVResolution();
        const QString p = QString::number(value.height()) + QLatin1Char('P');
        QCOMPARE(MediaInfo::resolutionStringX(value), x);
        QCOMPARE(MediaInfo::resolutionStringP(value), p);
        QCOMPARE(MediaInfo::resolutionStringMix(value), mixIsP ? p : x);
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
        QFETCH(QString, text);
        QFETCH(QString, label);
        QCOMPARE(profile(text).resolutionStringEx(), label);
    }

    void ordering()
    {
        for (int left = 0; left < ranks.size(); ++left) {
            for (int right = 0; right < ranks.size(); ++right) {
                const QString pair = ranks.at(left) + " < "_s + ranks.at(right);
                for (const MediaProfile &a : profiles(ranks.at(left))) {
                    for (const MediaProfile &b : profiles(ranks.at(right)))
                        QVERIFY2((a < b) == (left < right), qPrintable(pair));
                }
            }
        }
    }

    void profileFields()
    {
        QCOMPARE(fields(MediaProfile()), unsetFields);
        QCOMPARE(ownFields(MediaProfile()), words(" (null) 0  0 0 0"_s));
        QVERIFY(!MediaProfile().isValid());
        const MediaProfile full = fullProfile();
        QCOMPARE(fields(full), words("0 MP4 1280x720 16x9 avc1 2500000 29.97 mp4a 128000 44100 0 0  "_s));
        QCOMPARE(ownFields(full), words("22 (null) 0 d 0 1 0"_s));

        MediaProfile source = fullProfile();
        changeTheRest(source);
        source.setSameAsSource(true);
        source.setAutoBitRate(true);
        MediaProfile target;
        const MediaProfile &assigned = (target = source);
        QCOMPARE(&assigned, &target);
        QCOMPARE(fields(target), words("0 MP4 1280x720 16x9 avc1 2500000 29.97 mp4a 1 44100 1 1 720p 140"_s));
        QCOMPARE(ownFields(target), words("22 u 5000000000 x 1 1 1"_s));
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
        // What is left for the places when one text holds the marker of the next.
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

    void removeAudio()
    {
        for (const auto &[given, left] :
             {std::pair("a:a:1x1:M4A b:v:1x1:MP4 :v:1x1:MP4 c:u:1x1: :a:1x1:M4A d:ad:1x1:M4A e:vd:1x1:MP4"_s,
                        "b c e"_s),
              std::pair("a:v:1x1:MP4 b:v:1x1:MP4 c:a:1x1:M4A d:v:1x1:MP4"_s, "a b d"_s),
              std::pair("a:v:1x1:MP4 b:a:1x1:M4A"_s, "a"_s), std::pair("a:a:1x1:M4A :v:1x1:MP4"_s, ""_s),
              std::pair("a:v:1x1:MP4"_s, "a"_s), std::pair(""_s, ""_s)}) {
            auto own = profiles(given);
            const QString before = names(own);
            auto shared = profiles(given);
            const auto copy = shared;
            MediaListRemoveAudio(own);
            MediaListRemoveAudio(shared);
            QCOMPARE(names(own), left);
            QCOMPARE(names(shared), left);
            QCOMPARE(names(copy), before);
        }
    }

    void streamByCode()
    {
        const auto list = profiles("22:v:1x1:FIRST 137:v:1x1:MP4 22:v:1x1:SECOND hls:v:1x1:MP4"_s);
        QCOMPARE(MediaListGetStreamByYdCode(list, "22"_s).getFormat(), "FIRST"_s);
        QCOMPARE(MediaListGetStreamByYdCode(list, "137"_s).getName(), "137"_s);
        for (const QString &code : {"13"_s, "HLS"_s, QString()}) {
            const MediaProfile missing = MediaListGetStreamByYdCode(list, code);
            QVERIFY(missing.getName().isEmpty() && !missing.getName().isNull() && !missing.isValid());
        }
    }

    void removeDuplicates_data()
    {
        rows({"list", "left"},
             {" -> "_s, "a:v:9x9:MP4 -> a"_s, "a:v:9x9:MP4 b:v:9x9:MP4 -> a b"_s,
              "a:vd:9x9:MP4 b:v:9x9:MP4 c:v:8x8:MP4 -> b c"_s, "a:v:9x9:MP4 b:vd:9x9:MP4 c:v:8x8:MP4 -> a c"_s,
              "a:v:9x9:MP4 b:v:9x9:WEBM c:v:8x8:MP4 -> a b c"_s, "a:v:9x9:MP4 b:v3:9x9:MP4 c:v:8x8:MP4 -> a b c"_s,
              "a:v:9x9:MP4 b:v:9x9:MP4 c:v:9x9:MP4 -> a c"_s, "a:vd:9x9:MP4 b:vd:9x9:MP4 c:vd:9x9:MP4 -> b c"_s,
              "a:a:9x9:MP4 b:vd:9x9:MP4 c:v:9x9:MP4 d:v:8x8:MP4 -> a c d"_s,
              "a:vd:9x9:MP4 b:a:9x9:MP4 c:v:9x9:MP4 d:v:8x8:MP4 -> b d"_s,
              "a:v:-1x-1:MP4:>1080P b:v:-1x-1:MP4:>1080p c:v:8x8:MP4 -> a b c"_s,
              "a:v:9x9:MP4:>1080p b:v:9x9:MP4:>1080p c:v:8x8:MP4 -> a c"_s,
              "a:vd:9x9:MP4 b:v:9x9:MP4 c:v3:9x9:MP4 d:v3:9x9:MP4 e:vd:8x8:WEBM f:vd:8x8:WEBM g:v:8x8:WEBM h:a:9x9:MP4 "
              "i:v:9x9:MP4 j:v:9x9:MP4 -> b c g h i j"_s});
    }

    void removeDuplicates()
    {
        QFETCH(QString, list);
        QFETCH(QString, left);
        QList<MediaProfile> own = profiles(list);
        QList<MediaProfile> shared = profiles(list);
        const QList<MediaProfile> copy = shared;
        MediaListRemoveDuplicatedResolutions(own);
        MediaListRemoveDuplicatedResolutions(shared);
        QCOMPARE(names(own), left);
        QCOMPARE(names(shared), left);
        QCOMPARE(names(copy), names(profiles(list)));
    }

    void webRecordFields()
    {
        const auto texts = [](const WebMediaInfo &page) {
            QStringList result{shown(page.getUrl()), shown(page.getTitle()), shown(page.getFileName())};
            result << shown(page.getThumbnailUrl()) << shown(page.getThumbnailFile()) << shown(page.errorDetail());
            result << QString::number(page.getDuration()) << QString::number(page.getMediaType());
            return result << names(page.getMediaProfileList());
        };
        QCOMPARE(texts(WebMediaInfo()), words("(null) (null) (null) (null) (null) (null) 0 3 "_s));
        WebMediaInfo page("http://a"_s);
        QCOMPARE(texts(page), words("http://a (null) (null) (null) (null) (null) 0 3 "_s));
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
        QCOMPARE(texts(copy), words("u t f tu tf e 5000000000 3 a"_s));
    }

    void webRecordProfiles()
    {
        WebMediaInfo page;
        page.addMediaProfile(profile("a:v:640x360:MP4"_s));
        page.addMediaProfile(profile("b:v:1920x1080:MP4"_s));
        QVERIFY(page.addMediaProfileToHead(profile("c:a:-1x-1:M4A"_s)));
        QVERIFY(page.addMediaProfileToHead(profile("d:v:1280x720:WEBM"_s)));
        QCOMPARE(names(page.getMediaProfileList()), "d c a b"_s);

        WebMediaInfo copy = page;
        copy.sortProfileDesc();
        QCOMPARE(names(copy.getMediaProfileList()), "b d a c"_s);
        QList<MediaProfile> taken = copy.getMediaProfileList();
        taken.clear();
        QCOMPARE(names(copy.getMediaProfileList()), "b d a c"_s);
        QCOMPARE(names(page.getMediaProfileList()), "d c a b"_s);
    }

    void sorting()
    {
        WebMediaInfo page;
        QStringList expected;
        for (const QString &rank : ranks) {
            QStringList equals;
            for (MediaProfile &entry : profiles(rank)) {
                entry.setName(QString::number(page.getMediaProfileList().size()));
                page.addMediaProfile(entry);
                equals.append(entry.getName());
            }
            expected = equals + expected; // those of one rank stay in their order
        }
        const QList<MediaProfile> given = page.getMediaProfileList();
        const QString before = names(given);
        for (int round = 0; round < 2; ++round) {
            page.sortProfileDesc();
            QCOMPARE(names(page.getMediaProfileList()), expected.join(QLatin1Char(' ')));
        }
        QCOMPARE(names(given), before);
    }

    void profileSizes()
    {
        WebMediaInfo page;
        for (const QString &url : {"u"_s, QString(), "v"_s, "u"_s, ""_s}) {
            MediaProfile entry;
            entry.setUrl(url);
            page.addMediaProfile(entry);
        }
        const WebMediaInfo copy = page;
        QVERIFY(page.setProfileSize("u"_s, 5000000000));
        QVERIFY(page.setProfileSize(""_s, 7));
        QVERIFY(!page.setProfileSize("U"_s, 9));
        QCOMPARE(page.getProfileSize("u"_s), qint64(5000000000));
        QCOMPARE(page.getProfileSize(QString()), qint64(7));
        QCOMPARE(page.getProfileSize("U"_s), qint64(-1));
        QStringList sizes;
        for (const MediaProfile &entry : page.getMediaProfileList())
            sizes.append(QString::number(entry.getSize()));
        QCOMPARE(sizes, words("5000000000 7 0 0 0"_s));
        QCOMPARE(copy.getProfileSize("u"_s), qint64(0));
        QCOMPARE(WebMediaInfo().getProfileSize(QString()), qint64(-1));
    }
};

QTEST_GUILESS_MAIN(ModelTest)
#include "ModelTest.moc"
