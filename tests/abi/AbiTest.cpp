#include <nox/NoxWebMedia.h>

#include <QtTest>

#include <cstring>

using namespace Nox;

namespace {

/*
 * Slot of a virtual function in its class's table, or -1 for a function that is not virtual. Compilers for this
 * platform store the slot's offset in a pointer to such a function: marked by its lowest bit, or on ARM by that of the
 * second word.
 */
template <typename Function>
int slot(Function function)
{
    struct {
        qptrdiff pointer;
        qptrdiff adjustment;
    } parts;
    static_assert(sizeof parts == sizeof function, "not the representation that this test reads");
    std::memcpy(&parts, &function, sizeof parts);
#if defined(Q_PROCESSOR_ARM)
    const bool isVirtual = (parts.adjustment & 1) != 0;
#else
    const bool isVirtual = (parts.pointer & 1) != 0;
    parts.pointer -= 1;
#endif
    return isVirtual ? int(parts.pointer / qptrdiff(sizeof(void *))) : -1;
}

// The members of the records, whose sizes differ between Qt 5 and Qt 6.
struct MediaInfoLayout {
    virtual ~MediaInfoLayout() = default;
    int type;
    QString format;
    QSize resolution;
    QSize aspect;
    QString videoCodec;
    int videoBitRate;
    double frameRate;
    QString audioCodec;
    int audioRates[2];
    bool flags[2];
    QString label;
    QString audioCode;
};

struct MediaProfileLayout : MediaInfoLayout {
    QString name;
    QString url;
    qint64 size;
    QString description;
    bool choices[3];
};

struct FileMediaInfoLayout : MediaInfoLayout {
    QString files[2];
    qint64 numbers[2];
};

struct WebMediaInfoLayout {
    QString texts[3];
    qint64 duration;
    QString thumbnails[2];
    int type;
    QList<MediaProfile> profiles;
    QString error;
};

// Programs that are built against the library contain these sizes, and the slots below.
static_assert(sizeof(MediaInfo) == sizeof(MediaInfoLayout));
static_assert(sizeof(MediaProfile) == sizeof(MediaProfileLayout));
static_assert(sizeof(FileMediaInfo) == sizeof(FileMediaInfoLayout));
static_assert(sizeof(WebMediaInfo) == sizeof(WebMediaInfoLayout));
static_assert(sizeof(ByteNumber) == sizeof(qint64));
static_assert(sizeof(WebMediaInfoExtractor) == sizeof(QObject));
static_assert(sizeof(WebMediaDownloader) == sizeof(QObject));
static_assert(sizeof(MediaType) == sizeof(int) && sizeof(_NoxLogLevel) == sizeof(int));

} // namespace

class AbiTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void virtualFunctions()
    {
        QCOMPARE(slot(&MediaInfo::copyFrom), 0);
        QCOMPARE(slot(&MediaInfo::isValid), 1);
        QCOMPARE(slot(&MediaInfo::resolutionStringEx), -1);
        // After the twelve of QObject.
        QCOMPARE(slot(&WebMediaInfoExtractor::getMediaInfo), 12);
        QCOMPARE(slot(&WebMediaInfoExtractor::getMediaInfoBySignal), 13);
        QCOMPARE(slot(&WebMediaInfoExtractor::cancel), 14);
        QCOMPARE(slot(&WebMediaDownloader::download), 12);
        QCOMPARE(slot(&WebMediaDownloader::cancel), 13);
        QCOMPARE(slot(&WebMediaDownloader::clear), 14);
        QCOMPARE(slot(&WebMediaDownloaderFactory::createExtractor), -1);
    }
};

QTEST_GUILESS_MAIN(AbiTest)
#include "AbiTest.moc"
