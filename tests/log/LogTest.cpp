#include <nox/log/Logger.h>
#include <nox/log/ModuleLog.h>
#include <tests/util/Rows.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <cstdio>
#include <iostream>
#include <memory>

#include <unistd.h>

using namespace Nox;

namespace
{

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}

/** The log's text with each time stamp replaced by "<now>". */
QByteArray withoutTime(const QByteArray &log)
{
    static const QRegularExpression stamp("(?<=\n) \\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d (?= )"_s);
    return QString::fromUtf8(log).replace(stamp, "<now>"_s).toUtf8();
}

constexpr auto anError = "\n<now> [ERROR]  cancel  YdExtractor.cpp(line59) :\nCancel getMediaInfo...\n";

int logAt(int level)
{
    return Logger::log(static_cast<_NoxLogLevel>(level), "", "YdExtractor.cpp", "cancel", 59, "Cancel %s...",
                       "getMediaInfo");
}

// What the module log did before there was an application object.
QString moduleWithoutApplication = "x"_s;
int resultWithoutApplication = 0;

} // namespace

class LogTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QByteArray m_tempFolder;

    QString path(const QString &name) const
    {
        return m_dir->filePath(name);
    }

    QString modulePath(const QString &suffix) const
    {
        return path(QFileInfo(QCoreApplication::applicationFilePath()).fileName() + suffix);
    }

    void useFile(int level, int outType)
    {
        Logger::init(path("a.log"_s).toStdString(), static_cast<_NoxLogLevel>(level), outType);
    }

    template <typename Call> QByteArray standardOutputOf(Call call)
    {
        QFile file(path("stdout"_s));
        if (!file.open(QIODevice::ReadWrite | QIODevice::Truncate)) {
            return "(no capture)";
        }
        std::cout.flush();
        std::fflush(stdout);
        const int saved = dup(STDOUT_FILENO);
        dup2(file.handle(), STDOUT_FILENO);
        call();
        std::cout.flush();
        std::fflush(stdout);
        dup2(saved, STDOUT_FILENO);
        close(saved);
        file.seek(0);
        return file.readAll();
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(!Logger::isInit);
        QCOMPARE(Logger::m_curLogLevel, LOG_ERROR);
        QCOMPARE(Logger::m_outType, LOG_OUT_FILE | LOG_OUT_CONSOLE);
        QVERIFY(Logger::m_logFileName.empty());
        QVERIFY(LOG_OUT_FILE == 1 && LOG_OUT_CONSOLE == 2 && LOG_DEBUG == 0 && LOG_INFO == 1 && LOG_FATAL == 3);
        m_tempFolder = qgetenv("TMPDIR");
    }

    void init()
    {
        qputenv("TMPDIR", m_tempFolder.isEmpty() ? QByteArray("/tmp") : m_tempFolder);
        m_dir = std::make_unique<QTemporaryDir>();
        qputenv("TMPDIR", m_dir->path().toUtf8());
        Logger::isInit = false;
        Logger::m_curLogLevel = LOG_ERROR;
        Logger::m_outType = 3;
        Logger::m_logFileName.clear();
    }

    void prefixes()
    {
        const std::pair<int, const char *> expected[] = {{0, "[DEBUG]"}, {1, "[INFO]"}, {2, "[ERROR]"}, {3, "[FATAL]"},
                                                         {4, ""},        {7, ""},       {-1, ""}};
        for (const auto &[level, prefix] : expected) {
            QCOMPARE(Logger::getLogPrefix(static_cast<_NoxLogLevel>(level)), std::string(prefix));
        }
    }

    void timeStamp()
    {
        const QDateTime before = QDateTime::currentDateTime();
        const QString stamp = QString::fromStdString(Logger::getCurDateTime());
        const QDateTime after = QDateTime::currentDateTime();
        QCOMPARE(int(stamp.size()), 21);
        const QDateTime time = QDateTime::fromString(stamp, " yyyy-MM-dd hh:mm:ss "_s);
        QVERIFY2(time >= before.addSecs(-1) && time <= after, qPrintable(stamp));
    }

    void defaultFile_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("file");
        QTest::newRow("plain") << "/a/b"_s
                               << "/a/b/log.1.log"_s;
        QTest::newRow("slash") << "/a/b/"_s
                               << "/a/b/log.1.log"_s;
        QTest::newRow("two slashes") << "/a//"_s
                                     << "/a//log.1.log"_s;
        QTest::newRow("relative") << "b"_s
                                  << "b/log.1.log"_s;
        QTest::newRow("empty") << ""_s
                               << "/log.1.log"_s;
        QTest::newRow("unset") << QString() << "/tmp/log.1.log"_s;
    }

    void defaultFile()
    {
        QFETCH(QString, folder);
        QFETCH(QString, file);
        if (folder.isNull()) {
            qunsetenv("TMPDIR");
        } else {
            qputenv("TMPDIR", folder.toUtf8());
        }
        Logger::init(std::string(), LOG_FATAL, 0);
        QCOMPARE(Logger::m_logFileName, file.toStdString());
    }

    void initReplacesAllSettings()
    {
        Logger::init("/no/such/x", LOG_DEBUG, 1);
        QVERIFY(Logger::isInit);
        QCOMPARE(Logger::m_logFileName, std::string("/no/such/x"));
        QCOMPARE(Logger::m_curLogLevel, LOG_DEBUG);
        QCOMPARE(Logger::m_outType, 1);
        Logger::init(std::string(), LOG_FATAL, 2);
        QVERIFY(Logger::isInit);
        QCOMPARE(Logger::m_logFileName, path("log.1.log"_s).toStdString());
        QCOMPARE(Logger::m_curLogLevel, LOG_FATAL);
        QCOMPARE(Logger::m_outType, 2);
        QVERIFY(QDir(m_dir->path()).isEmpty());
    }

    void firstRecordConfigures()
    {
        QByteArray output = standardOutputOf([] { QCOMPARE(logAt(LOG_DEBUG), 0); });
        QVERIFY(Logger::isInit);
        QCOMPARE(Logger::m_curLogLevel, LOG_INFO);
        QCOMPARE(Logger::m_outType, 3);
        QVERIFY(output.isEmpty() && !QFile::exists(path("log.1.log"_s)));

        Logger::isInit = false;
        Logger::m_outType = 0;
        output = standardOutputOf([] { QCOMPARE(logAt(LOG_INFO), 0); });
        QCOMPARE(withoutTime(output), QByteArray(anError).replace("ERROR", "INFO"));
        QCOMPARE(withoutTime(contentOf(path("log.1.log"_s))), withoutTime(output));
    }

    void outputs_data()
    {
        QTest::addColumn<int>("threshold");
        QTest::addColumn<int>("level");
        QTest::addColumn<int>("outType");
        QTest::addColumn<bool>("written");
        for (int outType = 0; outType <= 3; ++outType) {
            for (int threshold = LOG_DEBUG; threshold <= LOG_FATAL; ++threshold) {
                const bool written = LOG_ERROR >= threshold;
                QTest::addRow("threshold %d output %d", threshold, outType) << threshold << 2 << outType << written;
            }
        }
        QTest::newRow("unnamed level") << 1 << 7 << 3 << true;
        QTest::newRow("negative level") << 0 << -1 << 3 << false;
        QTest::newRow("negative threshold") << -1 << -1 << 3 << true;
        QTest::newRow("only bits 1 and 2 count") << 0 << 2 << 4 << true;
    }

    void outputs()
    {
        QFETCH(int, threshold);
        QFETCH(int, level);
        QFETCH(int, outType);
        QFETCH(bool, written);
        useFile(threshold, outType);
        const QByteArray output = standardOutputOf([level] { QCOMPARE(logAt(level), 0); });
        const QByteArray record = QByteArray(anError).replace("[ERROR]", level == LOG_ERROR ? "[ERROR]" : "");
        QCOMPARE(withoutTime(output), written && (outType & LOG_OUT_CONSOLE) ? record : QByteArray());
        // Each record that passes the threshold opens the file, whether or not it goes there.
        QCOMPARE(QFile::exists(path("a.log"_s)), written);
        if (written) {
            QCOMPARE(withoutTime(contentOf(path("a.log"_s))), outType & LOG_OUT_FILE ? record : QByteArray());
        }
    }

    void recordsFollowEachOther()
    {
        useFile(LOG_DEBUG, LOG_OUT_FILE);
        Logger::log(LOG_DEBUG, "tag", "é.cpp", "", 0, "%s %03d%%", "é%s%n", 7);
        logAt(LOG_ERROR);
        Logger::log(LOG_FATAL, "", "", "f", -5, "%s", "");
        const QByteArray first = "\n<now> [DEBUG] tag   é.cpp(line0) :\né%s%n 007%\n";
        const QByteArray last = "\n<now> [FATAL]  f  (line-5) :\n\n";
        QCOMPARE(withoutTime(contentOf(path("a.log"_s))), first + anError + last);

        // No handle stays open: the next record makes a new file.
        QVERIFY(QFile::remove(path("a.log"_s)));
        logAt(LOG_ERROR);
        QCOMPARE(withoutTime(contentOf(path("a.log"_s))), QByteArray(anError));
        useFile(LOG_DEBUG, LOG_OUT_FILE);
        QCOMPARE(withoutTime(contentOf(path("a.log"_s))), QByteArray(anError));
    }

    void relativeFile()
    {
        const QString folder = QDir::currentPath();
        QVERIFY(QDir::setCurrent(m_dir->path()));
        Logger::init("x.log", LOG_ERROR, LOG_OUT_FILE);
        logAt(LOG_ERROR);
        QVERIFY(QDir::setCurrent(folder));
        QCOMPARE(withoutTime(contentOf(path("x.log"_s))), QByteArray(anError));
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
            QVERIFY(withoutTime(contentOf(path("a.log"_s))) == record);
        }
    }

    void fileThatCannotBeOpened()
    {
        for (const QString &name : {"missing/a.log"_s, ""_s}) {
            const std::string file = path(name).toStdString();
            Logger::init(file, LOG_ERROR, 3);
            const QByteArray output = standardOutputOf([] { QCOMPARE(logAt(LOG_ERROR), 0); });
            QCOMPARE(withoutTime(output), QByteArray(anError));
            QVERIFY(Logger::m_logFileName == file && Logger::m_curLogLevel == LOG_ERROR && Logger::m_outType == 3);
            QVERIFY(!QFile::exists(path("missing"_s)));
        }
    }

    void moduleName()
    {
        QString name;
        GetModuleName(name);
        QCOMPARE(name, QCoreApplication::applicationFilePath());
        QVERIFY(moduleWithoutApplication.isEmpty());
        QCOMPARE(resultWithoutApplication, 1);
    }

    void moduleLines()
    {
        const QByteArray latin1Umlauts(600, '\xE4');
        WriteLog("%s(%d) : %s %08x"_s, "YdDownloader.cpp", 456, "2024/03/05 14:07:09", 0);
        QCOMPARE(WriteLog(""_s), 1);
        WriteLog("%s|%d%%"_s, "%s", -3);
        WriteLog("é%s"_s, "\xE9"); // each byte is a character of its own, in UTF-8 again
        for (const int size : {1022, 1023, 1024, 2000}) {
            WriteLog("%s"_s, QByteArray(size, 'x').constData());
        }
        WriteLog("%s%s"_s, latin1Umlauts.constData(), latin1Umlauts.constData());
        QCOMPARE(contentOf(modulePath(".1.log"_s)),
                 "YdDownloader.cpp(456) : 2024/03/05 14:07:09 00000000\n\n%s|-3%\nÃ©é\n" + QByteArray(1022, 'x') + '\n'
                     + (QByteArray(1023, 'x') + '\n').repeated(3) + QByteArray("ä").repeated(1023) + '\n');
        QVERIFY(!Logger::isInit && Logger::m_logFileName.empty());
    }

    void moduleLogIsCopiedWhenLong()
    {
        const QString log = modulePath(".1.log"_s);
        const QString copy = modulePath(".2.log"_s);
        QFile stale(copy);
        QVERIFY(stale.open(QIODevice::WriteOnly) && stale.write("stale") == 5);
        stale.close();
        const QByteArray text(1023, 'x');
        for (int i = 0; i < 7; ++i) {
            WriteLog("%s"_s, text.constData());
        }
        WriteLog("%s"_s, text.constData() + 1);
        QCOMPARE(contentOf(log).size(), 8191);
        QCOMPARE(contentOf(copy), QByteArray("stale"));
        QCOMPARE(WriteLog(""_s), 1);
        QCOMPARE(contentOf(log).size(), 8192);
        QVERIFY(contentOf(copy) == contentOf(log));
        WriteLog("last"_s);
        QCOMPARE(contentOf(log).size(), 8197);
        QVERIFY(contentOf(copy) == contentOf(log));
    }

    void moduleLogThatCannotBeOpened()
    {
        qputenv("TMPDIR", path("missing"_s).toUtf8());
        QCOMPARE(WriteLog("x"_s), 1);
        QVERIFY(QDir(m_dir->path()).isEmpty());
    }

    void cleanupTestCase()
    {
        m_dir.reset();
    }
};

int main(int argc, char **argv)
{
    // The module log writes in the locale's encoding.
    qputenv("LC_ALL", "C.UTF-8");
    GetModuleName(moduleWithoutApplication);
    resultWithoutApplication = WriteLog("x"_s);
    const QCoreApplication application(argc, argv);
    LogTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "LogTest.moc"
