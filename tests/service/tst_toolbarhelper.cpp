#include <zelkobase/service/servicestatus.h>
#include <zelkobase/service/toolbarhelper.h>

#include <QTest>

using namespace ZelkoCommon;

class tst_ToolbarHelper : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thereIsOne();
    void codesOfTheServiceGiveItsTexts();
    void successHasNoTextInAnyContext();
    void anUnknownContextIsNamed();
};

void tst_ToolbarHelper::thereIsOne()
{
    QVERIFY(ToolbarHelper::Instance());
    QCOMPARE(ToolbarHelper::Instance(), ToolbarHelper::Instance());
}

void tst_ToolbarHelper::codesOfTheServiceGiveItsTexts()
{
    for (const unsigned long code : {1UL, 8UL, 1000UL, 4711UL}) {
        const QString text = ToolbarHelper::Instance()->ErrorId2Text(code, 1);
        QVERIFY(!text.isEmpty());
        QCOMPARE(text, serviceStatusText(code));
    }
}

void tst_ToolbarHelper::successHasNoTextInAnyContext()
{
    QCOMPARE(ToolbarHelper::Instance()->ErrorId2Text(0, 1), QString());
    QCOMPARE(ToolbarHelper::Instance()->ErrorId2Text(0, 77), QString());
}

void tst_ToolbarHelper::anUnknownContextIsNamed()
{
    const QString text = ToolbarHelper::Instance()->ErrorId2Text(8, 77);
    QVERIFY2(text.contains("8") && text.contains("77"), qPrintable(text));
    QVERIFY(text != serviceStatusText(8));
}

QTEST_GUILESS_MAIN(tst_ToolbarHelper)

#include "tst_toolbarhelper.moc"
