#include <zelkoguibase/controller/zelkoserverguicontroller.h>

#include "controllersite.h"
#include "patience.h"
#include "testrecords.h"

#include <host/activedevicecontrol.h>
#include <resources/zelkoicons.h>

#include <QtTest>

#include <optional>

using namespace Qt::StringLiterals;
using ZelkoGUI::IZelkoGUIController;
using ZelkoGUI::ZelkoServerGUIController;

/// What becomes of a controller when somebody who hears of a change makes another device the active one at once. D1 has
/// the record "A", D2 the records "Y" and "Z".
class DeviceChangesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerZelkoIcons(); }
    void init()
    {
        m_site.emplace();
        m_control.emplace();
        m_first.emplace(*m_site->data, u"D1"_s);
        m_second.emplace(*m_site->data, u"D2"_s);
        for (DeviceBranch* const branch : {&*m_first, &*m_second}) {
            branch->putAll();
        }
        m_first->setRecord(makeDeletable(u"A"_s, true));
        m_second->setRecord(makeDeletable(u"Y"_s, true));
        m_second->setRecord(makeDeletable(u"Z"_s, true));
        m_controller = std::make_unique<ZelkoServerGUIController>(
            m_site->handler, &*m_control, QString(), IZelkoGUIController::UserActions(QFlag(1023)), nullptr);
        m_context.emplace();
        m_isNamed = false;
    }
    void cleanup()
    {
        m_context.reset();
        m_controller.reset();
        m_second.reset();
        m_first.reset();
        m_control.reset();
        m_site.reset();
    }

    void aDeviceThatIsNamedDuringAChangeIsTheOneThatCounts_data() { addSignals(); }
    void aDeviceThatIsNamedDuringAChangeIsTheOneThatCounts();
    void noDeviceThatIsNamedDuringAChangeLeavesNone_data() { addSignals(); }
    void noDeviceThatIsNamedDuringAChangeLeavesNone();
    void aDeviceThatIsNamedWhileADeletedOneIsLetGoIsComeTo_data() { addSignals(); }
    void aDeviceThatIsNamedWhileADeletedOneIsLetGoIsComeTo();
    void aDeviceThatIsNamedDuringAConnectionIsComeTo_data();
    void aDeviceThatIsNamedDuringAConnectionIsComeTo();
    void noDeviceThatIsNamedDuringAConnectionLeavesNone_data() { aDeviceThatIsNamedDuringAConnectionIsComeTo_data(); }
    void noDeviceThatIsNamedDuringAConnectionLeavesNone();

private:
    /// The moments of a change at which somebody hears of it: for D1 with a selection they come in this order.
    static void addSignals()
    {
        QTest::addColumn<QString>("moment");
        QTest::newRow("when the rows go") << u"rows"_s;
        QTest::newRow("when the selection goes") << u"selection"_s;
        QTest::newRow("when the progress is told") << u"progress"_s;
    }

    /// Names `device` at that moment, once.
    void nameAt(const QString& moment, const QString& device);
    void nameOnce(const QString& device);

    void connectToD1();

    /// Whether the list, the values and the commands are those of D2.
    void compareWithD2();
    void compareWithNone() const;

    std::optional<ControllerSite> m_site;
    std::optional<ActiveDeviceControl> m_control;
    std::optional<DeviceBranch> m_first;
    std::optional<DeviceBranch> m_second;
    std::unique_ptr<ZelkoServerGUIController> m_controller;
    std::optional<QObject> m_context; // of the connections of a test
    bool m_isNamed = false;
};

void DeviceChangesTest::nameOnce(const QString& device)
{
    if (!std::exchange(m_isNamed, true)) {
        m_controller->sl_activeDeviceChanged(device, u"north"_s);
    }
}

void DeviceChangesTest::nameAt(const QString& moment, const QString& device)
{
    const auto name = [this, device] { nameOnce(device); };
    if (moment == u"rows") {
        connect(m_controller->recordListModel(), &QAbstractItemModel::modelReset, &*m_context, name);
        connect(m_controller->recordListModel(), &QAbstractItemModel::rowsRemoved, &*m_context, name);
    } else if (moment == u"selection") {
        connect(m_controller.get(), &IZelkoGUIController::si_selectedRecordsChanged, &*m_context, name);
    } else {
        connect(m_controller.get(), &IZelkoGUIController::si_loadProgress, &*m_context, name);
    }
}

void DeviceChangesTest::connectToD1()
{
    m_control->setActiveDevice(u"D1"_s, u"north"_s);
    QTRY_VERIFY_WITH_TIMEOUT(m_controller->isConnected(), patience);
    m_controller->sl_selectedRecordsChanged({u"A"_s});
}

void DeviceChangesTest::compareWithD2()
{
    QTRY_VERIFY_WITH_TIMEOUT(m_controller->isConnected(), patience);
    QCOMPARE(m_controller->activeDevice(), u"D2"_s);
    QCOMPARE(m_controller->recordListModel()->rowCount(), 2);
    QVERIFY(m_controller->recordListModel()->hasRecord(u"Z"_s));
    m_controller->sl_resyncRecord(u"Z"_s);
    QCOMPARE(m_second->value<QString>("SyncOneRecord")->GetValue(), u"Z"_s);
    QCOMPARE(m_first->value<QString>("SyncOneRecord")->GetValue(), QString());
}

void DeviceChangesTest::compareWithNone() const
{
    QVERIFY(m_isNamed);
    QCOMPARE(m_controller->activeDevice(), QString());
    QVERIFY(!m_controller->isConnected());
    QVERIFY(!m_controller->findChild<QTimer*>(u"connectTimer"_s)->isActive());
    QCOMPARE(m_controller->recordListModel()->rowCount(), 0);
}

void DeviceChangesTest::aDeviceThatIsNamedDuringAChangeIsTheOneThatCounts()
{
    QFETCH(const QString, moment);
    DeviceBranch third(*m_site->data, u"D3"_s);
    third.putAll();
    connectToD1();
    nameAt(moment, u"D2"_s);
    m_control->setActiveDevice(u"D3"_s, u"north"_s);
    QVERIFY(m_isNamed);
    compareWithD2();
}

void DeviceChangesTest::noDeviceThatIsNamedDuringAChangeLeavesNone()
{
    QFETCH(const QString, moment);
    connectToD1();
    nameAt(moment, QString());
    m_control->setActiveDevice(u"D2"_s, u"north"_s);
    compareWithNone();
}

void DeviceChangesTest::aDeviceThatIsNamedWhileADeletedOneIsLetGoIsComeTo()
{
    QFETCH(const QString, moment);
    connectToD1();
    nameAt(moment, u"D2"_s);
    m_control->deleteDevice(u"D1"_s, u"north"_s);
    QVERIFY(m_isNamed);
    compareWithD2();
}

// The progress is told when the rows have come, and again when all else has.
void DeviceChangesTest::aDeviceThatIsNamedDuringAConnectionIsComeTo_data()
{
    QTest::addColumn<int>("time");
    QTest::newRow("with the rows") << 1;
    QTest::newRow("when all is there") << 2;
}

void DeviceChangesTest::aDeviceThatIsNamedDuringAConnectionIsComeTo()
{
    QFETCH(const int, time);
    m_control->setActiveDevice(u"D1"_s, u"north"_s);
    int times = 0;
    connect(m_controller.get(), &IZelkoGUIController::si_loadProgress, &*m_context, [&] {
        if (++times == time) {
            m_controller->sl_activeDeviceChanged(u"D2"_s, u"north"_s);
        }
    });
    QStringList established;
    connect(m_controller.get(), &IZelkoGUIController::si_connectionEstablished, &*m_context,
            [&](const QString& device) {
                const bool hasRows = m_controller->recordListModel()->hasRecord(u"Z"_s);
                established << device + (hasRows ? u" with its rows"_s : u" without"_s);
            });
    QTRY_VERIFY_WITH_TIMEOUT(!established.isEmpty(), patience);
    QCOMPARE(established, QStringList{u"D2 with its rows"_s});
    compareWithD2();
}

void DeviceChangesTest::noDeviceThatIsNamedDuringAConnectionLeavesNone()
{
    QFETCH(const int, time);
    m_control->setActiveDevice(u"D1"_s, u"north"_s);
    int times = 0;
    QSignalSpy established(m_controller.get(), &IZelkoGUIController::si_connectionEstablished);
    connect(m_controller.get(), &IZelkoGUIController::si_loadProgress, &*m_context, [&] {
        if (++times == time) {
            nameOnce(QString());
        }
    });
    QTRY_VERIFY_WITH_TIMEOUT(m_isNamed, patience);
    compareWithNone();
    QCOMPARE(established.size(), 0);
}

QTEST_MAIN(DeviceChangesTest)
#include "tst_devicechanges.moc"
