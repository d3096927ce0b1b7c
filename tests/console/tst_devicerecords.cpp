#include "patience.h"
#include "recordlistsetting.h"

#include <console/records/devicerecords.h>

#include <host/activedevicecontrol.h>
#include <valuecore/tree.h>
#include <zelkobase/connection/abstractserverconnectiondata.h>
#include <zelkobase/connection/zelkoconfiguration.h>
#include <zelkobase/names/valuenames.h>
#include <zelkobase/service/zelkoguitoservercorbahandler.h>
#include <zelkoguibase/controller/zelkoserverguicontroller.h>

#include <QSignalSpy>
#include <QTest>

using namespace ZelkoConsole;
using ZelkoGUI::ZelkoServerGUIController;

namespace {

// A controller of the device of a site, with nothing chosen yet.
struct Setting : RecordListSetting
{
    explicit Setting(int count = 0)
        : RecordListSetting(count)
        , controller(handlerOf(site), &control, QString(), {}, nullptr)
        , records(&controller)
    {
        site.connectionData()->GetConfiguration()->SetCurrentSubSystem(north);
    }

    static std::shared_ptr<ZelkoGUI::ZelkoGuiToServerCorbaHandler> handlerOf(const SampleSite& site)
    {
        return std::make_shared<ZelkoGUI::ZelkoGuiToServerCorbaHandler>(site.connectionData());
    }

    void choose() { control.setActiveDevice(device, north); }

    void connect()
    {
        choose();
        QTRY_VERIFY_WITH_TIMEOUT(records.isConnected(), patience);
    }

    int rows() const { return controller.recordListModel()->rowCount(); }

    ActiveDeviceControl control;
    ZelkoServerGUIController controller;
    DeviceRecords records;
};

} // namespace

class TestDeviceRecords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knowsNothingBeforeADeviceIsChosen()
    {
        const Setting setting(1);
        QVERIFY(!setting.records.isConnected());
        QVERIFY(!setting.records.isComplete());
        QCOMPARE(setting.records.progress(), LoadProgress());
    }

    void findsAListThatIsThere()
    {
        Setting setting(1);
        const QSignalSpy connected(&setting.records, &DeviceRecords::connectionChanged);
        setting.connect();
        QVERIFY(setting.records.isComplete());
        QCOMPARE(setting.rows(), 1);
        QCOMPARE(connected.count(), 1);
    }

    void waitsForAListThatComesLater()
    {
        Setting setting;
        setting.site.removeDevice(setting.north, setting.device);
        setting.choose();
        QVERIFY(!setting.records.isConnected());
        setting.fill(0);
        QTRY_VERIFY_WITH_TIMEOUT(setting.records.isConnected(), patience);
    }

    void isConnectedOnlyAsLongAsTheControllerIs()
    {
        Setting setting(1);
        setting.connect();
        // A device that lacks something cannot be worked on, whatever else is there of it.
        Tree::Instance()->Remove(setting.site.connectionData()->GetBasePath(setting.device) + zelko::names::extended);
        QTRY_VERIFY_WITH_TIMEOUT(!setting.records.isConnected(), patience);
        QVERIFY(!setting.controller.isConnected());
        QVERIFY(!setting.records.isComplete());
    }

    void letsGoWhenTheListGoesAndFindsItAgain()
    {
        Setting setting(1);
        setting.connect();
        const QSignalSpy connection(&setting.records, &DeviceRecords::connectionChanged);
        setting.site.removeDevice(setting.north, setting.device);
        QCOMPARE(setting.rows(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(!setting.records.isConnected(), patience);
        setting.fill(1);
        QTRY_VERIFY_WITH_TIMEOUT(setting.records.isConnected(), patience);
        QVERIFY(setting.records.isComplete());
        QCOMPARE(setting.rows(), 1);
        QCOMPARE(connection.count(), 2);
    }

    void letsGoWhenNoDeviceIsChosenAnyMore()
    {
        Setting setting(1);
        setting.connect();
        setting.control.setActiveDevice(QString(), setting.north);
        QVERIFY(!setting.records.isConnected());
        QVERIFY(!setting.records.isComplete());
        QCOMPARE(setting.rows(), 0);
    }

    void staysAsItIsForTheSameDevice()
    {
        Setting setting;
        setting.connect();
        const QSignalSpy connection(&setting.records, &DeviceRecords::connectionChanged);
        setting.controller.sl_activeDeviceChanged(setting.device);
        QVERIFY(setting.records.isConnected());
        QCOMPARE(connection.count(), 0);
    }

    void tellsHowFarTheLoadIs_data()
    {
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("loadCount");
        QTest::addColumn<bool>("complete");
        QTest::addColumn<bool>("loading");
        QTest::newRow("some are still to come") << 1 << 3 << false << true;
        QTest::newRow("none has come yet") << 0 << 3 << false << true;
        QTest::newRow("all are here") << 3 << 3 << false << false;
        QTest::newRow("more than announced") << 3 << 2 << false << false;
        QTest::newRow("complete with fewer than announced") << 1 << 3 << true << false;
        QTest::newRow("nothing announced") << 0 << 0 << false << false;
    }

    void tellsHowFarTheLoadIs()
    {
        QFETCH(int, rows);
        QFETCH(int, loadCount);
        QFETCH(bool, complete);
        QFETCH(bool, loading);
        Setting setting(rows);
        setting.site.setLoad(setting.north, setting.device, loadCount, complete);
        setting.connect();
        QCOMPARE(setting.records.progress(), loading ? (LoadProgress{rows, loadCount}) : LoadProgress());
        QCOMPARE(setting.records.isComplete(), complete);
    }

    void tellsEachStepOfTheLoad()
    {
        Setting setting;
        setting.site.setLoad(setting.north, setting.device, 2, false);
        setting.connect();
        const QSignalSpy progress(&setting.records, &DeviceRecords::progressChanged);
        setting.site.setRecord(setting.north, setting.device, RecordListSetting::record(0));
        QCOMPARE(progress.count(), 1);
        QCOMPARE(setting.records.progress(), (LoadProgress{1, 2}));
        setting.site.setLoad(setting.north, setting.device, 2, true);
        QCOMPARE(progress.count(), 2);
        QVERIFY(!setting.records.progress().isLoading());
    }

    void isNotCompleteWhileItsRowsAreSentAfresh()
    {
        Setting setting(2);
        setting.connect();
        QVERIFY(setting.records.isComplete());
        setting.beginAfresh();
        QVERIFY(!setting.records.isComplete());
        setting.site.setRecord(setting.north, setting.device, RecordListSetting::record(0));
        QVERIFY(!setting.records.isComplete());
        const QSignalSpy progress(&setting.records, &DeviceRecords::progressChanged);
        setting.site.setRecord(setting.north, setting.device, RecordListSetting::record(1));
        QVERIFY(setting.records.isComplete());
        QVERIFY(progress.count() > 0);
    }

    void doesNotAwaitTheRowsOfTheDeviceBefore()
    {
        Setting setting(3);
        const QString other = QStringLiteral("A2");
        setting.site.addDevice(setting.north, other);
        setting.connect();
        setting.control.setActiveDevice(other, setting.north);
        QVERIFY(!setting.records.isConnected());
        QTRY_VERIFY_WITH_TIMEOUT(setting.records.isConnected(), patience);
        QVERIFY(setting.records.isComplete());
    }

    void doesNotWaitForeverForRowsThatWereDeletedMeanwhile()
    {
        Setting setting(1);
        setting.connect();
        setting.beginAfresh();
        QVERIFY(!setting.records.isComplete());
        QSignalSpy progress(&setting.records, &DeviceRecords::progressChanged);
        QVERIFY(progress.wait(patience));
        QVERIFY(setting.records.isComplete());
    }
};

QTEST_MAIN(TestDeviceRecords)
#include "tst_devicerecords.moc"
