#include "patience.h"

#include <console/demo/samplesite.h>
#include <console/records/devicerecords.h>
#include <console/treepaths.h>

#include <zelkoguibase/recordlist/recorditemmapmodel.h>

#include <QSignalSpy>
#include <QTest>

using namespace ZelkoConsole;

namespace {

const QString north = QStringLiteral("north");
const QString device = QStringLiteral("A1");
const QString path = treepath::device(north, device);

SampleSite::RecordPtr record(const char* id)
{
    return sampleRecord(QLatin1String(id), QStringLiteral("n"), SampleSite::Record::RecordStatus::Finished, 1, 2, 3);
}

} // namespace

class TestDeviceRecords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsAListThatIsThere()
    {
        SampleSite site({north});
        site.addDevice(north, device);
        site.setRecord(north, device, record("a"));
        ZelkoGUI::RecordItemMapModel model(nullptr);
        DeviceRecords records(&model);
        const QSignalSpy connected(&records, &DeviceRecords::connectionChanged);
        records.follow(path);
        QVERIFY(records.isConnected());
        QVERIFY(records.isComplete());
        QCOMPARE(records.model()->recordCount(), 1);
        QCOMPARE(connected.count(), 1);
    }

    void waitsForAListThatComesLater()
    {
        SampleSite site({north});
        ZelkoGUI::RecordItemMapModel model(nullptr);
        DeviceRecords records(&model);
        records.follow(path);
        QVERIFY(!records.isConnected());
        site.addDevice(north, device);
        QTRY_VERIFY_WITH_TIMEOUT(records.isConnected(), patience);
    }

    void letsGoWhenTheListGoesAndFindsItAgain()
    {
        SampleSite site({north});
        site.addDevice(north, device);
        site.setRecord(north, device, record("a"));
        ZelkoGUI::RecordItemMapModel model(nullptr);
        DeviceRecords records(&model);
        records.follow(path);
        QSignalSpy connection(&records, &DeviceRecords::connectionChanged);
        site.removeDevice(north, device);
        QCOMPARE(records.model()->recordCount(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(!records.isConnected(), patience);
        site.addDevice(north, device);
        site.setRecord(north, device, record("a"));
        QTRY_VERIFY_WITH_TIMEOUT(records.isConnected(), patience);
        QCOMPARE(records.model()->recordCount(), 1);
        QCOMPARE(connection.count(), 2);
    }

    void followsNothingForAnEmptyPath()
    {
        SampleSite site({north});
        site.addDevice(north, device);
        site.setRecord(north, device, record("a"));
        ZelkoGUI::RecordItemMapModel model(nullptr);
        DeviceRecords records(&model);
        records.follow(path);
        records.follow(QString());
        QVERIFY(!records.isConnected());
        QCOMPARE(records.model()->recordCount(), 0);
        QCOMPARE(records.devicePath(), QString());
    }

    void staysAsItIsForTheSamePath()
    {
        SampleSite site({north});
        site.addDevice(north, device);
        ZelkoGUI::RecordItemMapModel model(nullptr);
        DeviceRecords records(&model);
        records.follow(path);
        QSignalSpy connection(&records, &DeviceRecords::connectionChanged);
        records.follow(path);
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
        SampleSite site({north});
        site.addDevice(north, device);
        site.setLoad(north, device, loadCount, complete);
        for (int row = 0; row < rows; ++row) {
            site.setRecord(north, device, record(QByteArray::number(row).constData()));
        }
        ZelkoGUI::RecordItemMapModel model(nullptr);
        DeviceRecords records(&model);
        records.follow(path);
        QCOMPARE(records.progress(), loading ? (LoadProgress{rows, loadCount}) : LoadProgress());
        QCOMPARE(records.isComplete(), complete);
    }

    void tellsEachStepOfTheLoad()
    {
        SampleSite site({north});
        site.addDevice(north, device);
        site.setLoad(north, device, 2, false);
        ZelkoGUI::RecordItemMapModel model(nullptr);
        DeviceRecords records(&model);
        records.follow(path);
        QSignalSpy progress(&records, &DeviceRecords::progressChanged);
        site.setRecord(north, device, record("a"));
        QCOMPARE(progress.count(), 1);
        site.setLoad(north, device, 2, true);
        QCOMPARE(progress.count(), 2);
        QVERIFY(!records.progress().isLoading());
    }

    void isNotCompleteWhileItsRowsAreSentAfresh()
    {
        SampleSite site({north});
        site.addDevice(north, device);
        site.setRecord(north, device, record("a"));
        site.setRecord(north, device, record("b"));
        ZelkoGUI::RecordItemMapModel model(nullptr);
        DeviceRecords records(&model);
        records.follow(path);
        QVERIFY(records.isComplete());
        site.clearRecords(north, device);
        QVERIFY(!records.isComplete());
        site.setRecord(north, device, record("a"));
        QVERIFY(!records.isComplete());
        site.setRecord(north, device, record("b"));
        QVERIFY(records.isComplete());
    }

    void doesNotWaitForeverForRowsThatWereDeletedMeanwhile()
    {
        SampleSite site({north});
        site.addDevice(north, device);
        site.setRecord(north, device, record("a"));
        ZelkoGUI::RecordItemMapModel model(nullptr);
        DeviceRecords records(&model);
        records.follow(path);
        site.clearRecords(north, device);
        QVERIFY(!records.isComplete());
        QSignalSpy progress(&records, &DeviceRecords::progressChanged);
        QVERIFY(progress.wait(patience));
        QVERIFY(records.isComplete());
    }
};

QTEST_MAIN(TestDeviceRecords)
#include "tst_devicerecords.moc"
