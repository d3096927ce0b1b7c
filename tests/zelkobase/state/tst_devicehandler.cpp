#include <zelkobase/state/devicehandler.h>

#include "listeddevice.h"
#include "statesite.h"
#include "turns.h"

#include <QTest>

using namespace Qt::StringLiterals;
using ZelkoCommon::DeviceHandler;

namespace {

/// The signals of a handler, in order: "updated north", "allowed", "added north A1,A2", "removed north A1".
class HandlerLog
{
public:
    explicit HandlerLog(const DeviceHandler& handler)
    {
        const auto add = [this](const QString& text) { m_texts.append(text); };
        QObject::connect(&handler, &DeviceHandler::signalDeviceHandlerSubsystemUpdated, &m_context,
                         [=](const QString& subSystem) { add(u"updated "_s + subSystem); });
        QObject::connect(&handler, &DeviceHandler::signalDeviceHandlerAllowedDeviceUpdated, &m_context,
                         [=] { add(u"allowed"_s); });
        QObject::connect(&handler, &DeviceHandler::signalDevicesAdded, &m_context,
                         [=](const QString& subSystem, const QStringList& devices) {
                             add(u"added %1 %2"_s.arg(subSystem, devices.join(u',')));
                         });
        QObject::connect(
            &handler, &DeviceHandler::signalDeviceRemoved, &m_context,
            [=](const QString& subSystem, const QString& device) { add(u"removed %1 %2"_s.arg(subSystem, device)); });
    }

    QStringList take() { return std::exchange(m_texts, {}); }

private:
    QStringList m_texts;
    QObject m_context;
};

const ListedDevice a1(u"north"_s, u"A1"_s);
const ListedDevice a2(u"north"_s, u"A2"_s);
const ListedDevice b1(u"south"_s, u"B1"_s);

QString text(const DeviceHandler::Devices& devices)
{
    QStringList texts;
    for (const auto& [device, subSystem] : devices) {
        texts.append(device + u'@' + subSystem);
    }
    return texts.join(u',');
}

QString devicesOf(const DeviceHandler& handler, const QString& subSystem, bool allowedOnly = true)
{
    DeviceHandler::Devices devices;
    handler.GetDevices(subSystem, devices, allowedOnly);
    return text(devices);
}

QString allDevices(const DeviceHandler& handler, bool allowedOnly = true)
{
    DeviceHandler::Devices devices;
    handler.GetAllDevices(devices, allowedOnly);
    return text(devices);
}

} // namespace

class TestDeviceHandler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knowsTheSubSystems();
    void hasTheDevicesOfConnectedSubSystems();
    void followsTheConnection();
    void appendsToWhatIsThere();
    void leavesOutWhatCannotBeUsed_data();
    void leavesOutWhatCannotBeUsed();
    void tellsOfDevicesThatCome();
    void tellsOfDevicesThatGo();
    void tellsOfDevicesThatComeInThePlaceOfOthers();
    void tellsOfDevicesThatBecomeUsable();
    void tellsOfAnAvailabilityThatComesLater();
    void isSilentWhereNothingChanged();
    void isSilentAboutWhatWasLost();
    void keepsTheOrderOfTheTree();
    void mayBeDisconnectedByWhoHearsOfIt();
};

void TestDeviceHandler::knowsTheSubSystems()
{
    const StateSite site;
    const DeviceHandler handler(site.data);
    QStringList subSystems{u"before"_s};
    handler.GetAllSubsystems(subSystems);
    QCOMPARE(subSystems, (QStringList{u"before"_s, u"north"_s, u"south"_s}));
}

void TestDeviceHandler::hasTheDevicesOfConnectedSubSystems()
{
    const StateSite site;
    a1.setAvailable(true);
    b1.setAvailable(true);
    site.data->setConnected(u"south"_s, true);
    const DeviceHandler handler(site.data);
    QCOMPARE(devicesOf(handler, u"north"_s), QString());
    QCOMPARE(devicesOf(handler, u"south"_s), u"B1@south"_s);
    QCOMPARE(devicesOf(handler, u"west"_s), QString());
    QCOMPARE(devicesOf(handler, QString()), QString());
    QCOMPARE(allDevices(handler), u"B1@south"_s);
}

void TestDeviceHandler::followsTheConnection()
{
    const StateSite site;
    a1.setAvailable(true);
    a2.setAvailable(true);
    b1.setAvailable(true);
    const DeviceHandler handler(site.data);
    HandlerLog log(handler);
    site.data->setConnected(u"south"_s, true);
    site.data->setConnected(u"north"_s, true);
    QCOMPARE(log.take(), (QStringList{u"updated south"_s, u"updated north"_s}));
    QCOMPARE(allDevices(handler), u"A1@north,A2@north,B1@south"_s);
    site.data->setConnected(u"north"_s, false);
    QCOMPARE(log.take(), QStringList{u"updated north"_s});
    QCOMPARE(allDevices(handler), u"B1@south"_s);
    letTurnsPass();
    QCOMPARE(log.take(), QStringList());
}

void TestDeviceHandler::appendsToWhatIsThere()
{
    const StateSite site;
    a1.setAvailable(true);
    site.data->setConnected(u"north"_s, true);
    const DeviceHandler handler(site.data);
    DeviceHandler::Devices devices{{u"before"_s, u"west"_s}};
    handler.GetDevices(u"north"_s, devices, true);
    handler.GetAllDevices(devices, true);
    QCOMPARE(text(devices), u"before@west,A1@north,A1@north"_s);
}

void TestDeviceHandler::leavesOutWhatCannotBeUsed_data()
{
    QTest::addColumn<bool>("isAvailable");
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("allowed");
    QTest::newRow("available") << true << 1 << u"A1@north"_s;
    QTest::newRow("not available") << false << 1 << QString();
    QTest::newRow("of a type that is not offered") << true << 5 << QString();
}

void TestDeviceHandler::leavesOutWhatCannotBeUsed()
{
    QFETCH(bool, isAvailable);
    QFETCH(int, type);
    const StateSite site;
    a1.putType(type);
    a1.setAvailable(isAvailable);
    site.data->setConnected(u"north"_s, true);
    const DeviceHandler handler(site.data);
    QTEST(devicesOf(handler, u"north"_s), "allowed");
    QTEST(allDevices(handler), "allowed");
    QCOMPARE(devicesOf(handler, u"north"_s, false), u"A1@north"_s);
    QCOMPARE(allDevices(handler, false), u"A1@north"_s);
}

void TestDeviceHandler::tellsOfDevicesThatCome()
{
    const StateSite site;
    site.data->setConnected(u"north"_s, true);
    const DeviceHandler handler(site.data);
    HandlerLog log(handler);
    a2.setAvailable(true);
    a1.setAvailable(false);
    QCOMPARE(log.take(), QStringList());
    letTurnsPass();
    QCOMPARE(log.take(), QStringList{u"added north A2,A1"_s});
    QCOMPARE(devicesOf(handler, u"north"_s), u"A2@north"_s);
}

void TestDeviceHandler::tellsOfDevicesThatGo()
{
    const StateSite site;
    a2.setAvailable(true);
    a1.setAvailable(true);
    site.data->setConnected(u"north"_s, true);
    const DeviceHandler handler(site.data);
    HandlerLog log(handler);
    a2.remove();
    a1.remove();
    QCOMPARE(log.take(), QStringList());
    letTurnsPass();
    QCOMPARE(log.take(), (QStringList{u"removed north A1"_s, u"removed north A2"_s}));
    QCOMPARE(devicesOf(handler, u"north"_s, false), QString());
}

void TestDeviceHandler::tellsOfDevicesThatComeInThePlaceOfOthers()
{
    const StateSite site;
    a1.setAvailable(true);
    site.data->setConnected(u"north"_s, true);
    const DeviceHandler handler(site.data);
    HandlerLog log(handler);
    a2.setAvailable(true);
    a1.remove();
    letTurnsPass();
    QCOMPARE(log.take(), (QStringList{u"removed north A1"_s, u"added north A2"_s}));
    a2.remove();
    a2.setAvailable(true);
    letTurnsPass();
    QCOMPARE(log.take(), QStringList()); // another one of the same name, and as usable
    a2.setAvailable(false);
    letTurnsPass();
    QCOMPARE(log.take(), QStringList{u"allowed"_s});
}

void TestDeviceHandler::tellsOfDevicesThatBecomeUsable()
{
    const StateSite site;
    a1.setAvailable(false);
    a2.setAvailable(true);
    site.data->setConnected(u"north"_s, true);
    const DeviceHandler handler(site.data);
    HandlerLog log(handler);
    a1.setAvailable(true);
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(devicesOf(handler, u"north"_s), u"A2@north"_s);
    letTurnsPass();
    QCOMPARE(log.take(), QStringList{u"allowed"_s});
    QCOMPARE(devicesOf(handler, u"north"_s), u"A1@north,A2@north"_s);
    a1.setAvailable(false);
    a2.setAvailable(false);
    letTurnsPass();
    QCOMPARE(log.take(), QStringList{u"allowed"_s});
}

void TestDeviceHandler::tellsOfAnAvailabilityThatComesLater()
{
    const StateSite site;
    a1.putNode();
    site.data->setConnected(u"north"_s, true);
    const DeviceHandler handler(site.data);
    HandlerLog log(handler);
    a1.setAvailable(true);
    letTurnsPass();
    QCOMPARE(log.take(), QStringList{u"allowed"_s});
    a1.removeBelow("/ZelkoAvailable");
    letTurnsPass();
    QCOMPARE(log.take(), QStringList{u"allowed"_s});
    a1.setAvailable(true);
    letTurnsPass();
    QCOMPARE(log.take(), QStringList{u"allowed"_s});
}

void TestDeviceHandler::isSilentWhereNothingChanged()
{
    const StateSite site;
    a1.setAvailable(true);
    site.data->setConnected(u"north"_s, true);
    const DeviceHandler handler(site.data);
    HandlerLog log(handler);
    a1.setAvailable(false);
    a1.setAvailable(true);
    a2.setAvailable(true);
    a2.remove();
    letTurnsPass();
    QCOMPARE(log.take(), QStringList());
}

void TestDeviceHandler::isSilentAboutWhatWasLost()
{
    const StateSite site;
    a1.setAvailable(true);
    site.data->setConnected(u"north"_s, true);
    const DeviceHandler handler(site.data);
    HandlerLog log(handler);
    a1.remove();
    site.data->setConnected(u"north"_s, false);
    letTurnsPass();
    QCOMPARE(log.take(), QStringList{u"updated north"_s});
}

void TestDeviceHandler::keepsTheOrderOfTheTree()
{
    const StateSite site;
    a1.setAvailable(true);
    a2.setAvailable(true);
    site.data->setConnected(u"north"_s, true);
    const DeviceHandler handler(site.data);
    a1.remove();
    letTurnsPass();
    a1.setAvailable(true);
    letTurnsPass();
    QCOMPARE(devicesOf(handler, u"north"_s), u"A2@north,A1@north"_s);
}

void TestDeviceHandler::mayBeDisconnectedByWhoHearsOfIt()
{
    const StateSite site;
    a1.setAvailable(true);
    site.data->setConnected(u"north"_s, true);
    const DeviceHandler handler(site.data);
    HandlerLog log(handler);
    connect(&handler, &DeviceHandler::signalDeviceRemoved, &handler,
            [&] { site.data->setConnected(u"north"_s, false); });
    a1.remove();
    a2.setAvailable(true);
    letTurnsPass();
    QCOMPARE(log.take(), (QStringList{u"removed north A1"_s, u"updated north"_s, u"added north A2"_s}));
    QCOMPARE(allDevices(handler), QString());
}

QTEST_GUILESS_MAIN(TestDeviceHandler)
#include "tst_devicehandler.moc"
