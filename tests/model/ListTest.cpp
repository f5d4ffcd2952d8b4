#include "tests/model/Profiles.h"

#include <nox/model/MediaList.h>
#include <nox/model/WebMediaInfo.h>

using namespace Nox;

namespace {

/** Profiles from the worst to the best; those of one line are equal. */
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

} // namespace

/** The order of profiles, and operations on lists of them. */
class ListTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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

    void removal_data()
    {
        rows({"kind", "list", "left"},
             {"audio -> a:a:1x1:M4A b:v:1x1:MP4 :v:1x1:MP4 c:u:1x1: :a:1x1:M4A d:ad:1x1:M4A e:vd:1x1:MP4 -> b c e"_s,
              "audio -> a:a:1x1:M4A :v:1x1:MP4 -> "_s, "audio -> a:v:1x1:MP4 -> a"_s, "audio ->  -> "_s,
              "same ->  -> "_s, "same -> a:v:9x9:MP4 -> a"_s, "same -> a:v:9x9:MP4 b:v:9x9:MP4 -> a b"_s,
              "same -> a:vd:9x9:MP4 b:v:9x9:MP4 c:v:8x8:MP4 -> b c"_s,
              "same -> a:v:9x9:MP4 b:vd:9x9:MP4 c:v:8x8:MP4 -> a c"_s,
              "same -> a:v:9x9:MP4 b:v:9x9:WEBM c:v:8x8:MP4 -> a b c"_s,
              "same -> a:v:9x9:MP4 b:v3:9x9:MP4 c:v:8x8:MP4 -> a b c"_s,
              "same -> a:v:9x9:MP4 b:v:9x9:MP4 c:v:9x9:MP4 -> a c"_s,
              "same -> a:vd:9x9:MP4 b:vd:9x9:MP4 c:vd:9x9:MP4 -> b c"_s,
              "same -> a:a:9x9:MP4 b:vd:9x9:MP4 c:v:9x9:MP4 d:v:8x8:MP4 -> a c d"_s,
              "same -> a:vd:9x9:MP4 b:a:9x9:MP4 c:v:9x9:MP4 d:v:8x8:MP4 -> b d"_s,
              "same -> a:v:-1x-1:MP4:>1080P b:v:-1x-1:MP4:>1080p c:v:8x8:MP4 -> a b c"_s,
              "same -> a:v:9x9:MP4:>1080p b:v:9x9:MP4:>1080p c:v:8x8:MP4 -> a c"_s,
              "same -> a:vd:9x9:MP4 b:v:9x9:MP4 c:v3:9x9:MP4 d:v3:9x9:MP4 e:vd:8x8:WEBM f:vd:8x8:WEBM g:v:8x8:WEBM "
              "h:a:9x9:MP4 i:v:9x9:MP4 j:v:9x9:MP4 -> b c g h i j"_s});
    }

    /** From a list that shares its entries with a copy, and from one that does not. */
    void removal()
    {
        const auto [kind, list, left] = fetchTexts("kind", "list", "left");
        const auto remove = kind == "audio"_s ? MediaListRemoveAudio : MediaListRemoveDuplicatedResolutions;
        QList<MediaProfile> own = profiles(list);
        QList<MediaProfile> shared = profiles(list);
        const QList<MediaProfile> copy = shared;
        remove(own);
        remove(shared);
        QCOMPARE(names(own), left);
        QCOMPARE(names(shared), left);
        QCOMPARE(names(copy), names(profiles(list)));
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
        copy.addMediaProfile(profile("e:v:1x1:MP4"_s));
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
        QCOMPARE(sizes, items("5000000000 7 0 0 0"_s));
        QCOMPARE(copy.getProfileSize("u"_s), qint64(0));
    }
};

QTEST_GUILESS_MAIN(ListTest)
#include "ListTest.moc"
