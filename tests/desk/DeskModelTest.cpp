#include "hosts/desk/model/DownloadPlan.h"
#include "hosts/desk/model/ProgramLog.h"
#include "hosts/desk/model/StreamTableModel.h"
#include "hosts/desk/network/WebRequest.h"
#include "hosts/desk/view/AddressOffer.h"
#include "hosts/desk/view/ShownText.h"

#include <QAbstractItemModelTester>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QTemporaryDir>
#include <QUrl>
#include <QtTest>

using namespace NoxDesk;

namespace {

Nox::MediaProfile stream(const char *code, const char *format, QSize size, bool isDash, int audioBits = 0)
{
    Nox::MediaProfile result;
    result.setName(QString::fromLatin1(code));
    result.setFormat(QString::fromLatin1(format));
    result.setVResolution(size);
    result.setDash(isDash);
    result.setMediaType(audioBits > 0 ? Nox::MEDIA_TYPE_AUDIO : Nox::MEDIA_TYPE_VIDEO);
    result.setABitRate(audioBits);
    result.setOriResStr(audioBits > 0 ? QStringLiteral("%1K").arg(audioBits / 1000) : QString());
    return result;
}

/** 18 with sound; 137, 136 and its like 298 without; 140 and 251 sound alone. */
Nox::WebMediaInfo page()
{
    Nox::WebMediaInfo info(QStringLiteral("http://x/"));
    info.setTitle(QStringLiteral("A/B"));
    info.setFileName(QStringLiteral("A B"));
    for (const Nox::MediaProfile &entry :
         {stream("18", "MP4", {640, 360}, false), stream("136", "MP4", {1280, 720}, true),
          stream("298", "MP4", {1280, 720}, true), stream("137", "MP4", {1920, 1080}, true),
          stream("248", "WEBM", {1920, 1080}, true), stream("251", "WEBM", {}, true, 160000),
          stream("140", "M4A", {}, true, 128000)}) {
        info.addMediaProfile(entry);
    }
    return info;
}

QString names(const StreamTableModel &model)
{
    QStringList result;
    for (int row = 0; row < model.rowCount(); ++row)
        result += model.stream(row).getName();
    return result.join(QLatin1Char(' '));
}

QString rowText(const StreamTableModel &model, int row)
{
    QStringList cells;
    for (int column = 0; column < model.columnCount(); ++column)
        cells += model.index(row, column).data().toString();
    return cells.join(QLatin1Char('|'));
}

} // namespace

Q_DECLARE_METATYPE(Nox::MediaProfile)

/** Models and choices, without a window and without processes. */
class DeskModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void streamTable();
    void streamTexts_data();
    void streamTexts();
    void tooltipIsNoMarkup();
    void conversion();
    void preferences_data();
    void preferences();
    void missingFolder();
    void choices_data();
    void choices();
    void destination_data();
    void destination();
    void ownDestination();
    void ownNameComesBack();
    void shownTexts_data();
    void shownTexts();
    void logs();
    void sizes_data();
    void sizes();
    void addresses_data();
    void addresses();
    void offer();
    void possibleRequests();

private:
    QString path(const QString &name) const { return m_root->filePath(name); }

    std::unique_ptr<QTemporaryDir> m_root;
    std::unique_ptr<DownloadPlan> m_plan;
};

void DeskModelTest::init()
{
    m_root = std::make_unique<QTemporaryDir>();
    m_plan = std::make_unique<DownloadPlan>();
    m_plan->setFolder(m_root->path());
    m_plan->setPage(QStringLiteral("http://x/"), page(), NoxHost::StreamChoice(page()));
}

void DeskModelTest::streamTable()
{
    StreamTableModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(model.startRow(), -1);
    model.setStreams(NoxHost::StreamChoice(page()), 60);
    QCOMPARE(names(model), QStringLiteral("137 248 136 18 251 140")); // one of 136 and 298
    QVERIFY(model.hidesAny());
    QCOMPARE(model.stream(model.startRow()).getName(), QStringLiteral("137"));
    QCOMPARE(model.stream(model.startRow(QStringLiteral("18"))).getName(), QStringLiteral("18"));

    model.setShowsAll(true);
    QCOMPARE(model.rowCount(), 7);
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    model.setSize(QStringLiteral("137"), 2500000);
    model.setSize(QStringLiteral("nowhere"), 1);
    QCOMPARE(changes.size(), 1);
    QCOMPARE(changes.first().first().toModelIndex().siblingAtColumn(StreamTableModel::Size).data().toString(),
             QStringLiteral("2.5 MB"));
    model.setStreams({}, -1);
    QCOMPARE(model.rowCount(), 0);
    QVERIFY(!model.stream(0).isValid());
}

void DeskModelTest::streamTexts_data()
{
    QTest::addColumn<Nox::MediaProfile>("profile");
    QTest::addColumn<QString>("texts");
    Nox::MediaProfile threeD = stream("a", "MP4", {1280, 720}, false);
    threeD.set3D(true);
    threeD.setSize(1000);
    QTest::newRow("with sound") << stream("a", "MP4", {640, 360}, false) << "360p, with sound|360P|MP4|video|";
    QTest::newRow("DASH") << stream("a", "WEBM", {1000, 500}, true)
                          << "500p, without sound|1000x500|WEBM|video only (DASH)|";
    QTest::newRow("audio") << stream("a", "M4A", {}, true, 128000) << "sound only, 128 kbit/s|128K|M4A|audio (DASH)|";
    QTest::newRow("3D, of known size") << threeD << "720p, with sound|720P|MP4|3D video|1.0 kB";
    QTest::newRow("nothing known") << stream("a", "FLV", {}, false) << "with sound|unknown|FLV|video|";
}

void DeskModelTest::streamTexts()
{
    QFETCH(Nox::MediaProfile, profile);
    Nox::WebMediaInfo info;
    info.addMediaProfile(profile);
    StreamTableModel model;
    model.setStreams(NoxHost::StreamChoice(info), 60);
    QTEST(rowText(model, 0), "texts");
}

/** A page has a say in the words of its streams: what looks like markup, which may name files, is shown as it is. */
void DeskModelTest::tooltipIsNoMarkup()
{
    Nox::WebMediaInfo info(QStringLiteral("http://x/"));
    info.addMediaProfile(stream("a", "<b>x", {640, 360}, false));
    StreamTableModel model;
    model.setStreams(NoxHost::StreamChoice(info), 60);
    const QModelIndex cell = model.index(0, StreamTableModel::Container);
    QCOMPARE(cell.data().toString(), QStringLiteral("<b>x"));
    QCOMPARE(cell.data(Qt::ToolTipRole).toString(), QStringLiteral("<p>&lt;b&gt;x</p>"));
}

/** Streams that must be encoded anew are marked in the table, and the form warns of them. */
void DeskModelTest::conversion()
{
    StreamTableModel model;
    model.setStreams(NoxHost::StreamChoice(page()), 600);
    for (int row = 0; row < model.rowCount(); ++row) {
        const bool isConverted = model.stream(row).getName() == QLatin1String("248");
        const QModelIndex cell = model.index(row, StreamTableModel::Words);
        QCOMPARE(cell.data().toString().contains(QLatin1String("must be converted")), isConverted);
        QCOMPARE(cell.data(Qt::ToolTipRole).toString().contains(QLatin1String("Rough guess")), isConverted);
        m_plan->setStream(model.stream(row));
        QCOMPARE(m_plan->warning().isEmpty(), !isConverted);
    }
    m_plan->setStream(NoxHost::StreamChoice(page()).find(QStringLiteral("248")));
    m_plan->setCompanion(QString());
    QCOMPARE(m_plan->warning(), QString());
}

void DeskModelTest::preferences_data()
{
    QTest::addColumn<int>("lines");
    QTest::addColumn<bool>("withoutConversion");
    QTest::addColumn<bool>("soundOnly");
    QTest::addColumn<QString>("code");
    QTest::newRow("as it comes") << 0 << true << false << "137";
    QTest::newRow("ceiling") << 720 << true << false << "136";
    QTest::newRow("ceiling between sizes") << 1000 << true << false << "136";
    QTest::newRow("ceiling below all") << 100 << true << false << "137";
    QTest::newRow("also what is converted") << 1440 << false << false << "137"; // of equals the one with less work
    QTest::newRow("sound") << 720 << true << true << "251";
}

void DeskModelTest::preferences()
{
    QFETCH(int, lines);
    QFETCH(bool, withoutConversion);
    QFETCH(bool, soundOnly);
    StreamTableModel model;
    model.setPreference({lines, withoutConversion, soundOnly});
    model.setStreams(NoxHost::StreamChoice(page()), 60);
    QTEST(model.stream(model.startRow()).getName(), "code");
}

void DeskModelTest::missingFolder()
{
    m_plan->setStream(NoxHost::StreamChoice(page()).find(QStringLiteral("18")));
    QCOMPARE(m_plan->missingFolder(), QString());
    m_plan->setDestination(path(QStringLiteral("new/deep/a.mp4")));
    QCOMPARE(m_plan->missingFolder(), path(QStringLiteral("new/deep")));
    QVERIFY(!m_plan->isComplete());
    m_plan->makeFolder();
    QVERIFY(m_plan->isComplete() && m_plan->missingFolder().isEmpty());
    QVERIFY(QFile(path(QStringLiteral("file"))).open(QIODevice::WriteOnly));
    m_plan->setDestination(path(QStringLiteral("file/new/a.mp4"))); // no folder can be made in a file
    QCOMPARE(m_plan->missingFolder(), QString());
}

void DeskModelTest::choices_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("sound"); // chosen by the user, where not "default"
    QTest::addColumn<QString>("companion");
    QTest::addColumn<QString>("file");
    QTest::newRow("sound of its own") << "18"
                                      << "default"
                                      << ""
                                      << "A B.mp4";
    QTest::newRow("MP4 goes with M4A") << "137"
                                       << "default"
                                       << "140"
                                       << "A B.mp4";
    QTest::newRow("WEBM goes with the best") << "248"
                                             << "default"
                                             << "251"
                                             << "A B.mp4";
    QTest::newRow("other sound") << "137"
                                 << "251"
                                 << "251"
                                 << "A B.mp4";
    QTest::newRow("no sound") << "248"
                              << ""
                              << ""
                              << "A B.webm";
    QTest::newRow("sound alone") << "140"
                                 << "default"
                                 << ""
                                 << "A B.m4a";
}

void DeskModelTest::choices()
{
    QFETCH(QString, code);
    QFETCH(QString, sound);
    m_plan->setStream(NoxHost::StreamChoice(page()).find(code));
    if (sound != QLatin1String("default"))
        m_plan->setCompanion(sound);
    QTEST(m_plan->companion(), "companion");
    QTEST(QFileInfo(m_plan->destination()).fileName(), "file");
    QCOMPARE(m_plan->takesCompanion(), code == QLatin1String("137") || code == QLatin1String("248"));
    QCOMPARE(m_plan->companions().size(), m_plan->takesCompanion() ? 2 : 0);
    // There is no ffmpeg beside this program.
    QCOMPARE(m_plan->soundProblem().isEmpty(), m_plan->companion().isEmpty());
    QCOMPARE(m_plan->isComplete(), m_plan->companion().isEmpty());
}

void DeskModelTest::destination_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("path"); // in the folder; "" for none
    QTest::addColumn<QString>("problem");
    QTest::newRow("relative") << "b.mp4"
                              << "b.mp4"
                              << "";
    QTest::newRow("blanks around it") << " b.mp4 "
                                      << "b.mp4"
                                      << "";
    QTest::newRow("nothing") << "  "
                             << ""
                             << "needs a name";
    QTest::newRow("taken on disk") << "old.mp4"
                                   << "old.mp4"
                                   << "exists already";
    QTest::newRow("taken by another") << "sub/../busy.mp4"
                                      << "busy.mp4"
                                      << "Another download";
    QTest::newRow("bad name") << "what?.mp4"
                              << "what?.mp4"
                              << "must not hold";
    QTest::newRow("no such folder") << "nowhere/b.mp4"
                                    << "nowhere/b.mp4"
                                    << "does not exist";
    QTest::newRow("a folder") << "sub/"
                              << "sub"
                              << "is a folder";
}

void DeskModelTest::destination()
{
    QFETCH(QString, text);
    QFETCH(QString, path);
    QFETCH(QString, problem);
    QVERIFY(QFile(this->path(QStringLiteral("old.mp4"))).open(QIODevice::WriteOnly));
    QVERIFY(QDir(m_root->path()).mkdir(QStringLiteral("sub")));
    m_plan->setTaken({this->path(QStringLiteral("busy.mp4"))});
    m_plan->setStream(stream("18", "MP4", {640, 360}, false));
    QVERIFY(m_plan->isComplete());
    m_plan->setDestination(text);
    QCOMPARE(m_plan->path(), path.isEmpty() ? path : this->path(path));
    QCOMPARE(m_plan->isComplete(), problem.isEmpty());
    QVERIFY2(m_plan->destinationProblem().contains(problem), qPrintable(m_plan->destinationProblem()));
    QCOMPARE(m_plan->destinationProblem().isEmpty(), problem.isEmpty());
}

/** What the user has written stays; only a suffix that was ours follows the stream. */
void DeskModelTest::ownDestination()
{
    const NoxHost::StreamChoice streams(page());
    m_plan->setStream(streams.find(QStringLiteral("18")));
    m_plan->setDestination(path(QStringLiteral("mine.mp4")));
    m_plan->setStream(streams.find(QStringLiteral("140")));
    QCOMPARE(m_plan->destination(), path(QStringLiteral("mine.m4a")));
    m_plan->setTaken({path(QStringLiteral("mine.m4a"))});
    QVERIFY(!m_plan->isComplete());
    m_plan->renumber();
    QCOMPARE(m_plan->destination(), path(QStringLiteral("mine(1).m4a")));
    m_plan->setDestination(path(QStringLiteral("mine.sound")));
    m_plan->setStream(streams.find(QStringLiteral("18")));
    QCOMPARE(m_plan->destination(), path(QStringLiteral("mine.sound")));
    m_plan->setPage(QStringLiteral("http://y/"), page(), streams);
    m_plan->setStream(streams.find(QStringLiteral("18")));
    QCOMPARE(m_plan->destination(), path(QStringLiteral("A B.mp4")));
}

/** A name that the user gave is numbered only as long as another download makes that file. */
void DeskModelTest::ownNameComesBack()
{
    m_plan->setStream(NoxHost::StreamChoice(page()).find(QStringLiteral("18")));
    QVERIFY(QDir(m_root->path()).mkdir(QStringLiteral("sub")));
    m_plan->setDestination(QStringLiteral("sub/mine.mp4"));
    m_plan->setFolder(path(QStringLiteral("sub")));
    m_plan->setTaken({path(QStringLiteral("sub/mine.mp4"))});
    m_plan->renumber();
    QCOMPARE(m_plan->destination(), path(QStringLiteral("sub/mine(1).mp4")));
    m_plan->setTaken({});
    QCOMPARE(m_plan->destination(), path(QStringLiteral("sub/mine.mp4")));
    m_plan->chooseFile(path(QStringLiteral("other")));
    QCOMPARE(m_plan->destination(), path(QStringLiteral("other.mp4")));
    m_plan->chooseFile(path(QStringLiteral("other.MP4")));
    QCOMPARE(m_plan->destination(), path(QStringLiteral("other.MP4")));
}

void DeskModelTest::shownTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("cut"); // after three characters
    QTest::addColumn<QString>("rich");
    QTest::newRow("short") << "abc"
                           << "abc"
                           << "<qt>abc</qt>";
    QTest::newRow("emoji of two units") << QString::fromUtf8("ab😀d") << QString::fromUtf8("ab😀…")
                                        << QString::fromUtf8("<qt>ab😀d</qt>");
    QTest::newRow("accent of its own") << QString::fromUtf8("abe\u0301d") << QString::fromUtf8("abe\u0301…")
                                       << QString::fromUtf8("<qt>abe\u0301d</qt>");
    QTest::newRow("markup") << "<b>\n&" << QString::fromUtf8("<b>…") << "<qt>&lt;b&gt;<br>&amp;</qt>";
    QTest::newRow("without blanks") << QString(50, u'x') << QString::fromUtf8("xxx…")
                                    << QStringLiteral("<qt>%1\u200b%2</qt>").arg(QString(40, u'x'), QString(10, u'x'));
}

void DeskModelTest::shownTexts()
{
    QFETCH(QString, text);
    QTEST(ShownText::cut(text, 3), "cut");
    QTEST(ShownText::breakable(text), "rich");
}

/** Each program has a log of its own, which does not grow without bound while the external programs run. */
void DeskModelTest::logs()
{
    auto first = std::make_unique<ProgramLog>(m_root->path());
    const ProgramLog second(m_root->path());
    const QString file = first->fileName();
    QCOMPARE(QFileInfo(file).absolutePath(), m_root->path());
    QVERIFY(second.fileName() != file);
    first.reset();
    ProgramLog next(m_root->path());
    QCOMPARE(next.fileName(), file);

    next.setWatched(true);
    QFile log(file);
    QVERIFY(log.open(QIODevice::Append) && log.write(QByteArray(ProgramLog::largestSize + 1, 'x')) > 0);
    log.close();
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(file).size() <= ProgramLog::largestSize, 30000);
    QVERIFY(QFile::exists(file + QStringLiteral(".old")));
    QCOMPARE(ProgramLog(QString()).fileName().isEmpty(), false);
}

void DeskModelTest::sizes_data()
{
    QTest::addColumn<QString>("companion");
    QTest::addColumn<bool>("isSoundKnown");
    QTest::addColumn<qint64>("size");
    QTest::newRow("both") << "140" << true << qint64{110};
    QTest::newRow("sound unknown") << "140" << false << qint64{0};
    QTest::newRow("alone") << "" << false << qint64{100};
}

void DeskModelTest::sizes()
{
    QFETCH(bool, isSoundKnown);
    m_plan->setStream(NoxHost::StreamChoice(page()).find(QStringLiteral("137")));
    QFETCH(QString, companion);
    m_plan->setCompanion(companion);
    m_plan->setSize(QStringLiteral("137"), 100);
    if (isSoundKnown)
        m_plan->setSize(QStringLiteral("140"), 10);
    const DownloadRequest request = m_plan->request();
    QTEST(request.stream.getSize(), "size");
    QCOMPARE(request.stream.getPreferredDashAudioYdCode(), companion);
    QCOMPARE(request.url, QStringLiteral("http://x/"));
    QCOMPARE(request.destination, path(QStringLiteral("A B.mp4")));
}

void DeskModelTest::addresses_data()
{
    QTest::addColumn<QString>("url"); // as a link, or
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("address");
    QTest::newRow("link") << "http://x/a b"
                          << ""
                          << "http://x/a%20b";
    QTest::newRow("text") << ""
                          << " https://x/y \n"
                          << "https://x/y";
    QTest::newRow("mended") << ""
                            << "www.x/y"
                            << "https://www.x/y";
    QTest::newRow("local file") << "file:///etc/passwd"
                                << ""
                                << "";
    QTest::newRow("prose") << ""
                           << "see https://x/y"
                           << "";
    QTest::newRow("two") << ""
                         << "https://x/y https://x/z"
                         << "";
    QTest::newRow("prose that begins so") << "" << QString(QStringLiteral("http://") + QString(5000, u'x')) << "";
    QTest::newRow("nothing") << ""
                             << ""
                             << "";
}

void DeskModelTest::addresses()
{
    QFETCH(QString, url);
    QFETCH(QString, text);
    QMimeData data;
    if (!url.isEmpty()) {
        data.setUrls({QUrl(url)});
    } else if (!text.isEmpty()) {
        data.setText(text);
    }
    QTEST(AddressOffer::addressIn(&data), "address");
}

void DeskModelTest::offer()
{
    QClipboard &clipboard = *QGuiApplication::clipboard();
    clipboard.setText(QStringLiteral("no address"));
    AddressOffer offer(clipboard);
    QSignalSpy changes(&offer, &AddressOffer::changed);
    clipboard.setText(QStringLiteral("http://x/1"));
    QTRY_COMPARE(changes.size(), 1);
    QCOMPARE(offer.address(), QStringLiteral("http://x/1"));
    offer.setKnown(QStringLiteral(" http://x/1"));
    QCOMPARE(offer.address(), QString());
    offer.setKnown(QString());
    QCOMPARE(offer.address(), QStringLiteral("http://x/1"));
    offer.dismiss();
    QCOMPARE(offer.address(), QString());
    offer.check();
    QCOMPARE(offer.address(), QString());
}

void DeskModelTest::possibleRequests()
{
    QVERIFY(WebRequest::isPossible(QStringLiteral("https://x/a.jpg")));
    for (const char *url : {"", "file:///etc/passwd", "a.jpg", "ftp://x/a.jpg", "http:///a.jpg", "data:,a"})
        QVERIFY2(!WebRequest::isPossible(QString::fromLatin1(url)), url);
}

QTEST_MAIN(DeskModelTest)
#include "DeskModelTest.moc"
