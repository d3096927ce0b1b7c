#include "patience.h"
#include "recordlistsetting.h"

#include <console/demo/shownrecords.h>
#include <console/hands/operatorhands.h>
#include <console/records/recordpane.h>
#include <console/records/recordtableview.h>

#include <zelkoguibase/controller/zelkoserverguicontroller.h>

#include <QLabel>
#include <QProgressBar>
#include <QTest>

using namespace ZelkoConsole;

namespace {

struct Setting : RecordListSetting
{
    explicit Setting(int count = 0)
        : RecordListSetting(count)
    {
        pane.resize(900, 320);
        pane.show();
    }

    void choose()
    {
        pane.setDevice(north, device);
        pane.setStatus(site.status(north));
    }

    void showDevice()
    {
        choose();
        QTRY_VERIFY_WITH_TIMEOUT(pane.controller()->isConnected(), patience);
    }

    int rowOf(int number) const
    {
        return static_cast<int>(shownrecords::ids(*pane.table()->model()).indexOf(id(number)));
    }

    QString text(const char* name) const { return pane.findChild<QLabel*>(QLatin1String(name))->text(); }
    QProgressBar& bar() const { return *pane.findChild<QProgressBar*>(QStringLiteral("loadProgress")); }
    QLabel& barLabel() const { return *pane.findChild<QLabel*>(QStringLiteral("loadLabel")); }

    RecordPane pane{site.connectionData()};
};

} // namespace

class TestRecordPane : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void countsTheRecordings()
    {
        Setting setting(2);
        setting.showDevice();
        QCOMPARE(setting.text("recordCount"), QStringLiteral("2 records"));
        setting.site.eraseRecord(setting.north, setting.device, RecordListSetting::id(0));
        QCOMPARE(setting.text("recordCount"), QStringLiteral("1 record"));
        setting.site.eraseRecord(setting.north, setting.device, RecordListSetting::id(1));
        QCOMPARE(setting.text("recordCount"), QStringLiteral("0 records"));
        QCOMPARE(setting.pane.table()->emptyState().text, QStringLiteral("No records on this device"));
    }

    void sumsUpTheSelection()
    {
        Setting setting(3);
        setting.showDevice();
        QCOMPARE(setting.text("selectionSummary"), QString());
        operatorhands::clickRow(*setting.pane.table(), 0);
        operatorhands::clickRow(*setting.pane.table(), 1, Qt::ShiftModifier);
        QCOMPARE(setting.text("selectionSummary"), QStringLiteral("2 selected, 4.76 MByte, 5 s"));
    }

    void followsTheSizeOfASelectedRecordThatGrows()
    {
        Setting setting(1);
        setting.showDevice();
        operatorhands::clickRow(*setting.pane.table(), 0);
        auto grown = RecordListSetting::record(0);
        grown->SetSize(2048);
        setting.site.setRecord(setting.north, setting.device, grown);
        QCOMPARE(setting.text("selectionSummary"), QStringLiteral("1 selected, 2 kByte, 1 s"));
    }

    void showsHowFarTheLoadIsAndHidesItWhenDone()
    {
        Setting setting(1);
        setting.site.setLoad(setting.north, setting.device, 3, false);
        setting.showDevice();
        QVERIFY(setting.bar().isVisible());
        QCOMPARE(setting.barLabel().text(), QStringLiteral("Loading Records: "));
        QCOMPARE(setting.bar().maximum(), 3);
        QCOMPARE(setting.bar().value(), 1);
        setting.site.setRecord(setting.north, setting.device, RecordListSetting::record(1));
        QCOMPARE(setting.bar().value(), 2);
        setting.site.setLoad(setting.north, setting.device, 3, true);
        QVERIFY(!setting.bar().isVisible());
        QVERIFY(!setting.barLabel().isVisible());
    }

    void hidesTheLoadWhenTheRecorderDies()
    {
        Setting setting(1);
        setting.site.setLoad(setting.north, setting.device, 3, false);
        setting.showDevice();
        setting.lose();
        setting.pane.setStatus(setting.site.status(setting.north));
        QTRY_COMPARE_WITH_TIMEOUT(setting.text("recordCount"), QString(), patience);
        QVERIFY(!setting.bar().isVisible());
        QCOMPARE(setting.pane.table()->emptyState().text,
                 QStringLiteral("Recorder north is not reachable: it was killed, trying again"));
    }

    void hidesTheLoadWhenAnotherDeviceIsChosen()
    {
        Setting setting(1);
        setting.site.setLoad(setting.north, setting.device, 3, false);
        setting.showDevice();
        QVERIFY(setting.bar().isVisible());
        setting.pane.setDevice(setting.north, QStringLiteral("A2"));
        QVERIFY(!setting.bar().isVisible());
        QCOMPARE(setting.pane.table()->model()->rowCount(), 0);
        QCOMPARE(setting.text("recordCount"), QString());
    }

    void selectsNothingInTheListOfAnotherDevice()
    {
        Setting setting(3);
        const QString other = QStringLiteral("A2");
        setting.site.addDevice(setting.north, other);
        setting.site.setRecord(setting.north, other, RecordListSetting::record(0));
        setting.site.setRecord(setting.north, other, RecordListSetting::record(1));
        setting.showDevice();
        operatorhands::clickRow(*setting.pane.table(), setting.rowOf(1));
        setting.pane.setDevice(setting.north, other);
        QTRY_COMPARE_WITH_TIMEOUT(setting.text("recordCount"), QStringLiteral("2 records"), patience);
        QCoreApplication::processEvents(); // in which a selection would be restored
        QVERIFY(!setting.pane.table()->selectionModel()->hasSelection());
        QVERIFY(setting.pane.controller()->selectedRecords().isEmpty());
    }

    void saysNothingOfADeviceThatIsFoundAtOnce()
    {
        Setting setting;
        setting.choose();
        QCOMPARE(setting.pane.table()->emptyState().text, QString());
        QTRY_COMPARE_WITH_TIMEOUT(setting.pane.table()->emptyState().text, QStringLiteral("No records on this device"),
                                  patience);
    }

    void saysThatItWaitsForADeviceThatIsNotFound()
    {
        Setting setting;
        setting.site.removeDevice(setting.north, setting.device);
        setting.choose();
        QTRY_COMPARE_WITH_TIMEOUT(setting.pane.table()->emptyState().text,
                                  QStringLiteral("Waiting for the records of A1…"), patience);
    }

    void namesDeviceAndSubSystem()
    {
        Setting setting;
        setting.showDevice();
        QCOMPARE(setting.text("deviceTitle"), QStringLiteral("A1"));
        setting.pane.setDevice(setting.north, QString());
        QCOMPARE(setting.text("deviceTitle"), QStringLiteral("north"));
        QCOMPARE(setting.pane.table()->emptyState().text, QStringLiteral("Select a device of north"));
    }
};

QTEST_MAIN(TestRecordPane)
#include "tst_recordpane.moc"
