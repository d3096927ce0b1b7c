#include <console/demo/samplesite.h>
#include <console/devices/devicelistmodel.h>

#include <signallog.h>

#include <QAbstractItemModelTester>
#include <QTest>

using namespace ZelkoConsole;

namespace {

const QString north = QStringLiteral("north");
const QString south = QStringLiteral("south");

// The list as text: "north: connected [A1: available, A2: not available]".
QString textOf(const DeviceListModel& model)
{
    QStringList parts;
    for (int row = 0; row < model.rowCount(); ++row) {
        const QModelIndex parent = model.index(row, 0);
        QStringList devices;
        for (int child = 0; child < model.rowCount(parent); ++child) {
            devices.append(model.index(child, 0, parent).data().toString() + QLatin1String(": ") +
                           model.index(child, 1, parent).data().toString());
        }
        parts.append(parent.data().toString() + QLatin1String(": ") + parent.siblingAtColumn(1).data().toString() +
                     QLatin1String(" [") + devices.join(QLatin1String(", ")) + QLatin1Char(']'));
    }
    return parts.join(QLatin1String("; "));
}

struct Setting
{
    Setting()
        : site({north, south})
    {
        QObject::connect(&site, &Session::statusChanged, &model,
                         [this](const QString& name) { model.setStatus(name, site.status(name)); });
        model.setSubSystems(site.subSystems());
    }

    void connectNorthWithOneDevice()
    {
        site.addDevice(north, QStringLiteral("A1"));
        site.connectTo(north);
    }

    SampleSite site;
    DeviceListModel model;
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

} // namespace

class TestDeviceListModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listsSubSystemsWithTheirState()
    {
        Setting setting;
        QCOMPARE(textOf(setting.model), QStringLiteral("north: connecting []; south: connecting []"));
        setting.site.setStatus(south, {LinkState::Unreachable, QStringLiteral("no route")});
        QCOMPARE(textOf(setting.model), QStringLiteral("north: connecting []; south: not reachable []"));
        QCOMPARE(setting.model.subSystemIndex(south).data(Qt::ToolTipRole).toString(),
                 QStringLiteral("Recorder south is not reachable: no route, trying again"));
    }

    void showsDevicesWhenTheSubSystemIsConnected()
    {
        Setting setting;
        setting.site.addDevice(north, QStringLiteral("A1"));
        setting.site.addDevice(north, QStringLiteral("A2"), false);
        QCoreApplication::processEvents();
        QCOMPARE(setting.model.rowCount(setting.model.subSystemIndex(north)), 0);
        setting.site.connectTo(north);
        QCOMPARE(textOf(setting.model),
                 QStringLiteral("north: connected [A1: available, A2: not available]; south: connecting []"));
    }

    void followsTheAvailabilityOfADevice()
    {
        Setting setting;
        setting.connectNorthWithOneDevice();
        const QModelIndex device = setting.model.deviceIndex(north, QStringLiteral("A1"));
        QVERIFY(setting.model.isAvailable(device));
        setting.site.setAvailable(north, QStringLiteral("A1"), false);
        QTRY_VERIFY(!setting.model.isAvailable(device));
        QCOMPARE(device.siblingAtColumn(1).data().toString(), QStringLiteral("not available"));
    }

    void addsADeviceThatComesLater()
    {
        Setting setting;
        setting.connectNorthWithOneDevice();
        SignalLog log(&setting.model);
        setting.site.addDevice(north, QStringLiteral("A2"));
        QTRY_COMPARE(textOf(setting.model),
                     QStringLiteral("north: connected [A1: available, A2: available]; south: connecting []"));
        QCOMPARE(log.take(), QStringList({QStringLiteral("begin insert 1-1"), QStringLiteral("end insert 1-1"),
                                          QStringLiteral("changed 0-1")}));
    }

    void dropsADeviceThatIsTakenAway()
    {
        Setting setting;
        setting.site.addDevice(north, QStringLiteral("A0"));
        setting.connectNorthWithOneDevice();
        SignalLog log(&setting.model);
        setting.site.removeDevice(north, QStringLiteral("A0"));
        QTRY_COMPARE(textOf(setting.model), QStringLiteral("north: connected [A1: available]; south: connecting []"));
        QCOMPARE(log.take(), QStringList({QStringLiteral("begin remove 0-0"), QStringLiteral("end remove 0-0"),
                                          QStringLiteral("changed 0")}));
    }

    void keepsTheDevicesOfALostSubSystem()
    {
        Setting setting;
        setting.connectNorthWithOneDevice();
        setting.site.lose(north, QStringLiteral("killed"));
        QCoreApplication::processEvents();
        QCOMPARE(textOf(setting.model),
                 QStringLiteral("north: not reachable [A1: not available]; south: connecting []"));
    }

    void tellsARecorderThatDeniesAccessFromOneThatIsNotThere()
    {
        Setting setting;
        setting.site.setStatus(north, {LinkState::Denied, QStringLiteral("wrong password")});
        setting.site.setStatus(south, {LinkState::Unreachable, QStringLiteral("no route")});
        QCOMPARE(textOf(setting.model), QStringLiteral("north: access denied []; south: not reachable []"));
        QCOMPARE(setting.model.index(0, 0).data(Qt::ToolTipRole).toString(),
                 QStringLiteral("No access to recorder north: wrong password"));
    }

    void replacesTheDevicesOfASubSystemThatComesBackWithOthers()
    {
        Setting setting;
        setting.connectNorthWithOneDevice();
        setting.site.lose(north, QStringLiteral("killed"));
        setting.site.addDevice(north, QStringLiteral("B1"));
        setting.site.connectTo(north);
        QCOMPARE(textOf(setting.model), QStringLiteral("north: connected [B1: available]; south: connecting []"));
    }

    void keepsTheRowOfADeviceThatComesBack()
    {
        Setting setting;
        setting.connectNorthWithOneDevice();
        const QPersistentModelIndex device = setting.model.deviceIndex(north, QStringLiteral("A1"));
        setting.site.lose(north, QStringLiteral("killed"));
        QCoreApplication::processEvents();
        setting.connectNorthWithOneDevice();
        QVERIFY(device.isValid());
        QCOMPARE(setting.model.device(device), QStringLiteral("A1"));
        QVERIFY(setting.model.isAvailable(device));
    }

    void tellsWhatAnIndexIs()
    {
        Setting setting;
        setting.connectNorthWithOneDevice();
        const QModelIndex device = setting.model.deviceIndex(north, QStringLiteral("A1"));
        QCOMPARE(setting.model.subSystem(device), north);
        QCOMPARE(setting.model.device(device.siblingAtColumn(1)), QStringLiteral("A1"));
        QCOMPARE(setting.model.device(device.parent()), QString());
        QCOMPARE(setting.model.subSystem(QModelIndex()), QString());
        QVERIFY(!setting.model.deviceIndex(south, QStringLiteral("A1")).isValid());
        QVERIFY(!setting.model.subSystemIndex(QStringLiteral("west")).isValid());
        QVERIFY(!setting.model.deviceIndex(QStringLiteral("west"), north).isValid());
    }

    void passesOverTheStateOfASubSystemThatIsNotListed()
    {
        Setting setting;
        SignalLog log(&setting.model);
        setting.model.setStatus(QStringLiteral("west"), {LinkState::Connected, {}});
        QCOMPARE(log.take(), QStringList());
    }
};

QTEST_MAIN(TestDeviceListModel)
#include "tst_devicelistmodel.moc"
