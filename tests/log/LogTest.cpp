#include "tests/util/Files.h"
#include "tests/util/Rows.h"

#include <nox/log/Logger.h>
#include <nox/log/ModuleLog.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <iostream>
#include <memory>

#include <unistd.h>

using namespace Nox;

namespace {

/** The log's text with each time stamp replaced by "<now>". */
QByteArray withoutTime(const QByteArray &log)
{
    static const QRegularExpression stamp(R"((?<=\n) \d{4}-\d\d-\d\d \d\d:\d\d:\d\d (?= ))"_s);
    return QString::fromUtf8(log).replace(stamp, "<now>"_s).toUtf8();
}

constexpr auto anError = "\n<now> [ERROR]  cancel  YdExtractor.cpp(line59) :\nCancel getMediaInfo...\n";

int logAt(int level)
{
    return Logger::log(static_cast<_NoxLogLevel>(level), "", "YdExtractor.cpp", "cancel", 59, "Cancel %s...",
                       "getMediaInfo");
}

// Results of the module log without an application object.
QString moduleWithoutApplication = "x"_s;
int resultWithoutApplication = 0;

} // namespace

class LogTest : public QObject
{
    Q_OBJECT

private:
    const QString m_folders = QDir::tempPath() + "/log-XXXXXX"_s;
    std::unique_ptr<QTemporaryDir> m_dir = std::make_unique<QTemporaryDir>();

    QString path(const QString &name) const { return m_dir->filePath(name); }

    QString modulePath(const QString &suffix) const
    {
        return path(QFileInfo(QCoreApplication::applicationFilePath()).fileName() + suffix);
    }

    QByteArray loggedTo(const QString &name) const { return withoutTime(Files::content(path(name))); }

    void useFile(int level, int outType)
    {
        Logger::init(path("a.log"_s).toStdString(), static_cast<_NoxLogLevel>(level), outType);
    }

    /** "initialised level outputs file", without the folder of the test. */
    QString settings() const
    {
        return QStringLiteral("%1 %2 %3 ").arg(Logger::isInit).arg(Logger::m_curLogLevel).arg(Logger::m_outType)
            + QString::fromStdString(Logger::m_logFileName).replace(m_dir->path(), "."_s);
    }

    template <typename Call>
    QByteArray standardOutputOf(Call call)
    {
        QFile file(path("stdout"_s));
        const int saved = dup(STDOUT_FILENO);
        if (saved < 0 || !file.open(QIODevice::ReadWrite | QIODevice::Truncate))
            return "(no capture)";
        std::cout.flush();
        dup2(file.handle(), STDOUT_FILENO);
        call();
        std::cout.flush();
        dup2(saved, STDOUT_FILENO);
        close(saved);
        file.seek(0);
        return file.readAll();
    }

private Q_SLOTS:
    void initTestCase()
    {
        QCOMPARE(settings(), "0 2 3 "_s);
        QVERIFY(LOG_OUT_FILE == 1 && LOG_OUT_CONSOLE == 2 && LOG_DEBUG == 0 && LOG_INFO == 1 && LOG_FATAL == 3);
    }

    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>(m_folders);
        qputenv("TMPDIR", m_dir->path().toUtf8());
        Logger::isInit = false;
        Logger::m_curLogLevel = LOG_ERROR;
        Logger::m_outType = 3;
        Logger::m_logFileName.clear();
    }

    /** In local time. The time zone of a host may change while it runs. */
    void timeStamp()
    {
        const QByteArray before = qgetenv("TZ");
        for (const auto &[zone, hours] : {std::pair("EAST-11", 11), std::pair("WEST+01", -1)}) {
            qputenv("TZ", zone);
            const auto fromNow = [hours = hours](int seconds) {
                const QDateTime time = QDateTime::currentDateTimeUtc().addSecs(hours * 3600 + seconds);
                return time.toString(" yyyy-MM-dd hh:mm:ss "_s);
            };
            // The stamp has whole seconds, and its clock may be a few milliseconds behind Qt's.
            const QString first = fromNow(-2);
            const QString stamp = QString::fromStdString(Logger::getCurDateTime());
            QVERIFY2(stamp.size() == 21 && first <= stamp && stamp <= fromNow(1), qPrintable(stamp));
        }
        qputenv("TZ", before);
    }

    void defaultFile_data()
    {
        rows({"folder", "file"},
             {"/a/b -> /a/b/log.1.log"_s, "/a/b/ -> /a/b/log.1.log"_s, "/a// -> /a//log.1.log"_s, "b -> b/log.1.log"_s,
              " -> /log.1.log"_s, "unset -> /tmp/log.1.log"_s});
    }

    /** init() replaces all settings, and opens no file. */
    void defaultFile()
    {
        const auto [folder, file] = fetchTexts("folder", "file");
        useFile(LOG_DEBUG, 1);
        QCOMPARE(settings(), "1 0 1 ./a.log"_s);
        qputenv("TMPDIR", folder.toUtf8());
        if (folder == "unset"_s)
            qunsetenv("TMPDIR");
        Logger::init(std::string(), LOG_FATAL, 0);
        QCOMPARE(settings(), "1 3 0 "_s + file);
        QVERIFY(QDir(m_dir->path()).isEmpty());
    }

    void firstRecordConfigures()
    {
        QByteArray output = standardOutputOf([] { logAt(LOG_DEBUG); });
        QCOMPARE(settings(), "1 1 3 ./log.1.log"_s);
        QVERIFY(output.isEmpty() && !QFile::exists(path("log.1.log"_s)));

        Logger::isInit = false;
        Logger::m_outType = 0;
        output = standardOutputOf([] { logAt(LOG_INFO); });
        QCOMPARE(withoutTime(output), QByteArray(anError).replace("ERROR", "INFO"));
        QCOMPARE(loggedTo("log.1.log"_s), withoutTime(output));
    }

    void outputs_data()
    {
        QStringList table{"1 -> 7 -> 3 -> yes"_s, "0 -> -1 -> 3 -> no"_s, "-1 -> -1 -> 3 -> yes"_s};
        for (const QString &outType : {"0"_s, "1"_s, "2"_s, "3"_s}) {
            for (const QString &threshold : {"0"_s, "1"_s, "2"_s, "3"_s})
                table.append(threshold + " -> 2 -> "_s + outType + (threshold == "3"_s ? " -> no"_s : " -> yes"_s));
        }
        rows({"threshold", "level", "outputs", "passes"}, table);
    }

    void outputs()
    {
        const auto [threshold, level, outputs, passes] = fetchTexts("threshold", "level", "outputs", "passes");
        const int outType = outputs.toInt();
        useFile(threshold.toInt(), outType);
        const QByteArray output = standardOutputOf([level = level] { logAt(level.toInt()); });
        const bool written = passes == "yes"_s;
        const QByteArray record = QByteArray(anError).replace("[ERROR]", level == "2"_s ? "[ERROR]" : "");
        QCOMPARE(withoutTime(output), written && (outType & LOG_OUT_CONSOLE) ? record : QByteArray());
        // Each record above the threshold makes the file, even if it is not written there.
        QCOMPARE(QFile::exists(path("a.log"_s)), written);
        if (written)
            QCOMPARE(loggedTo("a.log"_s), outType & LOG_OUT_FILE ? record : QByteArray());
    }

    void recordsFollowEachOther()
    {
        useFile(LOG_DEBUG, LOG_OUT_FILE);
        Logger::log(LOG_DEBUG, "tag", "é.cpp", "", 0, "%s %03d%%", "é%s%n", 7);
        QCOMPARE(logAt(LOG_ERROR), 0);
        Logger::log(LOG_FATAL, "", "", "f", -5, "%s", "");
        const QByteArray first = "\n<now> [DEBUG] tag   é.cpp(line0) :\né%s%n 007%\n";
        const QByteArray last = "\n<now> [FATAL]  f  (line-5) :\n\n";
        QCOMPARE(loggedTo("a.log"_s), first + anError + last);

        // No handle stays open: the next record makes a new file.
        QVERIFY(QFile::remove(path("a.log"_s)));
        logAt(LOG_ERROR);
        QCOMPARE(loggedTo("a.log"_s), QByteArray(anError));
        useFile(LOG_DEBUG, LOG_OUT_FILE);
        QCOMPARE(loggedTo("a.log"_s), QByteArray(anError));
    }

    void longMessages()
    {
        for (const int size : {127998, 127999, 128000, 200000}) {
            QFile::remove(path("a.log"_s));
            useFile(LOG_ERROR, 3);
            const QByteArray text(size, 'x');
            const QByteArray output =
                standardOutputOf([&text] { Logger::log(LOG_ERROR, "", "f", "g", 1, "%s", text.constData()); });
            const QByteArray record = "\n<now> [ERROR]  g  f(line1) :\n" + text.left(127999) + "\n";
            QVERIFY(withoutTime(output) == record);
            QVERIFY(loggedTo("a.log"_s) == record);
        }
    }

    void fileThatCannotBeOpened()
    {
        for (const QString &name : {"missing/a.log"_s, "."_s}) {
            Logger::init(path(name).toStdString(), LOG_ERROR, 3);
            const QByteArray output = standardOutputOf([] { logAt(LOG_ERROR); });
            QCOMPARE(withoutTime(output), QByteArray(anError));
            QCOMPARE(settings(), "1 2 3 ./"_s + name);
            QVERIFY(!QFile::exists(path("missing"_s)));
        }
    }

    void moduleName()
    {
        QString name;
        GetModuleName(name);
        QCOMPARE(name, QCoreApplication::applicationFilePath());
        QCOMPARE(moduleWithoutApplication, QString());
        QCOMPARE(resultWithoutApplication, 1);
    }

    void moduleLines()
    {
        const QByteArray latin1Umlauts(600, '\xE4');
        WriteLog("%s(%d) : %s %08x"_s, "YdDownloader.cpp", 456, "2024/03/05 14:07:09", 0);
        QCOMPARE(WriteLog(""_s), 1);
        WriteLog("%s|%d%%"_s, "%s", -3);
        WriteLog("é%s"_s, "\xE9"); // each byte is a character of its own, in UTF-8 again
        for (const int size : {1022, 1023, 1024, 2000})
            WriteLog("%s"_s, QByteArray(size, 'x').constData());
        WriteLog("%s%s"_s, latin1Umlauts.constData(), latin1Umlauts.constData());
        QCOMPARE(Files::content(modulePath(".1.log"_s)),
                 "YdDownloader.cpp(456) : 2024/03/05 14:07:09 00000000\n\n%s|-3%\nÃ©é\n" + QByteArray(1022, 'x') + '\n'
                     + (QByteArray(1023, 'x') + '\n').repeated(3) + QByteArray("ä").repeated(1023) + '\n');
        QCOMPARE(settings(), "0 2 3 "_s);
    }

    void moduleLogIsCopiedWhenLong()
    {
        const QString log = modulePath(".1.log"_s);
        const QString copy = modulePath(".2.log"_s);
        Files::write(copy, "stale");
        const QByteArray text(1023, 'x');
        for (int i = 0; i < 7; ++i)
            WriteLog("%s"_s, text.constData());
        WriteLog("%s"_s, text.constData() + 1);
        QCOMPARE(Files::content(log).size(), 8191);
        QCOMPARE(Files::content(copy), QByteArray("stale"));
        QCOMPARE(WriteLog(""_s), 1);
        QCOMPARE(Files::content(log).size(), 8192);
        QVERIFY(Files::content(copy) == Files::content(log));
        WriteLog("last"_s);
        QCOMPARE(Files::content(log).size(), 8197);
        QVERIFY(Files::content(copy) == Files::content(log));
    }

    void moduleLogThatCannotBeOpened()
    {
        qputenv("TMPDIR", path("missing"_s).toUtf8());
        QCOMPARE(WriteLog("x"_s), 1);
        QVERIFY(QDir(m_dir->path()).isEmpty());
    }
};

int main(int argc, char **argv)
{
    // The module log uses the encoding of the locale, and both logs use local time.
    qputenv("LC_ALL", "C.UTF-8");
    qputenv("TZ", "XYZ-05:30");
    GetModuleName(moduleWithoutApplication);
    resultWithoutApplication = WriteLog("x"_s);
    const QCoreApplication application(argc, argv);
    LogTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "LogTest.moc"
