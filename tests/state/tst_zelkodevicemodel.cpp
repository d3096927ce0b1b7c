#include <zelkoguibase/state/zelkodevicemodel.h>

#include "listeddevice.h"
#include "recordsignallog.h"
#include "statesite.h"
#include "testrecords.h"
#include "tracemask.h"
#include "tracetexts.h"
#include "turns.h"
#include "updatecounter.h"

#include <zelkobase/state/localzelkovalues.h>

#include <QAbstractItemModelTester>
#include <QtTest>

using namespace Qt::StringLiterals;
using ZelkoGUI::ZelkoDeviceModel;

namespace {

/// The signals of a device model, in order: "refreshed", "refreshed A1,A2", "current A1".
class DeviceSignalLog
{
public:
    explicit DeviceSignalLog(const ZelkoDeviceModel& model)
    {
        const auto add = [this](const QString& text) { m_texts.append(text); };
        QObject::connect(&model, qOverload<>(&ZelkoDeviceModel::devicesRefreshed), &m_context,
                         [=] { add(u"refreshed"_s); });
        QObject::connect(&model, qOverload<const QStringList&>(&ZelkoDeviceModel::devicesRefreshed), &m_context,
                         [=](const QStringList& devices) { add(u"refreshed "_s + devices.join(u',')); });
        QObject::connect(&model, &ZelkoDeviceModel::si_currentDeviceChanged, &m_context,
                         [=](const QString& device) { add(u"current "_s + device); });
    }

    QStringList take() { return std::exchange(m_texts, {}); }

private:
    QStringList m_texts;
    QObject m_context;
};

const ListedDevice a1(u"north"_s, u"A1"_s);
const ListedDevice a2(u"north"_s, u"A2"_s);
const ListedDevice a3(u"north"_s, u"A3"_s);

QStringList refreshed(const char* devices)
{
    return {u"refreshed"_s, u"refreshed "_s + QLatin1String(devices)};
}

QStringList texts(const char* commaSeparated)
{
    return QString::fromLatin1(commaSeparated).split(u", "_s);
}

/// A model of the first kind with its signals.
struct Followed
{
    explicit Followed(const StateSite& site)
        : model(site.data)
        , log(model)
    {}

    ZelkoDeviceModel model;
    DeviceSignalLog log;
};

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
    void keepsTheCurrentDevice();
    void fallsBackOnTheFirstDevice();
    void canLoseAllDevices();
    void isEmptyWhenDisconnected();
    void staysSilentWhileDisconnected();
    void comesBackWithTheConnection();
    void needsAChannelDeviceToFollowAValue();
    void fallsBackOnTheLastRealChannelDevice();
    void doesNotFallBackOnAChannelDeviceThatIsGone();
    void isNotReadyForTheChannelItself();
    void isReadyWithADevice();
    void connectsTheRecordsOfTheCurrentDevice();
    void tracesADeviceThatIsNotThere();
    void composesTheTooltip_data();
    void composesTheTooltip();
    void doesNotSupportXgWithoutANode();
    void fillsAnEmptyDeviceId();
    void leavesADeviceIdThatIsSet();
    void followsTheDeviceId();
    void onlyPassesTheDeviceIdOnBeforeItFollows();
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

void TestZelkoDeviceModel::keepsTheCurrentDevice()
{
    const StateSite site;
    a1.setAvailable(true);
    a2.setAvailable(true);
    Followed followed(site);
    site.data->setConnected(u"north"_s, true);
    followed.model.setCurrentDevice(u"A2"_s);
    a1.setAvailable(false);
    a3.setAvailable(true);
    letTurnsPass();
    QCOMPARE(followed.model.deviceList(), (QStringList{u"A2"_s, u"A3"_s}));
    QCOMPARE(followed.model.currentDevice(), u"A2"_s);
}

void TestZelkoDeviceModel::fallsBackOnTheFirstDevice()
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

void TestZelkoDeviceModel::comesBackWithTheConnection()
{
    const StateSite site;
    a1.setAvailable(true);
    a2.setAvailable(true);
    Followed followed(site);
    site.data->setConnected(u"north"_s, true);
    followed.model.setCurrentDevice(u"A2"_s);
    site.data->setConnected(u"north"_s, false);
    followed.log.take();
    site.data->setConnected(u"north"_s, true);
    QCOMPARE(followed.log.take(), refreshed("A1,A2"));
    QCOMPARE(followed.model.currentDevice(), u"A2"_s);
}

void TestZelkoDeviceModel::needsAChannelDeviceToFollowAValue()
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

void TestZelkoDeviceModel::fallsBackOnTheLastRealChannelDevice()
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

void TestZelkoDeviceModel::doesNotFallBackOnAChannelDeviceThatIsGone()
{
    const StateSite site;
    a1.setAvailable(true);
    FollowedByValue followed(site);
    followed.model.setChannelDevice(u"A2"_s);
    followed.model.setChannelDevice(u"ZelkoChannel"_s);
    site.data->setConnected(u"north"_s, true);
    QCOMPARE(followed.model.currentDevice(), u"A1"_s);
}

void TestZelkoDeviceModel::isNotReadyForTheChannelItself()
{
    const StateSite site;
    a1.setAvailable(true);
    const Followed followed(site);
    site.data->setConnected(u"north"_s, true);
    QVERIFY(followed.model.isReady());
    const_cast<ZelkoDeviceModel&>(followed.model).setCurrentDevice(u"ZelkoChannel"_s);
    QCOMPARE(followed.model.deviceList(), QStringList{u"A1"_s});
    QVERIFY(!followed.model.isReady());
}

void TestZelkoDeviceModel::isReadyWithADevice()
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

void TestZelkoDeviceModel::connectsTheRecordsOfTheCurrentDevice()
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

void TestZelkoDeviceModel::tracesADeviceThatIsNotThere()
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

void TestZelkoDeviceModel::composesTheTooltip_data()
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

void TestZelkoDeviceModel::composesTheTooltip()
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

void TestZelkoDeviceModel::doesNotSupportXgWithoutANode()
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

void TestZelkoDeviceModel::fillsAnEmptyDeviceId()
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

void TestZelkoDeviceModel::leavesADeviceIdThatIsSet()
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

void TestZelkoDeviceModel::followsTheDeviceId()
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

void TestZelkoDeviceModel::onlyPassesTheDeviceIdOnBeforeItFollows()
{
    const StateSite site;
    FollowedByValue followed(site);
    followed.deviceId().SetValue(u"A2"_s, nullptr);
    QCOMPARE(followed.model.currentDevice(), QString());
    QCOMPARE(followed.log.take(), QStringList{u"current A2"_s});
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
