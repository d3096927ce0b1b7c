#include "devicemodelsetting.h"

#include "commatexts.h"
#include "recordsignallog.h"
#include "testrecords.h"
#include "tracetexts.h"
#include "turns.h"
#include "updatecounter.h"

#include <zelkobase/state/localzelkovalues.h>

#include <QAbstractItemModelTester>
#include <QtTest>

using namespace Qt::StringLiterals;
using ZelkoGUI::ZelkoDeviceModel;

namespace {

/// A model of the second kind.
struct FollowedByValue
{
    explicit FollowedByValue(const StateSite& site)
        : local(u"north"_s)
        , model(site.data, local)
        , log(model)
    {}

    Value<QString>& deviceId() { return *local.valueDeviceId(); }

    const ZelkoCommon::LocalZelkoValues local;
    ZelkoDeviceModel model;
    DeviceSignalLog log;
};

} // namespace

class TestCurrentDevice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsTheCurrentDevice();
    void fallsBackOnTheFirstDevice();
    void leavesADeviceThatASlotHasLost();
    void comesBackWithTheFirstDevice();
    void needsAChannelDeviceToFollowAValue();
    void fallsBackOnTheLastRealChannelDevice();
    void doesNotFallBackOnAChannelDeviceThatIsGone();
    void isNotReadyForTheChannelItself();
    void isReadyWithADevice();
    void connectsTheRecordsOfTheCurrentDevice();
    void tracesADeviceThatIsNotThere();
    void takesNoDeviceForOneThatIsNotThere();
    void composesTheTooltip_data();
    void composesTheTooltip();
    void doesNotSupportXgWithoutANode();
    void fillsAnEmptyDeviceId();
    void leavesADeviceIdThatIsSet();
    void followsTheDeviceId();
    void tellsTwiceOfADeviceIdThatIsEmptied();
    void onlyPassesTheDeviceIdOnBeforeItFollows();
};

void TestCurrentDevice::keepsTheCurrentDevice()
{
    const StateSite site;
    a1.setAvailable(true);
    a2.setAvailable(true);
    Followed followed(site);
    site.data->setConnected(u"north"_s, true);
    followed.model.setCurrentDevice(u"A2"_s);
    a3.setAvailable(true);
    letTurnsPass();
    QCOMPARE(followed.model.deviceList(), (QStringList{u"A1"_s, u"A2"_s, u"A3"_s}));
    QCOMPARE(followed.model.currentDevice(), u"A2"_s);
    a1.setAvailable(false);
    letTurnsPass();
    QCOMPARE(followed.model.deviceList(), (QStringList{u"A2"_s, u"A3"_s}));
    QCOMPARE(followed.model.currentDevice(), u"A2"_s);
}

void TestCurrentDevice::fallsBackOnTheFirstDevice()
{
    const StateSite site;
    a1.setAvailable(true);
    a2.setAvailable(true);
    a3.setAvailable(true);
    Followed followed(site);
    site.data->setConnected(u"north"_s, true);
    followed.model.setCurrentDevice(u"A2"_s);
    a2.setAvailable(false);
    letTurnsPass();
    QCOMPARE(followed.model.currentDevice(), u"A1"_s);
}

// The first of the list is chosen, and goes with the list while the records of the last one leave.
void TestCurrentDevice::leavesADeviceThatASlotHasLost()
{
    const StateSite site;
    a1.setAvailable(true);
    a1.putRecords()->SetAt(u"R1"_s, zelko::recordmap::RecordMapData(makeRecord(u"R1"_s)), nullptr);
    Followed followed(site);
    site.data->setConnected(u"north"_s, true);
    followed.log.take();
    auto* const records = followed.model.recordModel();
    connect(records, &QAbstractItemModel::modelReset, this, [&] {
        a1.setAvailable(false);
        Q_EMIT site.data->si_deviceNodeAdded(a1.path());
    });
    followed.model.setChannelDevice(u"B1"_s);
    QCOMPARE(followed.model.currentDevice(), QString());
    QCOMPARE(records->rowCount(), 0);
    QCOMPARE(followed.log.take(), refreshed("") + refreshed(""));
}

// A connection that is lost takes its branch with it before it says so.
void TestCurrentDevice::comesBackWithTheFirstDevice()
{
    const StateSite site;
    a1.setAvailable(true);
    a2.setAvailable(true);
    FollowedByValue followed(site);
    followed.model.setChannelDevice(u"A2"_s);
    site.data->setConnected(u"north"_s, true);
    QCOMPARE(followed.model.currentDevice(), u"A2"_s);
    followed.log.take();

    Tree::Instance()->Remove(u"/SubSystems/north"_s);
    site.data->setConnected(u"north"_s, false);
    letTurnsPass();
    QCOMPARE(followed.log.take(), refreshed(""));
    QCOMPARE(followed.model.currentDevice(), QString());

    a1.setAvailable(true);
    a2.setAvailable(true);
    site.data->setConnected(u"north"_s, true);
    QCOMPARE(followed.log.take(), refreshed("A1,A2"));
    QCOMPARE(followed.model.currentDevice(), u"A1"_s);
    QCOMPARE(followed.deviceId().GetValue(), u"A2"_s);
}

void TestCurrentDevice::needsAChannelDeviceToFollowAValue()
{
    const StateSite site;
    a1.setAvailable(true);
    a2.setAvailable(true);
    FollowedByValue followed(site);
    site.data->setConnected(u"north"_s, true);
    followed.model.setCurrentDevice(u"A2"_s);
    QCOMPARE(followed.model.currentDevice(), QString());
    QCOMPARE(followed.model.deviceList(), (QStringList{u"A1"_s, u"A2"_s}));
    QCOMPARE(followed.log.take(), QStringList());

    followed.model.setChannelDevice(u"A2"_s);
    QCOMPARE(followed.log.take(), QStringList{u"current A2"_s} + refreshed("A1,A2"));
    QCOMPARE(followed.model.currentDevice(), u"A2"_s);
    followed.model.setCurrentDevice(u"A1"_s);
    QCOMPARE(followed.model.currentDevice(), u"A1"_s);
}

void TestCurrentDevice::fallsBackOnTheLastRealChannelDevice()
{
    const StateSite site;
    a1.setAvailable(true);
    a2.setAvailable(true);
    FollowedByValue followed(site);
    followed.model.setChannelDevice(u"A2"_s);
    followed.model.setChannelDevice(u"ZelkoChannel"_s);
    QCOMPARE(followed.model.currentDevice(), u"ZelkoChannel"_s);
    site.data->setConnected(u"north"_s, true);
    QCOMPARE(followed.model.currentDevice(), u"A2"_s);
}

void TestCurrentDevice::doesNotFallBackOnAChannelDeviceThatIsGone()
{
    const StateSite site;
    a1.setAvailable(true);
    FollowedByValue followed(site);
    followed.model.setChannelDevice(u"A2"_s);
    followed.model.setChannelDevice(u"ZelkoChannel"_s);
    site.data->setConnected(u"north"_s, true);
    QCOMPARE(followed.model.currentDevice(), u"A1"_s);
}

void TestCurrentDevice::isNotReadyForTheChannelItself()
{
    const StateSite site;
    a1.setAvailable(true);
    Followed followed(site);
    site.data->setConnected(u"north"_s, true);
    QVERIFY(followed.model.isReady());
    followed.model.setCurrentDevice(u"ZelkoChannel"_s);
    QCOMPARE(followed.model.deviceList(), QStringList{u"A1"_s});
    QVERIFY(!followed.model.isReady());
}

void TestCurrentDevice::isReadyWithADevice()
{
    const StateSite site;
    a1.setAvailable(true);
    Followed followed(site);
    followed.model.setCurrentDevice(u"A1"_s);
    QVERIFY(!followed.model.isReady()); // without a list
    site.data->setConnected(u"north"_s, true);
    QVERIFY(followed.model.isReady());
    followed.model.setCurrentDevice(QString());
    QVERIFY(!followed.model.isReady());
}

void TestCurrentDevice::connectsTheRecordsOfTheCurrentDevice()
{
    const StateSite site;
    a1.setAvailable(true);
    a2.setAvailable(true);
    a1.putRecords()->SetAt(u"R1"_s, zelko::recordmap::RecordMapData(makeRecord(u"R1"_s)), nullptr);
    auto* const others = a2.putRecords();
    others->SetAt(u"R2"_s, zelko::recordmap::RecordMapData(makeRecord(u"R2"_s)), nullptr);
    others->SetAt(u"R3"_s, zelko::recordmap::RecordMapData(makeRecord(u"R3"_s)), nullptr);
    Followed followed(site);
    auto* const records = followed.model.recordModel();
    const QAbstractItemModelTester tester(records, QAbstractItemModelTester::FailureReportingMode::QtTest);
    RecordSignalLog log(records);
    QCOMPARE(records->rowCount(), 0);

    site.data->setConnected(u"north"_s, true);
    QCOMPARE(records->rowCount(), 1);
    QCOMPARE(log.take(), texts("begin insert 0-0, end insert 0-0, record changed R1"));

    followed.model.setCurrentDevice(u"A2"_s);
    QCOMPARE(records->rowCount(), 2);
    QCOMPARE(log.take(), texts("begin reset, end reset, all records changed, "
                               "begin insert 0-1, end insert 0-1, record changed R2, record changed R3"));

    site.data->setConnected(u"north"_s, false);
    QCOMPARE(records->rowCount(), 0);
    QCOMPARE(log.take(), texts("begin reset, end reset, all records changed"));
}

void TestCurrentDevice::tracesADeviceThatIsNotThere()
{
    const StateSite site;
    a1.setAvailable(true);
    a1.putRecords()->SetAt(u"R1"_s, zelko::recordmap::RecordMapData(makeRecord(u"R1"_s)), nullptr);
    Followed followed(site);
    site.data->setConnected(u"north"_s, true);
    const TraceTexts traces;
    followed.model.setCurrentDevice(u"A1"_s);
    QVERIFY(!traces.contain(u"invalid device path"_s));
    followed.model.setCurrentDevice(u"B1"_s);
    QVERIFY(traces.contain(u"invalid device path"_s));
    QCOMPARE(followed.model.currentDevice(), u"B1"_s);
    QCOMPARE(followed.model.deviceTooltip(), u"B1"_s);
    QCOMPARE(followed.model.recordModel()->rowCount(), 0);
}

// The node of the devices is no device, although the path of an empty name leads there.
void TestCurrentDevice::takesNoDeviceForOneThatIsNotThere()
{
    const StateSite site;
    a1.setAvailable(true);
    Followed followed(site);
    site.data->setConnected(u"north"_s, true);
    const TraceTexts traces;
    followed.model.setCurrentDevice(QString());
    QVERIFY(traces.contain(u"invalid device path"_s));
    QCOMPARE(followed.model.deviceTooltip(), QString());
}

void TestCurrentDevice::composesTheTooltip_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("firmware");
    QTest::addColumn<int>("xg");
    QTest::addColumn<QString>("tooltip");
    QTest::newRow("nothing is known") << QString() << QString() << -1 << u"A1\nXG: not supported"_s;
    QTest::newRow("only the address") << u"192.0.2.7"_s << QString() << -1 << u"A1\nIp: 192.0.2.7\nXG: not supported"_s;
    QTest::newRow("only the firmware") << QString() << u"4.2"_s << 0 << u"A1\nFW: 4.2\nXG: not supported"_s;
    QTest::newRow("all") << u"192.0.2.7"_s << u"4.2"_s << 1 << u"A1\nIp: 192.0.2.7\nFW: 4.2\nXG: supported"_s;
}

void TestCurrentDevice::composesTheTooltip()
{
    QFETCH(QString, address);
    QFETCH(QString, firmware);
    QFETCH(int, xg);
    const StateSite site;
    a1.setAvailable(true);
    if (!address.isEmpty()) {
        a1.set("/Admin/IpAddress", address);
    }
    if (!firmware.isEmpty()) {
        a1.set("/Status/Version/FirmwareVersion", firmware);
    }
    if (xg != -1) {
        a1.set<bool>("/Admin/SupportsXGInterface", xg == 1);
    }
    const Followed followed(site);
    site.data->setConnected(u"north"_s, true);
    QTEST(followed.model.deviceTooltip(), "tooltip");
    QCOMPARE(followed.model.currentDeviceSupportsXg(), xg == 1);
}

void TestCurrentDevice::doesNotSupportXgWithoutANode()
{
    const StateSite site;
    a1.set<bool>("/Admin/SupportsXGInterface", true);
    Followed followed(site);
    followed.model.setCurrentDevice(u"A1"_s);
    QVERIFY(!followed.model.currentDeviceSupportsXg());
    site.data->setConnected(u"north"_s, true);
    followed.model.setCurrentDevice(u"A1"_s);
    QVERIFY(followed.model.currentDeviceSupportsXg());
}

void TestCurrentDevice::fillsAnEmptyDeviceId()
{
    UpdateCounter others; // outlives the value
    const StateSite site;
    a1.setAvailable(true);
    FollowedByValue followed(site);
    followed.deviceId().AddObserver(&others);
    followed.model.setChannelDevice(u"A1"_s);
    site.data->setConnected(u"north"_s, true);
    QCOMPARE(followed.deviceId().GetValue(), u"A1"_s);
    QCOMPARE(others.take(), std::vector{TChangeCode::ValueChanged});
    QCOMPARE(followed.log.take(), QStringList{u"current A1"_s} + refreshed("A1"));
}

void TestCurrentDevice::leavesADeviceIdThatIsSet()
{
    const StateSite site;
    a1.setAvailable(true);
    a2.setAvailable(true);
    FollowedByValue followed(site);
    followed.deviceId().SetValue(u"A1"_s, nullptr);
    site.data->setConnected(u"north"_s, true);
    followed.log.take();
    followed.model.setChannelDevice(u"A2"_s);
    QCOMPARE(followed.deviceId().GetValue(), u"A1"_s);
    QCOMPARE(followed.log.take(), refreshed("A1,A2"));
}

void TestCurrentDevice::followsTheDeviceId()
{
    const StateSite site;
    a1.setAvailable(true);
    a2.setAvailable(true);
    FollowedByValue followed(site);
    followed.model.setChannelDevice(u"A1"_s);
    site.data->setConnected(u"north"_s, true);
    followed.log.take();
    followed.deviceId().SetValue(u"A2"_s, nullptr);
    QCOMPARE(followed.model.currentDevice(), u"A2"_s);
    QCOMPARE(followed.log.take(), QStringList{u"current A2"_s});
    letTurnsPass();
    QCOMPARE(followed.log.take(), QStringList());
}

// Once for no device, which is the current one then, and once for the value; a refresh chooses one again.
void TestCurrentDevice::tellsTwiceOfADeviceIdThatIsEmptied()
{
    const StateSite site;
    a1.setAvailable(true);
    a2.setAvailable(true);
    FollowedByValue followed(site);
    followed.model.setChannelDevice(u"A2"_s);
    site.data->setConnected(u"north"_s, true);
    followed.log.take();
    followed.deviceId().SetValue(QString(), nullptr);
    QCOMPARE(followed.log.take(), (QStringList{u"current "_s, u"current "_s}));
    QCOMPARE(followed.model.currentDevice(), QString());
    QCOMPARE(followed.deviceId().GetValue(), QString());

    a3.setAvailable(true);
    letTurnsPass();
    QCOMPARE(followed.log.take(), QStringList{u"current A1"_s} + refreshed("A1,A2,A3"));
    QCOMPARE(followed.deviceId().GetValue(), u"A1"_s);
}

void TestCurrentDevice::onlyPassesTheDeviceIdOnBeforeItFollows()
{
    const StateSite site;
    FollowedByValue followed(site);
    followed.deviceId().SetValue(u"A2"_s, nullptr);
    QCOMPARE(followed.model.currentDevice(), QString());
    QCOMPARE(followed.log.take(), QStringList{u"current A2"_s});
}

QTEST_GUILESS_MAIN(TestCurrentDevice)
#include "tst_currentdevice.moc"
