#include <zelkoguibase/state/zelkodevicemodel.h>

#include "devicemodelsetting.h"
#include "testrecords.h"
#include "tracemask.h"
#include "tracetexts.h"
#include "turns.h"

#include <zelkobase/models/abstractrecordlistmodel.h>

#include <QtTest>

using namespace Qt::StringLiterals;
using ZelkoGUI::ZelkoDeviceModel;

namespace {

/// Connection data that know the current sub system without its name, as those of the application do.
class CurrentConnectionData final : public FakeConnectionData
{
public:
    using FakeConnectionData::FakeConnectionData;

    bool GetIPConnectionInformation(const QString& subSystem, ZelkoCommon::VtConnectData& data) const override
    {
        return AbstractServerConnectionData::GetIPConnectionInformation(subSystem, data);
    }
};

void putWorkstationServer(const QString& host)
{
    auto value = std::make_unique<Value<QString>>(u"ZELKOSERVER_ON_WORKSTATION"_s);
    value->SetValue(host, nullptr);
    Tree::Instance()->Emplace(u"/ADMINISTRATION"_s, std::move(value));
}

} // namespace

class TestZelkoDeviceModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsWithoutDevices();
    void listsDevicesWhenConnected();
    void tracesTheConnection();
    void takesDevicesOfOfferedTypesOnly_data();
    void takesDevicesOfOfferedTypesOnly();
    void passesOverWhatIsNoDevice();
    void listsADeviceThatBecomesAvailable();
    void listsADeviceWhoseAvailabilityComesLater();
    void listsADeviceThatIsTold();
    void dropsADeviceThatGoes();
    void dropsADeviceThatLosesItsAvailability();
    void refreshesOnceForABurst();
    void canLoseAllDevices();
    void isEmptyWhenDisconnected();
    void staysSilentWhileDisconnected();
    void leavesOtherSubSystemsAlone();
    void listsEachDeviceOnceWhenASlotRefreshes();
    void tellsWhereTheServerIs();
    void findsTheServerOnTheWorkstation();
    void findsAServerElsewhere_data();
    void findsAServerElsewhere();
    void goesWithARefreshUnderWay();
};

void TestZelkoDeviceModel::startsWithoutDevices()
{
    const StateSite site;
    a1.setAvailable(true);
    Followed followed(site);
    letTurnsPass();
    QCOMPARE(followed.model.deviceList(), QStringList());
    QCOMPARE(followed.model.currentDevice(), QString());
    QCOMPARE(followed.model.deviceTooltip(), QString());
    QVERIFY(!followed.model.isReady());
    QCOMPARE(followed.log.take(), QStringList());
}

void TestZelkoDeviceModel::listsDevicesWhenConnected()
{
    const StateSite site;
    a2.setAvailable(true);
    a1.setAvailable(true);
    Followed followed(site);
    site.data->setConnected(u"north"_s, true);
    QCOMPARE(followed.log.take(), refreshed("A2,A1"));
    QCOMPARE(followed.model.deviceList(), (QStringList{u"A2"_s, u"A1"_s}));
    QCOMPARE(followed.model.currentDevice(), u"A2"_s);
    letTurnsPass();
    QCOMPARE(followed.log.take(), QStringList());
}

void TestZelkoDeviceModel::tracesTheConnection()
{
    const StateSite site;
    const Followed followed(site);
    {
        const TraceMask mask(ErrorHandler::TraceWarning);
        const TraceTexts traces;
        site.data->setConnected(u"north"_s, true);
        QVERIFY(!traces.contain(u"Connected"_s));
    }
    const TraceTexts traces;
    site.data->setConnected(u"north"_s, true);
    QVERIFY(traces.contain(u"******* Connected to ZELKO ******"_s));
}

void TestZelkoDeviceModel::takesDevicesOfOfferedTypesOnly_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<QStringList>("devices");
    QTest::newRow("the type that is not offered") << 5 << QStringList{u"A2"_s};
    QTest::newRow("a type below it") << 4 << QStringList{u"A1"_s, u"A2"_s};
    QTest::newRow("a type above it") << 6 << QStringList{u"A1"_s, u"A2"_s};
}

void TestZelkoDeviceModel::takesDevicesOfOfferedTypesOnly()
{
    QFETCH(int, key);
    const StateSite site;
    a1.putType(key);
    a1.setAvailable(true);
    a2.setAvailable(true);
    const Followed followed(site);
    site.data->setConnected(u"north"_s, true);
    QTEST(followed.model.deviceList(), "devices");
}

void TestZelkoDeviceModel::passesOverWhatIsNoDevice()
{
    const StateSite site;
    Tree::Instance()->Emplace(u"/SubSystems/north/ZELKO/Device"_s, std::make_unique<Value<bool>>(u"Value"_s));
    a1.set<QString>("/ZelkoAvailable", u"true"_s);
    a2.putNode();
    const Followed followed(site);
    site.data->setConnected(u"north"_s, true);
    QCOMPARE(followed.model.deviceList(), QStringList());
}

void TestZelkoDeviceModel::listsADeviceThatBecomesAvailable()
{
    const StateSite site;
    a1.setAvailable(false);
    Followed followed(site);
    site.data->setConnected(u"north"_s, true);
    QCOMPARE(followed.log.take(), refreshed(""));
    a1.setAvailable(true);
    QCOMPARE(followed.log.take(), QStringList());
    QCOMPARE(followed.model.deviceList(), QStringList());
    letTurnsPass();
    QCOMPARE(followed.log.take(), refreshed("A1"));
    QCOMPARE(followed.model.currentDevice(), u"A1"_s);
}

void TestZelkoDeviceModel::listsADeviceWhoseAvailabilityComesLater()
{
    const StateSite site;
    Followed followed(site);
    site.data->setConnected(u"north"_s, true);
    a1.putNode();
    QCOMPARE(followed.log.take(), refreshed(""));
    letTurnsPass();
    QCOMPARE(followed.log.take(), refreshed(""));
    a1.setAvailable(true);
    QCOMPARE(followed.log.take(), QStringList());
    letTurnsPass();
    QCOMPARE(followed.log.take(), refreshed("A1"));
}

void TestZelkoDeviceModel::listsADeviceThatIsTold()
{
    const StateSite site;
    Followed followed(site);
    site.data->setConnected(u"north"_s, true);
    a1.setAvailable(true);
    followed.log.take();
    Q_EMIT site.data->si_deviceNodeAdded(a1.path());
    QCOMPARE(followed.log.take(), refreshed("A1"));
}

void TestZelkoDeviceModel::dropsADeviceThatGoes()
{
    const StateSite site;
    a1.setAvailable(true);
    a2.setAvailable(true);
    Followed followed(site);
    site.data->setConnected(u"north"_s, true);
    followed.log.take();
    a1.remove();
    QCOMPARE(followed.log.take(), QStringList());
    letTurnsPass();
    QCOMPARE(followed.log.take(), refreshed("A2"));
}

void TestZelkoDeviceModel::dropsADeviceThatLosesItsAvailability()
{
    const StateSite site;
    a1.setAvailable(true);
    a2.setAvailable(true);
    Followed followed(site);
    site.data->setConnected(u"north"_s, true);
    followed.log.take();
    a1.removeBelow("/ZelkoAvailable");
    QCOMPARE(followed.log.take(), QStringList());
    letTurnsPass();
    QCOMPARE(followed.log.take(), refreshed("A2"));
    a1.setAvailable(true);
    letTurnsPass();
    QCOMPARE(followed.log.take(), refreshed("A1,A2"));
}

void TestZelkoDeviceModel::refreshesOnceForABurst()
{
    const StateSite site;
    Followed followed(site);
    site.data->setConnected(u"north"_s, true);
    followed.log.take();
    a1.setAvailable(true);
    a2.setAvailable(true);
    a3.setAvailable(true);
    a2.setAvailable(false);
    a1.remove();
    letTurnsPass();
    QCOMPARE(followed.log.take(), refreshed("A3"));
}

void TestZelkoDeviceModel::canLoseAllDevices()
{
    const StateSite site;
    a1.setAvailable(true);
    Followed followed(site);
    site.data->setConnected(u"north"_s, true);
    followed.log.take();
    a1.setAvailable(false);
    letTurnsPass();
    QCOMPARE(followed.log.take(), refreshed(""));
    QCOMPARE(followed.model.currentDevice(), QString());
    QVERIFY(!followed.model.isReady());
}

void TestZelkoDeviceModel::isEmptyWhenDisconnected()
{
    const StateSite site;
    a1.setAvailable(true);
    a1.putRecords();
    Followed followed(site);
    site.data->setConnected(u"north"_s, true);
    followed.log.take();
    site.data->setConnected(u"north"_s, false);
    QCOMPARE(followed.log.take(), refreshed(""));
    QCOMPARE(followed.model.deviceList(), QStringList());
    QVERIFY(!followed.model.isReady());
}

void TestZelkoDeviceModel::staysSilentWhileDisconnected()
{
    const StateSite site;
    a1.setAvailable(true);
    Followed followed(site);
    site.data->setConnected(u"north"_s, true);
    site.data->setConnected(u"north"_s, false);
    followed.log.take();
    a1.setAvailable(false);
    a1.setAvailable(true);
    a2.setAvailable(true);
    letTurnsPass();
    Q_EMIT site.data->si_deviceNodeAdded(a2.path());
    QCOMPARE(followed.log.take(), QStringList());
    QCOMPARE(followed.model.currentDevice(), QString());
}

void TestZelkoDeviceModel::leavesOtherSubSystemsAlone()
{
    const StateSite site;
    const ListedDevice elsewhere(u"south"_s, u"A1"_s);
    a1.setAvailable(true);
    elsewhere.setAvailable(true);
    Followed followed(site);
    site.data->setConnected(u"south"_s, true);
    QCOMPARE(followed.log.take(), QStringList());
    site.data->setConnected(u"north"_s, true);
    QCOMPARE(followed.log.take(), refreshed("A1"));
    Q_EMIT site.data->si_deviceNodeAdded(elsewhere.path());
    site.data->setConnected(u"south"_s, false);
    site.data->setConnected(u"south"_s, true);
    QCOMPARE(followed.log.take(), QStringList());
    QVERIFY(followed.model.isReady());
}

void TestZelkoDeviceModel::listsEachDeviceOnceWhenASlotRefreshes()
{
    const StateSite site;
    a1.setAvailable(true);
    a2.setAvailable(true);
    a1.putRecords()->SetAt(u"R1"_s, zelko::recordmap::RecordMapData(makeRecord(u"R1"_s)), nullptr);
    Followed followed(site);
    site.data->setConnected(u"north"_s, true);
    followed.log.take();
    const auto* const records = followed.model.recordModel();
    const auto once = static_cast<Qt::ConnectionType>(Qt::DirectConnection | Qt::SingleShotConnection);
    connect(
        records, &QAbstractItemModel::modelReset, this, [&] { Q_EMIT site.data->si_deviceNodeAdded(a2.path()); }, once);
    Q_EMIT site.data->si_deviceNodeAdded(a2.path());
    QCOMPARE(followed.log.take(), refreshed("A1,A2") + refreshed("A1,A2"));
    QCOMPARE(followed.model.currentDevice(), u"A1"_s);
    QCOMPARE(records->rowCount(), 1);
}

void TestZelkoDeviceModel::tellsWhereTheServerIs()
{
    const StateSite site;
    const Followed followed(site);
    const ZelkoCommon::VtConnectData expected{u"192.0.2.1"_s, u"192.0.2.1"_s, 8104};
    QCOMPARE(followed.model.getVtConnectData(), expected);
}

void TestZelkoDeviceModel::findsTheServerOnTheWorkstation()
{
    const StateSite site;
    const Followed followed(site);
    putWorkstationServer(u"workstation"_s);
    ZelkoCommon::VtConnectData data{u"another"_s, u"192.0.2.9"_s, 1};
    QVERIFY(followed.model.GetServerVtConnectionData(data));
    QCOMPARE(data, (ZelkoCommon::VtConnectData{u"workstation"_s, u"workstation"_s, 8004}));
}

void TestZelkoDeviceModel::findsAServerElsewhere_data()
{
    QTest::addColumn<bool>("isConfigured");
    QTest::addColumn<QString>("host");
    QTest::addColumn<bool>("isFound");
    QTest::addColumn<QString>("address");
    QTest::addColumn<int>("port");
    QTest::newRow("the host that was asked with") << true << u"another"_s << true << u"another"_s << 8004;
    QTest::newRow("that of the current sub system") << true << QString() << true << u"192.0.2.1"_s << 8104;
    QTest::newRow("none at all") << false << QString() << false << QString() << 8004;
}

void TestZelkoDeviceModel::findsAServerElsewhere()
{
    QFETCH(bool, isConfigured);
    QFETCH(QString, host);
    const StateSite site;
    const ZelkoDeviceModel model(std::make_shared<CurrentConnectionData>(
        isConfigured ? StateSite::configuration() : ZelkoCommon::ZelkoConfiguration()));
    ZelkoCommon::VtConnectData data{host, {}, 1};
    QTEST(model.GetServerVtConnectionData(data), "isFound");
    QTEST(data.ipAddress, "address");
    QTEST(data.port, "port");
}

void TestZelkoDeviceModel::goesWithARefreshUnderWay()
{
    const StateSite site;
    {
        const Followed followed(site);
        site.data->setConnected(u"north"_s, true);
        a1.setAvailable(true);
    }
    letTurnsPass();
    a1.setAvailable(false);
    site.data->setConnected(u"north"_s, false);
    QVERIFY(Tree::Instance()->Find<Value<bool>>(a1.path("/ZelkoAvailable"))->ObserverCount() == 0);
}

QTEST_GUILESS_MAIN(TestZelkoDeviceModel)
#include "tst_zelkodevicemodel.moc"
