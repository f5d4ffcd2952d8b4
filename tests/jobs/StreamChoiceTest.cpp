#include "tests/jobs/SampleStreams.h"
#include "tests/util/Rows.h"

#include <nox/jobs/Conversion.h>
#include <nox/jobs/StreamChoice.h>
#include <nox/jobs/StreamPreference.h>
#include <nox/jobs/StreamText.h>
#include <nox/jobs/TextSanitizer.h>

#include <QtTest>

#include <limits>

using namespace Nox;

namespace {

/** The codes of all streams, with a bracket around those that the short list leaves out. */
QString codes(const StreamChoice &choice)
{
    const QList<MediaProfile> thinned = choice.thinned();
    QStringList result;
    const QList<MediaProfile> all = choice.all();
    for (const MediaProfile &one : all)
        result += (thinned.contains(one) ? "%1"_s : "(%1)"_s).arg(one.getName());
    return result.join(QLatin1Char(' '));
}

} // namespace

/** Which stream is chosen, what must be converted for it, and how it is described. */
class StreamChoiceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void choice_data();
    void choice();
    void conversions();
    void streamTexts();
};

void StreamChoiceTest::choice_data()
{
    // All streams in their order; the picture and its audio that are picked; a limit of lines, an audio that is chosen.
    const TextTable row{"streams", "codes", "picked", "height", "audio"};
    row("without sound, no audio", "1 MP4 640x360 dash", "1", "1");
    row("audio only, the tool's best", "a M4A 128K,b WEBM 160K", "a b", "a", "720");
    row("M4A for MP4 in spite of rate", "v MP4 640x360 dash,c WEBM 160K,a M4A 48K,b M4A 128K", "v c a b", "v a");
    row("the tool's best for the others", "v WEBM 640x360 dash,a M4A 128K,c WEBM 160K", "v a c", "v a");
    row("own sound before silence", "d MP4 1280x720 dash,p MP4 1280x720,q MP4 640x360", "p (d) q", "p");
    row("sound even where the picture is small", "d MP4 1280x720 dash,p MP4 320x180", "d p", "p");
    row("tool's preference", "s MP4 640x360,d MP4 1280x720 dash,e MP4 1280x720 dash,p MP4 1280x720,a M4A 1K",
        "d (e) (p) s a", "d a");
    row("no conversion before the tool's preference", "w WEBM 1280x720 dash,m MP4 1280x720 dash,a M4A 1K", "m w a",
        "m a");
    row("no conversion before picture", "w WEBM 3840x2160 dash,m MP4 1920x1080 dash,s MP4 640x360,a M4A 9K,o WEBM 9K",
        "w m s a o", "m a");
    row("sound that is converted", "m MP4 1920x1080 dash,s MP4 640x360,o WEBM 9K", "m s o", "s");
    row("nothing else is large", "w WEBM 3840x2160 dash,m MP4 1920x1080 dash,s MP4 320x240,o WEBM 9K", "w m s o",
        "m o");
    row("nothing else is large, nor MP4", "v WEBM 1280x720 dash,w WEBM 3840x2160 dash,s MP4 320x240,o WEBM 9K",
        "w v s o", "w o");
    row("label above 1080p", "m MP4 1920x1080,x MP4 >1080p,l MP4 2560x1440", "l x m", "l");
    row("labels differ", "m MP4 1920x1080,n MP4 1920x1080 1080p60,o MP4 1920x1080", "m n (o)", "m");
    row("2D before 3D", "t MP4 640x360 3d,f MP4 640x360", "f t", "f");
    row("unknown sizes all stay", "l FLV,m MP4,n MP4 dash,a M4A 9K", "l m n a", "l");
    row("codes that are options, no format", "-x MP4 9x9,q\"q MP4 8x8,v,ok MP4 7x7", "ok", "ok");

    const char many[] = "x MP4 >1080p,h MP4 1920x1080 dash,m MP4 1280x720 dash,w WEBM 640x480 dash,a M4A 1K,o WEBM 9K";
    const char sorted[] = "x h m w a o";
    row("label above the limit", many, sorted, "h a", "1080");
    row("what is converted, where nothing else is within the limit", many, sorted, "w a", "500");
    row("limit below all", many, sorted, "x", "100");
    row("with the audio that is chosen", many, sorted, "m o", "720", "o"); // all must be converted: the largest
    row("limit and unknown size", "u MP4,h MP4 1920x1080", "h u", "u", "720");
    row("silence is no choice", "s MP4 640x360 dash,h MP4 1920x1080", "h s", "h", "720");
    row("nothing", "", "", "", "720");
}

void StreamChoiceTest::choice()
{
    QFETCH(QString, streams);
    QFETCH(QString, height);
    QFETCH(QString, audio);
    const StreamChoice choice(SampleStreams::page(streams));
    QTEST(codes(choice), "codes");
    const MediaProfile chosen = choice.find(audio);
    const MediaProfile best = StreamPreference{height.toInt()}.pick(choice, chosen);
    const MediaProfile sound = chosen.isValid() ? chosen : choice.audioFor(best);
    QTEST((best.getName() + QLatin1Char(' ') + sound.getName()).trimmed(), "picked");
}

void StreamChoiceTest::conversions()
{
    const MediaProfile usual = SampleStreams::stream("v WEBM 1280x720 dash"_s);
    const MediaProfile huge = SampleStreams::stream("v WEBM 20000x20000 dash"_s);
    const auto seconds = [](const MediaProfile &video, qint64 duration, int processors) {
        return Conversion::roughSeconds(Conversion::Picture, video, duration, processors);
    };
    QVERIFY(seconds(usual, 3600, 64) < seconds(usual, 3600, 1));
    QVERIFY(seconds(huge, std::numeric_limits<qint64>::max(), 1) < 2000000000);
    QVERIFY(Conversion::warning(Conversion::Picture, huge, 3600).endsWith(" h."_s));
    QVERIFY(Conversion::warning(Conversion::Sound, usual, 3600).endsWith(": 2 min."_s));
    const QString unknown = Conversion::warning(Conversion::Picture, SampleStreams::stream("v WEBM dash"_s), 3600);
    QVERIFY(unknown.endsWith("takes long."_s));
    QCOMPARE(Conversion::warning(Conversion::Picture, usual, 0), unknown);
    QCOMPARE(Conversion::warning(Conversion::None, usual, 3600), QString());
    QVERIFY(Conversion::mark(Conversion::None).isEmpty() && !Conversion::mark(Conversion::Sound).isEmpty());
}

void StreamChoiceTest::streamTexts()
{
    const auto described = [](const char *words) {
        const MediaProfile one = SampleStreams::stream(QString::fromLatin1(words));
        return QStringList{StreamText::kind(one), StreamText::label(one), StreamText::marks(one),
                           StreamText::description(one)}
            .join(QLatin1Char('|'));
    };
    QCOMPARE(described("1 MP4 1280x720"), "video|720P||720p, with sound"_s);
    QCOMPARE(described("1 MP4 1280x720 dash 3d"), "3D video only|720P|DASH 3D|720p, without sound"_s);
    QCOMPARE(described("1 M4A 128K"), "audio|128K|DASH|sound only, 128 kbit/s"_s);
    QCOMPARE(described("1 M4A 0K"), "audio||DASH|sound only"_s);
    QCOMPARE(described("1 MP4 1920x1080 1080p60"), "video|1080P60||1080p, with sound"_s);
    QCOMPARE(described("1 MP4 640x480"), "video|640x480||480p, with sound"_s);

    const auto streams = SampleStreams::page("a M4A 128K,b M4A 128K,c M4A 64K,d FLV,e FLV,f MP4 640x360"_s);
    QCOMPARE(StreamText::labels(streams.getMediaProfileList()).join(QLatin1Char('|')),
             "128K (a)|128K (b)|64K|unknown (d)|unknown (e)|360P"_s);
    const QString joinedSigns = "\xf0\x9f\x91\xa9\xe2\x80\x8d\xf0\x9f\x94\xac"_s; // one sign made of two
    QCOMPARE(TextSanitizer::line(" a\x1b[31m\tb\n"_s + QChar(0x202e) + joinedSigns + QChar(0xd800)),
             "a [31m b "_s + joinedSigns);
}

QTEST_GUILESS_MAIN(StreamChoiceTest)
#include "StreamChoiceTest.moc"
