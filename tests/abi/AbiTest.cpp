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
    } words;
    static_assert(sizeof words == sizeof function, "not the representation that this test reads");
    std::memcpy(&words, &function, sizeof words);
#if defined(Q_PROCESSOR_ARM)
    const bool isVirtual = (words.adjustment & 1) != 0;
#else
    const bool isVirtual = (words.pointer & 1) != 0;
    words.pointer -= 1;
#endif
    return isVirtual ? int(words.pointer / qptrdiff(sizeof(void *))) : -1;
}

// A record as hosts' compilers lay it out; the texts differ between Qt 5 and Qt 6, and so do the sizes.
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

} // namespace

/** What programs that were built against an earlier library have built into them. */
class AbiTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void virtualFunctions_data();
    void virtualFunctions();
    void sizes_data();
    void sizes();
};

void AbiTest::virtualFunctions_data()
{
    QTest::addColumn<int>("found");
    QTest::addColumn<int>("expected");
    QTest::newRow("MediaInfo::copyFrom") << slot(&MediaInfo::copyFrom) << 0;
    QTest::newRow("MediaInfo::isValid") << slot(&MediaInfo::isValid) << 1;
    QTest::newRow("no other of MediaInfo") << slot(&MediaInfo::resolutionStringEx) << -1;
    // Behind the twelve of QObject.
    QTest::newRow("WebMediaInfoExtractor::getMediaInfo") << slot(&WebMediaInfoExtractor::getMediaInfo) << 12;
    QTest::newRow("WebMediaInfoExtractor::getMediaInfoBySignal")
        << slot(&WebMediaInfoExtractor::getMediaInfoBySignal) << 13;
    QTest::newRow("WebMediaInfoExtractor::cancel") << slot(&WebMediaInfoExtractor::cancel) << 14;
    QTest::newRow("WebMediaDownloader::download") << slot(&WebMediaDownloader::download) << 12;
    QTest::newRow("WebMediaDownloader::cancel") << slot(&WebMediaDownloader::cancel) << 13;
    QTest::newRow("WebMediaDownloader::clear") << slot(&WebMediaDownloader::clear) << 14;
    // The factory is called by name.
    QTest::newRow("no function of the factory") << slot(&WebMediaDownloaderFactory::createExtractor) << -1;
}

void AbiTest::virtualFunctions()
{
    QFETCH(int, found);
    QFETCH(int, expected);
    QCOMPARE(found, expected);
}

void AbiTest::sizes_data()
{
    QTest::addColumn<size_t>("found");
    QTest::addColumn<size_t>("expected");
    QTest::newRow("MediaInfo") << sizeof(MediaInfo) << sizeof(MediaInfoLayout);
    QTest::newRow("MediaProfile") << sizeof(MediaProfile) << sizeof(MediaProfileLayout);
    QTest::newRow("FileMediaInfo") << sizeof(FileMediaInfo) << sizeof(FileMediaInfoLayout);
    QTest::newRow("WebMediaInfo") << sizeof(WebMediaInfo) << sizeof(WebMediaInfoLayout);
    QTest::newRow("ByteNumber") << sizeof(ByteNumber) << sizeof(qint64);
    QTest::newRow("WebMediaInfoExtractor") << sizeof(WebMediaInfoExtractor) << sizeof(QObject);
    QTest::newRow("WebMediaDownloader") << sizeof(WebMediaDownloader) << sizeof(QObject);
    QTest::newRow("MediaType") << sizeof(MediaType) << sizeof(int);
    QTest::newRow("_NoxLogLevel") << sizeof(_NoxLogLevel) << sizeof(int);
}

void AbiTest::sizes()
{
    QFETCH(size_t, found);
    QFETCH(size_t, expected);
    QCOMPARE(found, expected);
}

QTEST_GUILESS_MAIN(AbiTest)
#include "AbiTest.moc"
