#include <zelkobase/state/offereddevice.h>

#include "listeddevice.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestOfferedDevice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { Tree::Instance()->Remove(u"/SubSystems"_s); }

    void dependsOnTheType_data();
    void dependsOnTheType();
    void isOfferedWithoutAType();
    void isOfferedWithATypeOfAnotherKind();
};

void TestOfferedDevice::dependsOnTheType_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("isOffered");
    for (int key = 0; key < 7; ++key) {
        QTest::addRow("type %d", key) << key << (key != 5);
    }
}

void TestOfferedDevice::dependsOnTheType()
{
    QFETCH(int, key);
    const ListedDevice device(u"north"_s, u"A1"_s);
    device.putType(key);
    QTEST(ZelkoCommon::isOfferedDevice(device.path()), "isOffered");
}

void TestOfferedDevice::isOfferedWithoutAType()
{
    QVERIFY(ZelkoCommon::isOfferedDevice(u"/SubSystems/north/ZELKO/Device/A1"_s));
}

void TestOfferedDevice::isOfferedWithATypeOfAnotherKind()
{
    const ListedDevice device(u"north"_s, u"A1"_s);
    device.set<int>("/Admin/DeviceType", 5);
    QVERIFY(ZelkoCommon::isOfferedDevice(device.path()));
}

QTEST_GUILESS_MAIN(TestOfferedDevice)
#include "tst_offereddevice.moc"
