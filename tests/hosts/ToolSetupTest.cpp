#include "hosts/common/ToolSetup.h"
#include "tests/util/Rows.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace NoxHost;

/** Which tool the hosts take, and in which surroundings it runs. */
class ToolSetupTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void ownTool_data();
    void ownTool();
    void bytecodeFolder();
    void environment();

private:
    static void put(const QString &path, QFile::Permissions permissions);

    std::unique_ptr<QTemporaryDir> m_data;
};

void ToolSetupTest::init()
{
    m_data = std::make_unique<QTemporaryDir>();
    qputenv("XDG_DATA_HOME", QFile::encodeName(m_data->path()));
}

void ToolSetupTest::put(const QString &path, QFile::Permissions permissions)
{
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.setPermissions(permissions));
}

void ToolSetupTest::ownTool_data()
{
    QTest::addColumn<int>("fileMode");
    QTest::addColumn<int>("folderMode");
    QTest::addColumn<bool>("isForeign");
    QTest::addColumn<bool>("isUsed");
    constexpr int own = QFile::ReadOwner | QFile::WriteOwner;
    constexpr int ownFolder = own | QFile::ExeOwner;
    QTest::newRow("private") << own << ownFolder << false << true;
    QTest::newRow("readable by all") << (own | QFile::ReadGroup | QFile::ReadOther)
                                     << (ownFolder | QFile::ReadOther | QFile::ExeOther) << false << true;
    QTest::newRow("the group may write") << (own | QFile::WriteGroup) << ownFolder << false << false;
    QTest::newRow("all may write") << (own | QFile::WriteOther) << ownFolder << false << false;
    QTest::newRow("all may write to its folder") << own << (ownFolder | QFile::WriteOther) << false << false;
    QTest::newRow("another user's") << own << ownFolder << true << false;
}

void ToolSetupTest::ownTool()
{
    QFETCH(int, fileMode);
    QFETCH(int, folderMode);
    QFETCH(bool, isForeign);
    const QString beside = QDir(QCoreApplication::applicationDirPath()).filePath("yt.zip"_s);
    QCOMPARE(ToolSetup().toolFile(), beside);

    const QString own = m_data->filePath("noxwebmedia/yt.zip"_s);
    QCOMPARE(ToolSetup::ownToolFile(), own);
    put(own, QFile::Permissions(fileMode));
    QVERIFY(QFile::setPermissions(QFileInfo(own).path(), QFile::Permissions(folderMode)));
    if (isForeign) {
        if (::geteuid() != 0) {
            QTest::qSkip("only root can give files away", __FILE__, __LINE__);
            return;
        }
        constexpr uid_t somebody = 12345;
        QCOMPARE(::chown(QFile::encodeName(own).constData(), somebody, static_cast<gid_t>(-1)), 0);
    }
    QTEST(ToolSetup().toolFile() == own, "isUsed");
    QTEST(ToolSetup().toolFile() != beside, "isUsed");
    QCOMPARE(ToolSetup("/x/tool.zip"_s).toolFile(), "/x/tool.zip"_s);
}

void ToolSetupTest::bytecodeFolder()
{
    constexpr int ofOthers = 0x77; // in Qt's form
    const auto accessOfOthers = [](const QString &path) { return int(QFile::permissions(path)) & ofOthers; };
    const mode_t before = ::umask(0);
    qputenv("XDG_CACHE_HOME", QFile::encodeName(m_data->filePath("cache"_s)));
    const QString folder = ToolSetup().pycacheFolder();
    ::umask(before);
    QCOMPARE(folder, m_data->filePath("cache/noxwebmedia/pycache"_s));
    for (const QString &path : {folder, QFileInfo(folder).path(), m_data->filePath("cache"_s)})
        QVERIFY2(QFileInfo(path).isDir() && accessOfOthers(path) == 0, qPrintable(path));
    QCOMPARE(ToolSetup().pycacheFolder(), folder); // it is there now

    QVERIFY(QFile::setPermissions(folder, QFile::permissions(folder) | QFile::WriteOther));
    QCOMPARE(ToolSetup().pycacheFolder(), QString());
    put(m_data->filePath("file"_s), QFile::ReadOwner);
    for (const QString &name : {"file"_s, "file/x/y"_s})
        QCOMPARE(ToolSetup({}, m_data->filePath(name)).pycacheFolder(), QString());
}

void ToolSetupTest::environment()
{
    const QByteArray own = QFile::encodeName(QCoreApplication::applicationDirPath());
    qputenv("PYTHONDONTWRITEBYTECODE", "1");
    qputenv("PATH", "/usr/bin:/bin");
    ToolSetup::prepareEnvironment();
    QCOMPARE(qgetenv("PATH"), own + ":/usr/bin:/bin");
    QVERIFY(!qEnvironmentVariableIsSet("PYTHONDONTWRITEBYTECODE"));
    qunsetenv("PATH"); // an empty entry would mean the working folder
    ToolSetup::prepareEnvironment();
    QCOMPARE(qgetenv("PATH"), own);
}

QTEST_GUILESS_MAIN(ToolSetupTest)
#include "ToolSetupTest.moc"
