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

} // namespace

/** The sizes and virtual functions that programs contain when they are built against the library. */
class AbiTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void virtualFunctions_data()
    {
        QTest::addColumn<int>("found");
        QTest::addColumn<int>("expected");
        QTest::newRow("MediaInfo::copyFrom") << slot(&MediaInfo::copyFrom) << 0;
        QTest::newRow("MediaInfo::isValid") << slot(&MediaInfo::isValid) << 1;
        QTest::newRow("no other of MediaInfo") << slot(&MediaInfo::resolutionStringEx) << -1;
        // After the twelve of QObject.
        QTest::newRow("WebMediaInfoExtractor::getMediaInfo") << slot(&WebMediaInfoExtractor::getMediaInfo) << 12;
        QTest::newRow("WebMediaInfoExtractor::getMediaInfoBySignal")
            << slot(&WebMediaInfoExtractor::getMediaInfoBySignal) << 13;
        QTest::newRow("WebMediaInfoExtractor::cancel") << slot(&WebMediaInfoExtractor::cancel) << 14;
        QTest::newRow("WebMediaDownloader::download") << slot(&WebMediaDownloader::download) << 12;
        QTest::newRow("WebMediaDownloader::cancel") << slot(&WebMediaDownloader::cancel) << 13;
        QTest::newRow("WebMediaDownloader::clear") << slot(&WebMediaDownloader::clear) << 14;
        // The factory has no virtual functions.
        QTest::newRow("no function of the factory") << slot(&WebMediaDownloaderFactory::createExtractor) << -1;
    }

    void virtualFunctions()
    {
        QFETCH(int, found);
        QFETCH(int, expected);
        QCOMPARE(found, expected);
    }

    void sizes_data()
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

    void sizes()
    {
        QFETCH(size_t, found);
        QFETCH(size_t, expected);
        QCOMPARE(found, expected);
    }
};

QTEST_GUILESS_MAIN(AbiTest)
#include "AbiTest.moc"
