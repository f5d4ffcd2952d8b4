#include "tests/support/TestMain.h"
#include "tests/util/Rows.h"

#include <nox/log/Logger.h>
#include <nox/model/WebMediaInfo.h>
#include <nox/parse/YdOutputParser.h>

#include <QLoggingCategory>
#include <QProcess>
#include <QTemporaryDir>

using namespace Nox;

/** Any text that the front of the tool writes comes out of the library's parser as it was. */
class DescribedTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void texts()
    {
        QLoggingCategory::setFilterRules("default.debug=false"_s);
        const QTemporaryDir root;
        Logger::init(root.filePath("library.log"_s).toStdString(), LOG_ERROR, LOG_OUT_FILE);
        QProcess writer;
        writer.start("/usr/bin/env"_s,
                     {QStringLiteral("PYTHONPATH=" NOX_TOOL_FRONT), "PYTHONDONTWRITEBYTECODE=1"_s,
                      "PYTHONIOENCODING=ascii"_s, "/usr/bin/python3"_s, QStringLiteral(NOX_TEXTS_PROGRAM)});
        QVERIFY(writer.waitForFinished(120000));
        QVERIFY2(writer.exitCode() == 0, writer.readAllStandardError().constData());

        int count = 0;
        for (; !writer.atEnd(); ++count) {
            const QString expected = QString::fromUtf8(QByteArray::fromHex(writer.readLine()));
            const QString line = QString::fromLocal8Bit(writer.readLine());
            WebMediaInfo page;
            YdOutputParser::instance()->parseWebMediaInfo(line, page, QString());
            QCOMPARE(page.getMediaProfileList().size(), 1);
            const MediaProfile stream = page.getMediaProfileList().constFirst();
            for (const QString &text : {page.getTitle(), stream.getName(), stream.getDescription(), stream.getUrl()})
                QVERIFY2(text == expected, qPrintable(line));
        }
        QVERIFY(count > 5000);
    }
};

NOX_TEST_MAIN(DescribedTextTest)
#include "DescribedTextTest.moc"
