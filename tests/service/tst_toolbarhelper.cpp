#include <zelkobase/service/servicestatus.h>
#include <zelkobase/service/toolbarhelper.h>

#include <QTest>

using namespace ZelkoCommon;

class tst_ToolbarHelper : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void codesOfTheServiceGiveItsTexts_data();
    void codesOfTheServiceGiveItsTexts();
    void successHasNoTextInAnyContext();
    void anUnknownContextIsNamed();
};

void tst_ToolbarHelper::codesOfTheServiceGiveItsTexts_data()
{
    QTest::addColumn<ServiceStatus>("status");
    QTest::addColumn<QString>("beginning");
    QTest::newRow("of the recorder") << ServiceStatus::DiskFull << "The device has no room left,";
    QTest::newRow("of this program") << ServiceStatus::Timeout << "The recorder did not answer in time.";
    QTest::newRow("of nobody") << ServiceStatus(4711) << "The recorder reports error 4711,";
}

void tst_ToolbarHelper::codesOfTheServiceGiveItsTexts()
{
    QFETCH(const ServiceStatus, status);
    QFETCH(const QString, beginning);
    const QString text = ToolbarHelper::Instance()->ErrorId2Text(statusCode(status), 1);
    QVERIFY2(text.startsWith(beginning), qPrintable(text));
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
