#include <console/session/consoleoptions.h>
#include <console/window/runningconsole.h>

#include <QApplication>
#include <QIcon>
#include <QStyle>
#include <QTemporaryDir>
#include <QTest>

using namespace ZelkoConsole;

class TestRunningConsole : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QApplication::setStyle(QStringLiteral("fusion"));
        prepareApplication();
    }

    void hasSignsForMessageBoxesOfAnySize_data()
    {
        QTest::addColumn<QStyle::StandardPixmap>("sign");
        QTest::newRow("a warning") << QStyle::SP_MessageBoxWarning;
        QTest::newRow("a failure") << QStyle::SP_MessageBoxCritical;
        QTest::newRow("a question") << QStyle::SP_MessageBoxQuestion;
        QTest::newRow("news") << QStyle::SP_MessageBoxInformation;
    }

    // They were pictures of a few pixels, which a screen of 200 % showed as such.
    void hasSignsForMessageBoxesOfAnySize()
    {
        QFETCH(const QStyle::StandardPixmap, sign);
        constexpr QSize large(512, 512);
        QCOMPARE(QApplication::style()->standardIcon(sign).pixmap(large).size(), large);
    }

    void saysWhichSiteFileCannotBeRead()
    {
        const QTemporaryDir folder;
        ConsoleOptions options;
        options.siteFile = folder.filePath(QStringLiteral("none.json"));
        QString error;
        QVERIFY(!RunningConsole::open(options, &error));
        QVERIFY2(error.contains(options.siteFile), qPrintable(error));
    }
};

QTEST_MAIN(TestRunningConsole)
#include "tst_runningconsole.moc"
