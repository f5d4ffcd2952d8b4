#include <nox/model/FileMediaInfo.h>
#include <nox/model/MediaList.h>
#include <nox/model/MediaProfile.h>
#include <nox/model/WebMediaInfo.h>
#include <tests/util/Rows.h>

#include <QRandomGenerator>

#include <limits>
#include <type_traits>
#include <typeinfo>

using namespace Nox;

static_assert(std::is_polymorphic_v<MediaInfo> && !std::has_virtual_destructor_v<MediaInfo>);
static_assert(!std::is_polymorphic_v<WebMediaInfo>);
static_assert(MEDIA_TYPE_VIDEO == 0 && MEDIA_TYPE_AUDIO == 1 && MEDIA_TYPE_UNKNOWN == 3);

namespace
{

/** A profile from "name:kind:WxH:format:label", where kind holds v, a or u, d for DASH, 3 for 3D. */
MediaProfile profile(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char(':'));
    const QString kind = parts.value(1);
    const QStringList sides = parts.value(2).split(QLatin1Char('x'));
    MediaProfile result;
    result.setName(parts.value(0));
    result.setMediaType(kind.contains(QLatin1Char('a'))       ? MEDIA_TYPE_AUDIO
                            : kind.contains(QLatin1Char('u')) ? MEDIA_TYPE_UNKNOWN
                                                              : MEDIA_TYPE_VIDEO);
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
    const QStringList entries = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString &entry : entries) {
        result.append(profile(entry));
    }
    return result;
}

QString names(const QList<MediaProfile> &list)
{
    QStringList result;
    for (const MediaProfile &entry : list) {
        result.append(entry.getName());
    }
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
    return {QString::number(info.getMediaType()),
            shown(info.getFormat()),
            shown(info.getVResolution()),
            shown(info.getVAspect()),
            shown(info.getVCodec()),
            QString::number(info.getVBitRate()),
            QString::number(info.getVFrameRate()),
            shown(info.getACodec()),
            QString::number(info.getABitRate()),
            QString::number(info.getASampleRate()),
            QString::number(info.isDash()),
            QString::number(info.is3D()),
            shown(info.getOriResStr()),
            shown(info.getPreferredDashAudioYdCode())};
}

const QStringList unsetFields = {"3"_s,      "(null)"_s, "-1x-1"_s, "0x0"_s, "(null)"_s, "0"_s,      "0"_s,
                                 "(null)"_s, "0"_s,      "0"_s,     "0"_s,   "0"_s,      "(null)"_s, ""_s};
const QStringList fullFields = {"1"_s,    "WEBM"_s, "640x360"_s, "16x9"_s, "vp9"_s, "11"_s,     "29.97"_s,
                                "opus"_s, "12"_s,   "13"_s,      "1"_s,    "1"_s,   ">1080p"_s, "140"_s};

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

/** Thinning in its plainest form, one removal after another. */
void thinStepByStep(QList<MediaProfile> &list)
{
    for (int i = 0; i < list.size() - 1; ++i) {
        const MediaProfile head = list.at(i);
        const bool unknownSize = head.getOriResStr().toLower() == ">1080p"_s && head.getVResolution().width() <= 0;
        if (head.getMediaType() != MEDIA_TYPE_VIDEO || unknownSize) {
            continue;
        }
        while (i + 2 < list.size() && list.at(i).getVResolution() == list.at(i + 1).getVResolution()
               && list.at(i).is3D() == list.at(i + 1).is3D() && list.at(i).getFormat() == list.at(i + 1).getFormat()) {
            list.removeAt(list.at(i).isDash() ? i : i + 1);
        }
    }
}

/** One way in which a profile may differ from another, and whether both still count as equal. */
struct Difference {
    const char *name;
    void (*apply)(MediaProfile &);
    bool equal;
};

const Difference differences[] = {
    {"nothing", [](MediaProfile &) {}, true},
    {"name", [](MediaProfile &p) { p.setName("23"_s); }, false},
    {"type", [](MediaProfile &p) { p.setMediaType(MEDIA_TYPE_UNKNOWN); }, false},
    {"format's case", [](MediaProfile &p) { p.setFormat("mp4"_s); }, false},
    {"width", [](MediaProfile &p) { p.setVResolution(QSize(1281, 720)); }, false},
    {"height", [](MediaProfile &p) { p.setVResolution(QSize(1280, 721)); }, false},
    {"aspect width", [](MediaProfile &p) { p.setAspect(QSize(4, 9)); }, false},
    {"aspect height", [](MediaProfile &p) { p.setAspect(QSize(16, 3)); }, false},
    {"video codec", [](MediaProfile &p) { p.setVCodec("vp9"_s); }, false},
    {"video bit rate", [](MediaProfile &p) { p.setVBitRate(0); }, false},
    {"last bit of the frame rate", [](MediaProfile &p) { p.setVFrameRate(29.970000000000003); }, false},
    {"frame rate not a number", [](MediaProfile &p) { p.setVFrameRate(qQNaN()); }, false},
    {"audio codec", [](MediaProfile &p) { p.setACodec("opus"_s); }, false},
    {"sample rate", [](MediaProfile &p) { p.setASampleRate(48000); }, false},
    {"auto bit rate", [](MediaProfile &p) { p.setAutoBitRate(true); }, false},
    {"auto resolution", [](MediaProfile &p) { p.setAutoResolution(false); }, false},
    {"same as source", [](MediaProfile &p) { p.setSameAsSource(true); }, false},
    {"audio bit rate", [](MediaProfile &p) { p.setABitRate(1); }, true},
    {"url", [](MediaProfile &p) { p.setUrl("u"_s); }, true},
    {"size", [](MediaProfile &p) { p.setSize(1); }, true},
    {"description", [](MediaProfile &p) { p.setDescription("x"_s); }, true},
    {"DASH", [](MediaProfile &p) { p.setDash(true); }, true},
    {"3D", [](MediaProfile &p) { p.set3D(true); }, true},
    {"label", [](MediaProfile &p) { p.setOriResStr("720p"_s); }, true},
    {"audio code", [](MediaProfile &p) { p.setPreferredDashAudioYdCode("140"_s); }, true},
};

} // namespace

class ModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(MediaInfo::FILE_FORMAT_SUFFIX_MAP.isEmpty());
    }

    void fileSuffixes()
    {
        MediaInfo::FILE_FORMAT_SUFFIX_MAP.clear();
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
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QString>("x");
        QTest::addColumn<QString>("p");
        QTest::addColumn<bool>("mixIsP");
        const auto add = [](int width, int height, bool mixIsP) {
            const QString x = QString::number(width) + QLatin1Char('x') + QString::number(height);
            row(x) << QSize(width, height) << x << QString::number(height) + QLatin1Char('P') << mixIsP;
        };
        add(1920, 1080, true);
        add(1935, 1080, true);
        add(1936, 1080, false);
        add(1916, 1080, false);
        add(1900, 1080, false);
        add(1280, 720, true);
        add(960, 540, true);
        add(854, 480, true);
        add(848, 480, true);
        add(640, 480, false);
        add(640, 360, true);
        add(426, 240, true);
        add(256, 144, true);
        add(176, 144, false);
        add(3840, 2160, false);
        add(2560, 1440, false);
        add(1024, 576, false);
        add(16, 9, false);
        add(0, 0, false);
        add(-1, -1, false);
        add(-1280, -720, false);
        add(std::numeric_limits<int>::max(), std::numeric_limits<int>::min(), false);
    }

    void labels()
    {
        QFETCH(QSize, size);
        QFETCH(QString, x);
        QFETCH(QString, p);
        QFETCH(bool, mixIsP);
        QCOMPARE(MediaInfo::resolutionStringX(size), x);
        QCOMPARE(MediaInfo::resolutionStringP(size), p);
        QCOMPARE(MediaInfo::resolutionStringMix(size), mixIsP ? p : x);
    }

    void extendedLabel_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("label");
        const auto add = [](const QString &text, const QString &label) { row(text) << text << label; };
        add("n:v3:1920x1080:MP4:>1080p"_s, ">1080P (3D)"_s);
        add("n:v:1280x720:MP4:"_s, "720P"_s);
        add("n:v3:1280x720:MP4:"_s, "720P (3D)"_s);
        add("n:v:640x480:MP4:"_s, "640x480"_s);
        add("n:v:1280x720:MP4:1000x700"_s, "1000X700"_s);
        add("n:ad:-1x-1:M4A:128K"_s, "128K"_s);
        add("n:a:-1x-1:M4A:"_s, "-1x-1"_s);
    }

    void extendedLabel()
    {
        QFETCH(QString, text);
        QFETCH(QString, label);
        QCOMPARE(profile(text).resolutionStringEx(), label);
    }

    void ordering()
    {
        // Worst first; the records of one line are equal in rank.
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
        for (int left = 0; left < ranks.size(); ++left) {
            for (int right = 0; right < ranks.size(); ++right) {
                for (const MediaProfile &a : profiles(ranks.at(left))) {
                    for (const MediaProfile &b : profiles(ranks.at(right))) {
                        const QString pair = ranks.at(left) + " < "_s + ranks.at(right);
                        QVERIFY2((a < b) == (left < right), qPrintable(pair));
                    }
                }
            }
        }
    }

    void profileDefaults()
    {
        const MediaProfile unset;
        QCOMPARE(fields(unset), unsetFields);
        QVERIFY(unset.getName().isEmpty() && !unset.getName().isNull());
        QVERIFY(unset.getDescription().isEmpty() && !unset.getDescription().isNull());
        QVERIFY(unset.getUrl().isNull());
        QVERIFY(!unset.isSameAsSource() && !unset.isAutoResolution() && !unset.isAutoBitRate() && !unset.isValid());
        QCOMPARE(unset.getSize(), qint64(0));

        const MediaProfile full = fullProfile();
        QCOMPARE(full.getName() + full.getDescription(), "22d"_s);
        QCOMPARE(fields(full),
                 (QStringList{"0"_s, "MP4"_s, "1280x720"_s, "16x9"_s, "avc1"_s, "2500000"_s, "29.97"_s, "mp4a"_s,
                              "128000"_s, "44100"_s, "0"_s, "0"_s, ""_s, ""_s}));
        QVERIFY(full.getUrl().isNull() && full.isAutoResolution() && !full.isAutoBitRate() && !full.isSameAsSource());
        QCOMPARE(full.getSize(), qint64(0));
    }

    void profileCopiesEveryField()
    {
        MediaProfile source = profile("n:ad3:640x360:WEBM:720p"_s);
        source.setPreferredDashAudioYdCode("140"_s);
        source.setUrl("u"_s);
        source.setSize(5000000000);
        source.setDescription("d"_s);
        source.setSameAsSource(true);
        source.setAutoResolution(true);
        source.setAutoBitRate(true);
        MediaProfile target;
        QCOMPARE(&(target = source), &target);
        QCOMPARE(fields(target), fields(source));
        QCOMPARE(target.getName() + target.getUrl() + target.getDescription(), "nud"_s);
        QCOMPARE(target.getSize(), qint64(5000000000));
        QVERIFY(target.isSameAsSource() && target.isAutoResolution() && target.isAutoBitRate());
    }

    void equality_data()
    {
        QTest::addColumn<int>("index");
        int index = 0;
        for (const Difference &difference : differences) {
            QTest::newRow(difference.name) << index++;
        }
    }

    void equality()
    {
        QFETCH(int, index);
        MediaProfile changed = fullProfile();
        differences[index].apply(changed);
        QCOMPARE(changed == fullProfile(), differences[index].equal);
        QCOMPARE(fullProfile() == changed, differences[index].equal);
        QCOMPARE(changed == changed, !qIsNaN(changed.getVFrameRate()));
    }

    void profileText_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("description");
        QTest::addColumn<QString>("aCodec");
        QTest::addColumn<double>("rate");
        QTest::addColumn<QString>("text");
        const QString tail = ", type = 0, format = MP4, resolution = 1280x720, aspect = 16x9, vCodec = avc1, "
                             "vBitRate = 2500000, frameRate = "_s;
        const QString end = ", aCodec = mp4a, aBitRate = 128000, aSampleRate = 44100"_s;
        const QString shifted = " = 0, type = MP4, format = 1280, resolution = 720x16, aspect = 9xavc1, "
                                "vCodec = 2500000, vBitRate = 25, frameRate = mp4a, aCodec = 128000, "
                                "aBitRate = 44100, aSampleRate = %14"_s;
        QTest::newRow("plain") << "22"_s
                               << "d"_s
                               << "mp4a"_s << 29.97 << "Name = 22, description = d"_s + tail + "29.97"_s + end;
        QTest::newRow("six digits") << "22"_s << QString() << "mp4a"_s << 23.976023976
                                    << "Name = 22, description = "_s + tail + "23.976"_s + end;
        QTest::newRow("exponent") << "22"_s
                                  << ""_s
                                  << "mp4a"_s << 1e7 << "Name = 22, description = "_s + tail + "1e+07"_s + end;
        // One substitution after the other: a marker inside a text takes part in the later ones.
        QTest::newRow("later marker") << "%2 <%14> %99"_s
                                      << "d"_s
                                      << "mp4a"_s << 25.0
                                      << "Name = d <44100> %99, description = d"_s + tail + "25"_s + end;
        QTest::newRow("last marker") << "22"_s
                                     << "d"_s
                                     << "%13"_s << 25.0
                                     << "Name = 22, description = d"_s + tail + "25"_s
                + QString(end).replace("mp4a"_s, "128000"_s);
        QTest::newRow("own marker 1") << "%1"_s
                                      << "d"_s
                                      << "mp4a"_s << 25.0 << "Name = d, description"_s + shifted;
        QTest::newRow("own marker 2") << "22"_s
                                      << "%2"_s
                                      << "mp4a"_s << 25.0 << "Name = 22, description"_s + shifted;
    }

    void profileText()
    {
        QFETCH(QString, name);
        QFETCH(QString, description);
        QFETCH(QString, aCodec);
        QFETCH(double, rate);
        QFETCH(QString, text);
        MediaProfile full = fullProfile();
        full.setName(name);
        full.setDescription(description);
        full.setACodec(aCodec);
        full.setVFrameRate(rate);
        QCOMPARE(full.toString(), text);
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
        auto list = profiles("a:a:1x1:M4A b:v:1x1:MP4 :v:1x1:MP4 c:u:1x1: :a:1x1:M4A d:ad:1x1:M4A e:vd:1x1:MP4"_s);
        MediaListRemoveAudio(list);
        QCOMPARE(names(list), "b c e"_s);
        MediaListRemoveAudio(list);
        QCOMPARE(names(list), "b c e"_s);
        list = profiles("a:a:1x1:M4A :v:1x1:MP4"_s);
        MediaListRemoveAudio(list);
        QVERIFY(list.isEmpty());
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
        QTest::addColumn<QString>("list");
        QTest::addColumn<QString>("left");
        const auto add = [](const QString &list, const QString &left) { row(list) << list << left; };
        add(""_s, ""_s);
        add("a:v:9x9:MP4"_s, "a"_s);
        add("a:v:9x9:MP4 b:v:9x9:MP4"_s, "a b"_s);
        add("a:vd:9x9:MP4 b:v:9x9:MP4 c:v:8x8:MP4"_s, "b c"_s);
        add("a:v:9x9:MP4 b:vd:9x9:MP4 c:v:8x8:MP4"_s, "a c"_s);
        add("a:v:9x9:MP4 b:v:9x9:WEBM c:v:8x8:MP4"_s, "a b c"_s);
        add("a:v:9x9:MP4 b:v:9x9:mp4 c:v:8x8:MP4"_s, "a b c"_s);
        add("a:v:9x9:MP4 b:v3:9x9:MP4 c:v:8x8:MP4"_s, "a b c"_s);
        add("a:v:9x9:MP4 b:v:8x9:MP4 c:v:8x8:MP4 d:v:7x7:MP4"_s, "a b c d"_s);
        add("a:v:9x9:MP4 b:v:9x9:MP4 c:v:9x9:MP4"_s, "a c"_s);
        add("a:vd:9x9:MP4 b:vd:9x9:MP4 c:vd:9x9:MP4 d:v:8x8:MP4"_s, "c d"_s);
        add("a:vd:9x9:MP4 b:v:9x9:MP4 c:vd:9x9:MP4 d:v:9x9:MP4 e:v:8x8:MP4"_s, "b e"_s);
        add("a:vd:9x9:MP4 b:vd:9x9:MP4 c:vd:9x9:MP4"_s, "b c"_s);
        add("a:a:9x9:MP4 b:vd:9x9:MP4 c:v:9x9:MP4 d:v:8x8:MP4"_s, "a c d"_s);
        add("a:u:9x9:MP4 b:u:9x9:MP4 c:v:8x8:MP4"_s, "a b c"_s);
        add("a:v:9x9:MP4 b:a:9x9:MP4 c:v:8x8:MP4"_s, "a c"_s);
        add("a:vd:9x9:MP4 b:a:9x9:MP4 c:v:9x9:MP4 d:v:8x8:MP4"_s, "b d"_s);
        add("a:v:-1x-1:MP4:>1080P b:v:-1x-1:MP4:>1080p c:v:8x8:MP4"_s, "a b c"_s);
        add("a:v:0x9:MP4:>1080p b:v:0x9:MP4 c:v:0x9:MP4 d:v:8x8:MP4"_s, "a b d"_s);
        add("a:v:-1x-1:MP4 b:v:-1x-1:MP4:>1080p c:v:8x8:MP4"_s, "a c"_s);
        add("a:v:9x9:MP4:>1080p b:v:9x9:MP4:>1080p c:v:8x8:MP4"_s, "a c"_s);
        add("a:vd:-1x-1:MP4 b:vd:-1x-1:MP4:>1080p c:v:-1x-1:MP4 d:v:8x8:MP4"_s, "c d"_s);
    }

    void removeDuplicates()
    {
        QFETCH(QString, list);
        QFETCH(QString, left);
        QList<MediaProfile> thinned = profiles(list);
        MediaListRemoveDuplicatedResolutions(thinned);
        QCOMPARE(names(thinned), left);
    }

    void removeDuplicatesOfRandomLists()
    {
        QRandomGenerator random(20240305);
        for (int round = 0; round < 3000; ++round) {
            QString text;
            const int count = random.bounded(12);
            for (int i = 0; i < count; ++i) {
                const char *kinds[] = {"v", "vd", "vd", "v3", "a", "u"};
                const char *rests[] = {"9x9:MP4:", "9x9:MP4:", "9x9:MP4:>1080p", "9x8:WEBM:", "0x9:MP4:>1080P"};
                text += QString::number(i) + QLatin1Char(':') + QLatin1String(kinds[random.bounded(6)])
                    + QLatin1Char(':') + QLatin1String(rests[random.bounded(5)]) + QLatin1Char(' ');
            }
            QList<MediaProfile> thinned = profiles(text);
            QList<MediaProfile> expected = thinned;
            const QList<MediaProfile> shared = thinned;
            MediaListRemoveDuplicatedResolutions(thinned);
            thinStepByStep(expected);
            QVERIFY2(names(thinned) == names(expected), qPrintable(text));
            QCOMPARE(int(shared.size()), count);
        }
    }

    void webRecordFields()
    {
        const WebMediaInfo unset;
        QVERIFY(unset.getUrl().isNull() && unset.getTitle().isNull() && unset.getFileName().isNull());
        QVERIFY(unset.getThumbnailUrl().isNull() && unset.getThumbnailFile().isNull() && unset.errorDetail().isNull());
        QVERIFY(unset.getMediaProfileList().isEmpty() && !unset.isValid());
        QCOMPARE(unset.getDuration(), qint64(0));
        QCOMPARE(unset.getMediaType(), MEDIA_TYPE_UNKNOWN);

        WebMediaInfo page("http://a"_s);
        QVERIFY(page.getUrl() == "http://a"_s && page.getTitle().isNull() && !page.isValid());
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
        QCOMPARE((QStringList{copy.getUrl(), copy.getTitle(), copy.getFileName(), copy.getThumbnailUrl(),
                              copy.getThumbnailFile(), copy.errorDetail()}),
                 (QStringList{"u"_s, "t"_s, "f"_s, "tu"_s, "tf"_s, "e"_s}));
        QCOMPARE(copy.getDuration(), qint64(5000000000));
        QCOMPARE(names(copy.getMediaProfileList()), "a"_s);
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
        copy.addMediaProfile(profile("e:v:-1x-1:MP4:>1080p"_s));
        copy.addMediaProfile(profile("f:v:2560x1440:MP4"_s));
        copy.addMediaProfile(profile("g:v3:1280x720:WEBM"_s));
        copy.addMediaProfile(profile("h:v:1280x720:MP4"_s));
        copy.sortProfileDesc();
        QCOMPARE(names(copy.getMediaProfileList()), "f e b d g h a c"_s);
        QList<MediaProfile> taken = copy.getMediaProfileList();
        taken.clear();
        QCOMPARE(copy.getMediaProfileList().size(), 8);
        QCOMPARE(names(page.getMediaProfileList()), "d c a b"_s);
    }

    void profileSizes()
    {
        WebMediaInfo page;
        const QStringList urls = {"u"_s, QString(), "v"_s, "u"_s, ""_s};
        for (const QString &url : urls) {
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
        QCOMPARE(page.getProfileSize("v"_s), qint64(0));
        QCOMPARE(page.getProfileSize("U"_s), qint64(-1));
        QList<qint64> sizes;
        for (const MediaProfile &entry : page.getMediaProfileList()) {
            sizes.append(entry.getSize());
        }
        QCOMPARE(sizes, (QList<qint64>{5000000000, 7, 0, 0, 0}));
        QCOMPARE(copy.getProfileSize("u"_s), qint64(0));
        QCOMPARE(WebMediaInfo().getProfileSize(QString()), qint64(-1));
    }
};

QTEST_GUILESS_MAIN(ModelTest)
#include "ModelTest.moc"
